/*
 * Control of the stand-in switch: what a test or a tool does to the switch that no driver function does. The driver
 * functions themselves are declared in tarvex_platform/driver.h.
 *
 * The switch holds up to 256 devices, 0 to 255. None exists until standin_device_add. All pipes of a device hold the
 * same: the pipe of a target is not looked at, and neither is the session. Every function here and there may be called
 * from any thread. Callbacks run in the thread whose call gave rise to them, before that call returns and with no lock
 * held, so that they may call the driver; their buffers are theirs for that time only.
 *
 * All functions give a status, 0 for success, unless told otherwise. A null pointer where a result or a record is
 * wanted is refused with STANDIN_BAD_ARGUMENT.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_STANDIN_STANDIN_H
#define TARVEX_STANDIN_STANDIN_H

#include "tarvex_pd/snapshots.h"
#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

struct cJSON;
struct ms_state;
struct pd_res_spec;

/** Statuses of the stand-in. They keep clear of those that the library gives itself. */
enum {
  STANDIN_NO_DEVICE = 0x40, /**< the device was not added */
  STANDIN_NO_CLIENT,        /**< no client has the handle */
  STANDIN_NO_OBJECT,        /**< no table, profile, resource, calculation, digest or value set has the handle */
  STANDIN_NO_ACTION,        /**< the action is not the table's */
  STANDIN_NO_ENTRY,         /**< no entry has the handle or the key; the table has no default entry */
  STANDIN_NO_MEMBER,        /**< no member of the profile has the handle, or it is not in the group */
  STANDIN_NO_GROUP,         /**< no group of the profile has the handle */
  STANDIN_NO_PROPERTY,      /**< the property was never set */
  STANDIN_NO_SNAPSHOT,      /**< no snapshot has the handle */
  STANDIN_EXISTS,           /**< the key, the membership or the client's name is there already */
  STANDIN_FULL,             /**< the table or the group takes no more */
  STANDIN_IN_USE,           /**< an entry, a group or the fallback refers to it */
  STANDIN_BAD_ARGUMENT,     /**< a null pointer, or a value that the function does not take */
  STANDIN_BAD_KEY,          /**< counts, mask or partition are not the table's; room for the key is too small */
  STANDIN_BAD_ACTION,       /**< kind or data of the action do not fit; room for the data is too small */
  STANDIN_BAD_RESOURCE,     /**< a resource that is not the table's, or not attached to the entry */
  STANDIN_BAD_INDEX,        /**< an index behind the end of the resource */
  STANDIN_BAD_PLACEMENT,    /**< not a placement buffer of this switch, or one of another kind */
  STANDIN_BAD_DOCUMENT,     /**< a log document that this switch did not write */
  STANDIN_NOT_DEFAULT,      /**< the action cannot be the default of the table */
  STANDIN_NOT_ENABLED,      /**< the table has no idle time, or it was not enabled */
  STANDIN_NOT_TRIGGERED,    /**< the snapshot has no trigger, or the packet does not match it */
  STANDIN_END,              /**< the walk has come to its end: no handle was found */
  STANDIN_NO_MEMORY         /**< the switch itself is out of memory */
};

/** What stands for no handle behind the last one of a walk. */
#define STANDIN_NO_HANDLE 0xffffffffu

/** Name of a status such as "STANDIN_NO_DEVICE", "BF_SUCCESS" for 0; null for one that is not of this switch. */
const char *standin_status_name(pd_status_t status);

/* ---- devices --------------------------------------------------------------------------------------------------- */

/**
 * Adds a device with empty tables.
 *
 * @param dev_id  0 to 255
 * @return STANDIN_EXISTS where it is there already, STANDIN_BAD_ARGUMENT above 255
 */
pd_status_t standin_device_add(uint32_t dev_id);

/** Calls dev_remove of every client, in the order of their registration, then drops the device with all it holds. */
pd_status_t standin_device_remove(uint32_t dev_id);

/**
 * Calls dev_log of every client, each with an object of its own that stands in `log` under the client's name.
 *
 * @param dev_id  the device
 * @param log  a JSON object; it stays the caller's
 * @return the first status of a client that is not 0; the others are called all the same
 */
pd_status_t standin_device_log(uint32_t dev_id, struct cJSON *log);

/** Calls dev_restore of every client that `log` holds an object of, the same way. */
pd_status_t standin_device_restore(uint32_t dev_id, struct cJSON *log);

/**
 * Drops all devices and clients without telling any client, empties the member-selector states, takes the listener away
 * and disarms all faults.
 */
void standin_reset(void);

/**
 * Makes something small: a match table (entries), action data table (members), selector table (groups), or an indirect
 * counter, meter, WRED block or register (cells). What is over the limit already stays.
 *
 * @param dev_id  the device
 * @param hdl    handle of the table or resource
 * @param limit  the count that it takes; at first tables take 16,777,214 and resources any index
 */
pd_status_t standin_size_limit(uint32_t dev_id, uint32_t hdl, uint32_t limit);

/* ---- match tables ---------------------------------------------------------------------------------------------- */

/**
 * Looks a packet's key up as the pipeline does. An entry matches where key and partition agree in all bits that are
 * live and under the entry's mask. Of several the longest prefix wins in an lpm table; in a ternary table the smallest
 * priority, then the mask with more bits.
 *
 * An entry is known by these same bits: live value, live mask and live partition, and in a ternary table the priority.
 * Another entry of the same bits is refused with STANDIN_EXISTS.
 *
 * @param dev_tgt          the device; its pipe is not looked at
 * @param tbl_hdl          the table
 * @param key              the key bytes, laid out as in an entry's value, as many as the table's key has
 * @param key_bytes        how many there are
 * @param partition_index  of a partitioned table, else 0
 * @param entry_hdl        the entry; on a miss the default entry, or STANDIN_NO_HANDLE where there is none
 * @return STANDIN_NO_ENTRY on a miss
 */
pd_status_t standin_lookup(pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, const uint8_t *key, size_t key_bytes,
                           uint32_t partition_index, pd_entry_hdl_t *entry_hdl);

/**
 * Counts packets that hit an entry, or its default entry: in the table's direct counter, in the cells of indirect
 * counters that the entry is attached to, and as a hit of the idle time.
 */
pd_status_t standin_count_packets(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, uint64_t packets,
                                  uint64_t bytes);

/** Counts packets in a cell of an indirect counter. A reader sees them after a synchronisation, here and above. */
pd_status_t standin_count_cell(uint32_t dev_id, uint32_t counter_hdl, uint32_t index, uint64_t packets, uint64_t bytes);

/**
 * Turns one bit of an entry's action data over, as a fault of the hardware would: nobody is told.
 *
 * @param dev_id     a device that was added
 * @param tbl_hdl    a match table
 * @param entry_hdl  an entry of it, or its default entry
 * @param bit        from the lowest bit of the last byte on, 0
 * @return STANDIN_BAD_ACTION for an entry that refers to a member or group, STANDIN_BAD_INDEX ahead of the first byte
 */
pd_status_t standin_corrupt_entry(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, uint32_t bit);

/** Drops an entry, but not a default entry, as a fault of the hardware would: nobody is told. */
pd_status_t standin_lose_entry(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl);

/** What an update callback is told of. */
enum {
  STANDIN_ADDED = 0,
  STANDIN_CHANGED = 1,
  STANDIN_DELETED = 2,
  STANDIN_DEFAULT_SET = 3,
  STANDIN_DEFAULT_RESET = 4,
  STANDIN_ENABLED = 5, /**< of a membership, and the next */
  STANDIN_DISABLED = 6
};

/**
 * Callback of pipe_register_mat_update_cb (`hdl` is an entry) and of pipe_register_adt_update_cb (a member). A null
 * callback takes the earlier one off, here and everywhere.
 *
 * @param dev_id  the device
 * @param tbl_hdl  match table or action data table
 * @param hdl  the entry or member
 * @param event  STANDIN_ADDED and those below it
 * @param plcmt_data  placement buffer: what the entry or member is now, or was before it was deleted or reset
 * @param cookie  as it was told with the callback
 */
typedef void (*standin_update_cb_t)(uint32_t dev_id, uint32_t tbl_hdl, uint32_t hdl, uint32_t event,
                                    const void *plcmt_data, void *cookie);

/**
 * Callback of pipe_register_sel_update_cb and of pipe_mgr_sel_tbl_register_cb: a group was added or deleted (the member
 * is 0), or a membership added, deleted, enabled or disabled.
 */
typedef void (*standin_selector_cb_t)(uint32_t dev_id, uint32_t sel_hdl, pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl,
                                      uint32_t event, void *cookie);

/** Callback of the synchronisations of counters and registers and of a hit state update: it is done. */
typedef void (*standin_done_cb_t)(uint32_t dev_id, uint32_t hdl, void *cookie);

/** A callback as it was registered. */
typedef struct standin_callback {
  pd_callback_t function; /**< null where there is none */
  void *cookie;           /**< what it is called with */
  pd_sess_hdl_t sess_hdl; /**< of the digest's, else 0 */
} standin_callback_t;

/**
 * The update callback of a match table, an action data table or a selector table (that of pipe_register_sel_update_cb),
 * or the callback of the learning digest: for one who takes its place and means to call it, and to put it back.
 *
 * @param dev_id  the device
 * @param hdl  the table or the digest
 * @param callback  what is registered
 * @return STANDIN_NO_OBJECT where nothing that has a callback has the handle
 */
pd_status_t standin_registered_callback(uint32_t dev_id, uint32_t hdl, standin_callback_t *callback);

/** Bytes of a placement buffer, so that a callback can keep a copy; 0 for a buffer that is none of this switch's. */
size_t standin_placement_size(const void *plcmt_data);

/* ---- idle time ------------------------------------------------------------------------------------------------- */

/** Values of word_0 of pd_idle_params_t. */
enum {
  STANDIN_IDLE_POLL = 0,  /**< entries do not age; hit states are read */
  STANDIN_IDLE_NOTIFY = 1 /**< entries age, and the callback is called for one whose ttl has run out */
};

/** Values of a hit state. */
enum { STANDIN_IDLE = 0, STANDIN_ACTIVE = 1 };

/**
 * Callback of an entry that was not hit for its ttl, in milliseconds. It is called once, until a hit or a set of the
 * ttl starts the entry anew; an entry with ttl 0 never ages. pipe_mgr_idle_register_tmo_cb sets it, or word_4 and
 * word_5 (cookie) of pd_idle_params_t where word_4 is not 0.
 *
 * The other words: word_1 is the interval of the ageing in milliseconds (0: as the clock advances), word_2 the largest
 * ttl that the table takes (0: any), word_3 is not looked at.
 */
typedef void (*standin_idle_cb_t)(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, void *cookie);

/** Lets time pass on all devices, in milliseconds. This is the switch's only clock. */
pd_status_t standin_idle_advance(uint32_t milliseconds);

/**
 * A packet hits an entry: its ttl starts anew. The hit shows in the hit state from the next
 * pipe_mgr_idle_time_update_hit_state on (its two words are a standin_done_cb_t, or 0, and its cookie) until the one
 * after.
 */
pd_status_t standin_entry_hit(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl);

/* ---- member-selector service ----------------------------------------------------------------------------------- */

/** Records the resources of a member, which no other function does. The list is copied. */
pd_status_t standin_member_resources_set(struct ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, uint32_t count,
                                         const struct pd_res_spec *list);

/*
 * pipe_mgr_hitless_ha_restore_virtual_dev_state takes the session as first word and the device as second; the other
 * three are not looked at. The update flag of the replay is 1 for memberships.
 */

/* ---- registers ------------------------------------------------------------------------------------------------- */

/** Sets how many rows, and values in each row, a cell of a register has: 1 and 1 at first. Clears the register. */
pd_status_t standin_register_shape(uint32_t dev_id, uint32_t reg_hdl, uint32_t rows, uint32_t values_per_row);

/** Sets one value of a cell, as the pipeline would. The driver's writes set all values of the cell. */
pd_status_t standin_register_value(uint32_t dev_id, uint32_t reg_hdl, uint32_t index, uint32_t row, uint32_t position,
                                   uint8_t value);

/* ---- learning digest ------------------------------------------------------------------------------------------- */

/** Message that a digest callback gets: entries back to back. It lives until pipe_mgr_flow_lrn_notify_ack. */
typedef struct standin_digest_msg {
  uint32_t dev_id;        /**< the device */
  uint32_t digest_hdl;    /**< the digest */
  uint32_t entry_bytes;   /**< bytes of one entry */
  uint32_t entry_count;   /**< entries that there are */
  const uint8_t *entries; /**< the first entry */
} standin_digest_msg_t;

/** Callback of pipe_mgr_lrn_digest_notification_register. */
typedef void (*standin_digest_cb_t)(pd_sess_hdl_t sess_hdl, standin_digest_msg_t *msg, void *cookie);

/**
 * Reports addresses to the registered callback.
 *
 * @param dev_id  the device
 * @param digest_hdl  the digest
 * @param entries  entry_count entries of 14 bytes, copied
 * @param entry_count  entries that there are
 * @return STANDIN_NOT_ENABLED where no callback is registered
 */
pd_status_t standin_digest_deliver(uint32_t dev_id, uint32_t digest_hdl, const uint8_t *entries, uint32_t entry_count);

/** Messages that wait for their acknowledgement. A device that is removed takes its messages with it. */
size_t standin_digest_unacknowledged(uint32_t dev_id);

/** The learning timeout as it was set last, 0 at first. */
pd_status_t standin_learning_timeout(uint32_t dev_id, uint32_t *timeout);

/* ---- parser value set ------------------------------------------------------------------------------------------ */

/** Counts the entries of a value set that a parsed value matches under their masks. */
pd_status_t standin_value_set_match(uint32_t dev_id, uint32_t pvs_hdl, uint32_t parsed_value, uint32_t *count);

/* ---- snapshots ------------------------------------------------------------------------------------------------- */

/** Directions of bf_snapshot_create. An egress snapshot has bit 1 of its handle set. */
enum { STANDIN_SNAPSHOT_INGRESS = 0, STANDIN_SNAPSHOT_EGRESS = 1 };

/** Bytes of a trigger record and of the field data of a capture. */
#define STANDIN_SNAPSHOT_FIELD_BYTES sizeof(snap_trig_spec_t)
/** Captures that a snapshot keeps; a later one is refused with STANDIN_FULL. */
#define STANDIN_SNAPSHOT_CAPTURES 12
/** Bytes of the driver's control data in a capture that mean something: the pipe, then a running number from 1. */
#define STANDIN_SNAPSHOT_CTRL_BYTES 2

/*
 * The field data of triggers and captures holds the fields of the snapshot's direction one behind the other. Those of
 * 1, 4 and 16 bytes stand with the highest byte first, those of 2 bytes with the lowest first, and so do those of 3
 * bytes with a 0 behind them. A trigger's mask of 3 bytes is the exception: a 0, then the highest byte first. A new
 * trigger drops what was captured under the one before.
 */

/**
 * A packet passes the pipe of a snapshot: its fields are captured where they agree with the trigger in all bits of the
 * trigger's mask.
 *
 * @param hdl  the snapshot
 * @param pipe_id  the pipe
 * @param fields  STANDIN_SNAPSHOT_FIELD_BYTES bytes of field data
 */
pd_status_t standin_snapshot_packet(uint32_t hdl, uint32_t pipe_id, const uint8_t *fields);

/**
 * Gives a field of a packet its value; a trigger that asks the library for the same value is met.
 *
 * @param direction  STANDIN_SNAPSHOT_INGRESS or STANDIN_SNAPSHOT_EGRESS
 * @param name  name of the field
 * @param value  one word; of a field of 16 bytes 16 words, each with one byte in its low byte
 * @param fields  field data of the packet
 * @return STANDIN_NO_OBJECT where the direction has no such field
 */
pd_status_t standin_snapshot_field_set(uint32_t direction, const char *name, const uint32_t *value, uint8_t *fields);

/* ---- faults and observation ------------------------------------------------------------------------------------ */

/**
 * Refuses one driver call: the call has no effect. All functions of driver.h count but the two of the allocator; one
 * that gives a pointer gives null.
 *
 * @param nth     1 for the next call, 0 to disarm
 * @param status  what it answers
 */
void standin_refuse_call(uint32_t nth, pd_status_t status);

/** Fails one allocation of bf_sys_calloc: 1 for the next, 0 to disarm. */
void standin_fail_calloc(uint32_t nth);

/** Blocks of bf_sys_calloc that were not given back yet. */
size_t standin_live_blocks(void);

/**
 * Called ahead of every driver call but those of the allocator, those that are then refused included.
 *
 * @param function  name of the function, a constant string
 * @param hdl       handle of the table, profile, resource, calculation, digest or value set, the snapshot's or the
 *                  client's, else 0
 * @param cookie  as it was told to standin_set_listener
 */
typedef void (*standin_listener_t)(const char *function, uint32_t hdl, void *cookie);

/** Sets the one listener; null takes it off. A call under way in another thread may still reach the old one. */
void standin_set_listener(standin_listener_t listener, void *cookie);

#ifdef __cplusplus
}
#endif

#endif
