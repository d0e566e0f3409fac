/*
 * Snapshots: what the packet header and metadata fields of the pipeline held when a packet met a trigger.
 *
 * The usual order: create a snapshot; clear two trigger records and add fields to them by name; hand them to the
 * driver; when a packet has met the trigger, fetch the captures, take each record apart and show its fields; delete the
 * snapshot.
 *
 * Fields, trigger records and captures differ between ingress and egress. Bit 1 of the handle tells which of the two a
 * snapshot is; the functions look at nothing else of a handle. All buffers are the caller's, and none is kept.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_SNAPSHOTS_H
#define TARVEX_PD_SNAPSHOTS_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/** A snapshot; the driver makes the handles. */
typedef uint32_t pd_snapshot_hdl_t;

/** Set in the handle of an egress snapshot, clear in that of an ingress snapshot. */
#define P4_PD_TARVEX_SWITCH_SNAPSHOT_EGRESS_BIT 2u

/** A stage of the pipeline: only the low 8 bits count. */
typedef uint32_t pd_stage_t;

/** A pipe: only the low 16 bits count. */
typedef uint32_t pd_pipe_t;

/** Bytes of the field data of a trigger record or capture; the fields fill 690 of them in ingress, 437 in egress. */
#define P4_PD_TARVEX_SWITCH_SNAPSHOT_FIELD_BYTES 712
/** Bytes of the field data that p4_pd_tarvex_switch_snapshot_capture_data_single_get copies of an egress capture. */
#define P4_PD_TARVEX_SWITCH_SNAPSHOT_EGRESS_FIELD_BYTES 459
/** Bytes of the driver's control data, which stand ahead of the field data in a capture record. */
#define P4_PD_TARVEX_SWITCH_SNAPSHOT_CTRL_BYTES 3664
/** Capture records that an area holds. */
#define P4_PD_TARVEX_SWITCH_SNAPSHOT_CAPTURES 12
/** Bytes of a capture area. */
#define P4_PD_TARVEX_SWITCH_SNAPSHOT_CAPTURE_AREA_BYTES 52512

/**
 * Values, or masks, of a trigger, field behind field without gaps; a field of 3 bytes takes 4. A mask of zeros takes
 * the field out of the trigger. Clear both records, then fill them by p4_pd_tarvex_switch_snapshot_capture_trigger_add.
 */
typedef struct snap_trig_spec {
  uint8_t fields[P4_PD_TARVEX_SWITCH_SNAPSHOT_FIELD_BYTES]; /**< field data */
} snap_trig_spec_t;

/** The two layouts, as p4_pd_tarvex_switch_snapshot_capture_trigger_list names them. */
enum { P4_PD_TARVEX_SWITCH_SNAPSHOT_INGRESS = 0, P4_PD_TARVEX_SWITCH_SNAPSHOT_EGRESS = 1 };

/**
 * Called for a field of a layout.
 *
 * @param ctx  handed through from the caller
 * @param field  name of the field, a constant of the library
 * @param layout  P4_PD_TARVEX_SWITCH_SNAPSHOT_INGRESS or P4_PD_TARVEX_SWITCH_SNAPSHOT_EGRESS
 * @param size  bytes of the field: 1, 2, 3, 4 or 16
 * @param cookie  handed through from the caller
 * @return the walk ends with what the last call gives
 */
typedef uint32_t (*pd_snapshot_list_cb_t)(uint32_t ctx, const char *field, uint32_t layout, uint32_t size,
                                          void *cookie);

/**
 * Called for a field that a trigger asks for or a capture holds.
 *
 * @param ctx  handed through from the caller
 * @param field  name of the field, a constant of the library
 * @param size  bytes of the field: 1, 2, 3, 4 or 16
 * @param value  `size` bytes; valid during the call only
 * @param mask  `size` bytes, valid during the call only; null for a capture
 * @return the walk ends with what the last call gives
 */
typedef uint32_t (*pd_snapshot_show_cb_t)(uint32_t ctx, const char *field, uint32_t size, const uint8_t *value,
                                          const uint8_t *mask);

/* ---- control --------------------------------------------------------------------------------------------------- */

/**
 * Creates a snapshot.
 *
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param start_stage  first stage that it looks at, its low 8 bits
 * @param end_stage  last stage that it looks at, its low 8 bits
 * @param direction  ingress or egress, as the driver numbers them
 * @param hdl  where the driver writes the handle
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_snapshot_create(pd_dev_tgt_t dev_tgt, pd_stage_t start_stage, pd_stage_t end_stage,
                                                uint32_t direction, pd_snapshot_hdl_t *hdl);

/**
 * Deletes a snapshot.
 *
 * @param hdl  the snapshot
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_snapshot_delete(pd_snapshot_hdl_t hdl);

/**
 * Hands a trigger to the driver, in the driver's byte order. The records stay as they are and can be set again.
 *
 * @param hdl  the snapshot
 * @param value_rec  values of the fields; read during the call only
 * @param mask_rec  masks of the fields; read during the call only
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_snapshot_capture_trigger_set(pd_snapshot_hdl_t hdl, const snap_trig_spec_t *value_rec,
                                                             const snap_trig_spec_t *mask_rec);

/**
 * Fetches the captures of a snapshot.
 *
 * @param hdl  the snapshot
 * @param pipe  the pipe, its low 16 bits
 * @param capture  receives the capture records; P4_PD_TARVEX_SWITCH_SNAPSHOT_CAPTURE_AREA_BYTES bytes of room
 * @param num_captures  receives the number of records; 0 where the driver does not tell it
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_snapshot_capture_data_get(pd_snapshot_hdl_t hdl, pd_pipe_t pipe, void *capture,
                                                          uint32_t *num_captures);

/**
 * Bytes of a trigger record.
 *
 * @return the size of snap_trig_spec_t, 712
 */
uint32_t p4_pd_tarvex_switch_snapshot_trig_spec_size(void);

/**
 * Bytes of a capture area.
 *
 * @return P4_PD_TARVEX_SWITCH_SNAPSHOT_CAPTURE_AREA_BYTES
 */
uint32_t p4_pd_tarvex_switch_snapshot_capture_data_size(void);

/* ---- triggers by field name ------------------------------------------------------------------------------------ */

/**
 * Adds a field to a trigger, or gives it another value: all bits of the field count. Only the bytes of the field are
 * written, in an order of the records' own; the value is not tested against the field's width.
 *
 * @param hdl  the snapshot
 * @param value_rec  values; the field's is written
 * @param mask_rec  masks; the field's is written
 * @param name  name of the field, exactly; may be null
 * @param value  one word in host order, of which as many low bytes count as the field has; of a field of 16 bytes 16
 *   words, each with one byte of it in its low byte. Read during the call only, and not at all for an unknown name
 * @return 1, or 0 with both records as they were if the snapshot's direction has no such field
 */
uint32_t p4_pd_tarvex_switch_snapshot_capture_trigger_add(pd_snapshot_hdl_t hdl, snap_trig_spec_t *value_rec,
                                                          snap_trig_spec_t *mask_rec, const char *name,
                                                          const uint32_t *value);

/**
 * Calls back for every field of the snapshot's layout, in the order of the trigger record.
 *
 * @param ctx  handed to each call
 * @param hdl  the snapshot
 * @param callback  function that is called during this call only
 * @param cookie  handed to each call; the caller's
 * @return what the last call gave
 */
uint32_t p4_pd_tarvex_switch_snapshot_capture_trigger_list(uint32_t ctx, pd_snapshot_hdl_t hdl,
                                                           pd_snapshot_list_cb_t callback, void *cookie);

/**
 * Calls back for every field that a trigger asks for, in the order of the trigger record: those whose mask is not zero.
 * A field of 1 to 4 bytes shows its value with the lowest byte first, as it was added.
 *
 * @param ctx  handed to each call
 * @param hdl  the snapshot
 * @param value_rec  values; read during the call only
 * @param mask_rec  masks; read during the call only
 * @param callback  function that is called during this call only
 * @return what the last call gave; 0 without any
 */
uint32_t p4_pd_tarvex_switch_snapshot_capture_trigger_show(uint32_t ctx, pd_snapshot_hdl_t hdl,
                                                           const snap_trig_spec_t *value_rec,
                                                           const snap_trig_spec_t *mask_rec,
                                                           pd_snapshot_show_cb_t callback);

/* ---- captures by field name ------------------------------------------------------------------------------------ */

/**
 * Calls back for every field of a capture that is not zero, in the order of the trigger record, with the bytes as the
 * driver delivered them. A field that is zero and one that was not captured look the same, and neither is shown.
 *
 * @param ctx  handed to each call
 * @param hdl  the snapshot
 * @param fields  field data of a capture; read during the call only
 * @param callback  function that is called during this call only, with a null mask
 * @return what the last call gave; 0 without any
 */
uint32_t p4_pd_tarvex_switch_snapshot_capture_field_show(uint32_t ctx, pd_snapshot_hdl_t hdl, const uint8_t *fields,
                                                         pd_snapshot_show_cb_t callback);

/**
 * Takes one capture record apart.
 *
 * @param index  number of the record, from 0 and below the count of p4_pd_tarvex_switch_snapshot_capture_data_get
 * @param is_egress  not 0: of an egress snapshot
 * @param capture  area that holds the records; read during the call only
 * @param first_byte  receives byte 0 of the record, whose meaning is the driver's
 * @param ctrl  receives the control data; P4_PD_TARVEX_SWITCH_SNAPSHOT_CTRL_BYTES bytes of room
 * @param fields  receives the field data; P4_PD_TARVEX_SWITCH_SNAPSHOT_FIELD_BYTES bytes of room, of which an egress
 *   record leaves those behind the first P4_PD_TARVEX_SWITCH_SNAPSHOT_EGRESS_FIELD_BYTES as they are
 * @return byte 1 of the record, whose meaning is the driver's
 */
uint32_t p4_pd_tarvex_switch_snapshot_capture_data_single_get(int32_t index, uint32_t is_egress, const void *capture,
                                                              uint32_t *first_byte, uint8_t *ctrl, uint8_t *fields);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
