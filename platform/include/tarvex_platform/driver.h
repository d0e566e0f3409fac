/*
 * What the library imports from the switch driver's SDK: 111 functions, declared as the library calls them. A switch
 * resolves them with its own driver, a laptop with the stand-in.
 *
 * How a device travels: `dev_tgt` is the whole target (device id in bits 0 to 31, pipe id in bits 32 to 47, the rest
 * 0). `dev_id` is a device alone. Where a comment says "8 bits" the library has zero-extended it from its low 8 bits;
 * where it has 64 bits, from its low 32 bits, so that the register that carries it holds no bit of the pipe.
 * All functions give a status, 0 for success, unless told otherwise. `flags` is always 0.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PLATFORM_DRIVER_H
#define TARVEX_PLATFORM_DRIVER_H

#include "tarvex_pd/driver_records.h"
#include "tarvex_pd/resource_values.h"
#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

struct cJSON;

/* ---- driver registry ------------------------------------------------------------------------------------------- */

/** Callbacks of a client, 27 slots of 8 bytes; slots that a client leaves null are not called. */
typedef struct drv_client_callbacks {
  pd_callback_t reserved_0[3];
  pd_status_t (*dev_remove)(uint32_t dev_id);                     /* slot 3 */
  pd_status_t (*dev_log)(uint32_t dev_id, struct cJSON *log);     /* slot 4: the driver owns the object */
  pd_status_t (*dev_restore)(uint32_t dev_id, struct cJSON *log); /* slot 5: likewise */
  pd_callback_t reserved_6[21];
} drv_client_callbacks_t;

TARVEX_PD_LAYOUT(sizeof(drv_client_callbacks_t) == 216);
TARVEX_PD_LAYOUT(offsetof(drv_client_callbacks_t, dev_remove) == 24);
TARVEX_PD_LAYOUT(offsetof(drv_client_callbacks_t, dev_log) == 32);
TARVEX_PD_LAYOUT(offsetof(drv_client_callbacks_t, dev_restore) == 40);

pd_status_t bf_drv_register(const char *client_name, uint32_t *client_hdl);
pd_status_t bf_drv_deregister(uint32_t client_hdl);
pd_status_t bf_drv_client_register_callbacks(uint32_t client_hdl, const drv_client_callbacks_t *callbacks,
                                             uint32_t kind, uint32_t reserved);

/* ---- match tables ---------------------------------------------------------------------------------------------- */

pd_status_t pipe_mgr_mat_ent_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                 drv_match_spec_t *match_spec, uint32_t act_hdl, drv_action_spec_t *action_spec,
                                 uint32_t ttl, uint32_t flags, pd_entry_hdl_t *entry_hdl);
pd_status_t pipe_mgr_mat_ent_set_action(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                        pd_entry_hdl_t entry_hdl, uint32_t act_hdl, drv_action_spec_t *action_spec,
                                        uint32_t flags);
pd_status_t pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                      drv_match_spec_t *match_spec, uint32_t act_hdl,
                                                      drv_action_spec_t *action_spec, uint32_t flags);
pd_status_t pipe_mgr_mat_ent_del(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                 pd_entry_hdl_t entry_hdl, uint32_t flags);
pd_status_t pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                               drv_match_spec_t *match_spec, uint32_t flags);
pd_status_t pipe_mgr_match_spec_to_ent_hdl(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                           drv_match_spec_t *match_spec, pd_entry_hdl_t *entry_hdl);
pd_status_t pipe_mgr_mat_default_entry_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                           uint32_t act_hdl, drv_action_spec_t *action_spec, uint32_t flags,
                                           pd_entry_hdl_t *entry_hdl);
pd_status_t pipe_mgr_mat_tbl_default_entry_reset(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                 uint32_t flags);
pd_status_t pipe_mgr_table_get_default_entry_handle(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                    pd_entry_hdl_t *entry_hdl);

/**
 * Fills both records and the action handle. The caller presets the key's counts and pointers and 28 bytes of action
 * data; an entry without a key comes back with key_value null.
 */
pd_status_t pipe_mgr_get_entry(pd_sess_hdl_t sess_hdl, uint32_t tbl_hdl, uint32_t dev_id /* 8 bits */,
                               pd_entry_hdl_t entry_hdl, drv_match_spec_t *match_spec, drv_action_spec_t *action_spec,
                               uint32_t *act_hdl, uint32_t read_from_hw /* 8 bits */);
/** Counts entries of a match table, an action data table or a selector table. */
pd_status_t pipe_mgr_get_entry_count(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, uint32_t flags,
                                     uint32_t *count);
pd_status_t pipe_mgr_get_first_entry_handle(pd_sess_hdl_t sess_hdl, uint32_t tbl_hdl, pd_dev_tgt_t dev_tgt,
                                            uint32_t *first_hdl);
pd_status_t pipe_mgr_get_next_entry_handles(pd_sess_hdl_t sess_hdl, uint32_t tbl_hdl, pd_dev_tgt_t dev_tgt,
                                            uint32_t hdl, uint32_t n, uint32_t *next_hdls);
pd_status_t pipe_mgr_tbl_set_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                      uint32_t property, uint32_t value, uint32_t argument);
pd_status_t pipe_mgr_tbl_get_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                      uint32_t property, uint32_t *value, uint32_t *argument);
pd_status_t pipe_register_mat_update_cb(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t tbl_hdl, pd_callback_t cb,
                                        void *cookie);

/* ---- idle time ------------------------------------------------------------------------------------------------- */

pd_status_t pipe_mgr_idle_tmo_enable(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                     pd_idle_params_t params);
pd_status_t pipe_mgr_idle_tmo_disable(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl);
pd_status_t pipe_mgr_idle_register_tmo_cb(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                          pd_callback_t cb, void *cookie);
pd_status_t pipe_mgr_idle_time_update_hit_state(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                                uintptr_t first, uintptr_t second);
pd_status_t pipe_mgr_idle_time_get_hit_state(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                             pd_entry_hdl_t entry_hdl, uint32_t *hit_state);
pd_status_t pipe_mgr_mat_ent_set_idle_ttl(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                          pd_entry_hdl_t entry_hdl, uint32_t ttl, uint32_t flags);
pd_status_t pipe_mgr_mat_ent_get_idle_ttl(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t tbl_hdl,
                                          pd_entry_hdl_t entry_hdl, uint32_t *ttl);

/* ---- action data and selector tables --------------------------------------------------------------------------- */

pd_status_t pipe_mgr_adt_ent_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t adt_hdl, uint32_t act_hdl,
                                 drv_action_spec_t *action_spec, pd_mbr_hdl_t *mbr_hdl, uint32_t flags);
pd_status_t pipe_mgr_adt_ent_set(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t adt_hdl,
                                 pd_mbr_hdl_t mbr_hdl, uint32_t act_hdl, drv_action_spec_t *action_spec,
                                 uint32_t flags);
pd_status_t pipe_mgr_adt_ent_del(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t adt_hdl,
                                 pd_mbr_hdl_t mbr_hdl, uint32_t flags);
pd_status_t pipe_mgr_get_action_data_entry(uint32_t adt_hdl, uint32_t dev_id /* 8 bits */, pd_mbr_hdl_t mbr_hdl,
                                           drv_act_data_t *act_data, uint32_t *act_hdl,
                                           uint32_t read_from_hw /* 8 bits */);
pd_status_t pipe_register_adt_update_cb(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t adt_hdl, pd_callback_t cb,
                                        void *cookie);

pd_status_t pipe_mgr_sel_grp_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t sel_hdl, uint32_t max_grp_size,
                                 pd_grp_hdl_t *grp_hdl, uint32_t flags);
pd_status_t pipe_mgr_sel_grp_del(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t sel_hdl,
                                 pd_grp_hdl_t grp_hdl, uint32_t flags);
pd_status_t pipe_mgr_sel_grp_mbr_add(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t sel_hdl,
                                     pd_grp_hdl_t grp_hdl, uint32_t act_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t flags);
pd_status_t pipe_mgr_sel_grp_mbr_del(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t sel_hdl,
                                     pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t flags);
pd_status_t pipe_mgr_sel_grp_mbr_enable(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t sel_hdl,
                                        pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t flags);
pd_status_t pipe_mgr_sel_grp_mbr_disable(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t sel_hdl,
                                         pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t flags);
/** The state comes out as 0 (active) or 1 (inactive). */
pd_status_t pipe_mgr_sel_grp_mbr_state_get(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t sel_hdl,
                                           pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t *state);
pd_status_t pipe_mgr_sel_fallback_mbr_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t sel_hdl,
                                          pd_mbr_hdl_t mbr_hdl, uint32_t flags);
pd_status_t pipe_mgr_sel_fallback_mbr_reset(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t sel_hdl,
                                            uint32_t flags);
pd_status_t pipe_mgr_sel_tbl_register_cb(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t sel_hdl,
                                         pd_callback_t cb, void *cookie);
pd_status_t pipe_mgr_get_first_group_member(pd_sess_hdl_t sess_hdl, uint32_t sel_hdl, uint32_t dev_id /* 8 bits */,
                                            pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t *first_hdl);
pd_status_t pipe_mgr_get_next_group_members(pd_sess_hdl_t sess_hdl, uint32_t sel_hdl, uint32_t dev_id /* 8 bits */,
                                            pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t n,
                                            pd_mbr_hdl_t *next_hdls);
pd_status_t pipe_register_sel_update_cb(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t sel_hdl, pd_callback_t cb,
                                        void *cookie);

/**
 * What a warm restart replays of the action data and selector tables, one call for each member (group 0), each
 * group (member 0) and each membership, members and groups ahead of the memberships that name them.
 */
typedef void (*drv_adt_sel_restore_t)(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t adt_hdl, uint32_t act_hdl,
                                      pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t update_groups);
/** The five words in front are the driver's; the library hands them on. */
pd_status_t pipe_mgr_hitless_ha_restore_virtual_dev_state(uintptr_t first, uintptr_t second, uintptr_t third,
                                                          uintptr_t fourth, uintptr_t fifth,
                                                          drv_adt_sel_restore_t restore);

/* ---- counters -------------------------------------------------------------------------------------------------- */

/** Counter cell, 16 bytes. */
typedef struct drv_stat_data {
  uint64_t bytes;
  uint64_t packets;
} drv_stat_data_t;

TARVEX_PD_LAYOUT(sizeof(drv_stat_data_t) == 16);
TARVEX_PD_LAYOUT(offsetof(drv_stat_data_t, packets) == 8);

pd_status_t pipe_mgr_stat_ent_query(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl, uint32_t index,
                                    drv_stat_data_t *data);
pd_status_t pipe_mgr_stat_ent_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl, uint32_t index,
                                  drv_stat_data_t *data);
pd_status_t pipe_mgr_stat_ent_database_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl,
                                            uint32_t index);
pd_status_t pipe_mgr_stat_database_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl,
                                        pd_callback_t cb, void *cookie);
/** A direct counter is addressed by its match table and the entry. */
pd_status_t pipe_mgr_mat_ent_direct_stat_query(pd_sess_hdl_t sess_hdl, uint64_t dev_id, uint32_t tbl_hdl,
                                               pd_entry_hdl_t entry_hdl, drv_stat_data_t *data);
pd_status_t pipe_mgr_mat_ent_direct_stat_set(pd_sess_hdl_t sess_hdl, uint64_t dev_id, uint32_t tbl_hdl,
                                             pd_entry_hdl_t entry_hdl, drv_stat_data_t *data);
pd_status_t pipe_mgr_direct_stat_ent_database_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                   pd_entry_hdl_t entry_hdl);
pd_status_t pipe_mgr_direct_stat_database_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                               pd_callback_t cb, void *cookie);

/* ---- meters and WRED ------------------------------------------------------------------------------------------- */

pd_status_t pipe_mgr_mat_ent_set_resource(pd_sess_hdl_t sess_hdl, uint64_t dev_id, uint32_t tbl_hdl,
                                          pd_entry_hdl_t entry_hdl, drv_res_spec_t *resources, uint32_t count,
                                          uint32_t flags);
pd_status_t pipe_mgr_meter_ent_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl, uint32_t index,
                                   drv_meter_spec_t *spec, uint32_t flags);
pd_status_t pipe_mgr_meter_read_entry(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                      pd_entry_hdl_t entry_hdl, drv_meter_spec_t *spec);
pd_status_t pipe_mgr_meter_read_entry_idx(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl,
                                          uint32_t index, drv_meter_spec_t *spec);

/** WRED cell, 16 bytes, laid out as pd_wred_spec_t. */
typedef struct drv_wred_spec {
  float time_constant;
  uint32_t min_threshold;
  uint32_t max_threshold;
  float max_probability;
} drv_wred_spec_t;

TARVEX_PD_LAYOUT(sizeof(drv_wred_spec_t) == 16);
TARVEX_PD_LAYOUT(offsetof(drv_wred_spec_t, min_threshold) == 4);
TARVEX_PD_LAYOUT(offsetof(drv_wred_spec_t, max_threshold) == 8);
TARVEX_PD_LAYOUT(offsetof(drv_wred_spec_t, max_probability) == 12);

pd_status_t pipe_mgr_wred_ent_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t wred_hdl, uint32_t index,
                                  drv_wred_spec_t *spec, uint32_t flags);
pd_status_t pipe_mgr_wred_read_entry_idx(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t wred_hdl,
                                         uint32_t index, drv_wred_spec_t *spec);

/* ---- registers ------------------------------------------------------------------------------------------------- */

/** The target comes untouched. */
pd_status_t pipe_stful_query_get_sizes(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                       int32_t *row_count, int32_t *values_per_row);
pd_status_t pipe_stful_ent_query(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t index,
                                 drv_stful_query_t *query, uint32_t read_from_hw);
pd_status_t pipe_stful_ent_query_range(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                       uint32_t first_index, uint32_t count, drv_stful_query_t *queries,
                                       uint32_t *count_read, uint32_t read_from_hw);
pd_status_t pipe_stful_ent_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t index,
                               drv_stful_spec_t *spec, uint32_t flags);
pd_status_t pipe_stful_database_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, pd_callback_t cb,
                                     void *cookie);
/** Sets all cells to the value given, or with a null record to what the driver resets them to. */
pd_status_t pipe_stful_table_reset(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                   drv_stful_spec_t *spec);
pd_status_t pipe_stful_table_reset_range(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                         uint32_t first_index, uint32_t count, drv_stful_spec_t *spec);
/** The device comes untouched. */
pd_status_t pipe_stful_direct_ent_query(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t tbl_hdl,
                                        pd_entry_hdl_t entry_hdl, drv_stful_query_t *query, uint32_t read_from_hw);
pd_status_t pipe_stful_direct_database_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                            pd_callback_t cb, void *cookie);

/* ---- learning digest ------------------------------------------------------------------------------------------- */

pd_status_t pipe_mgr_lrn_digest_notification_register(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */,
                                                      uint32_t digest_hdl, pd_callback_t cb, void *cookie);
pd_status_t pipe_mgr_lrn_digest_notification_deregister(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */,
                                                        uint32_t digest_hdl);
pd_status_t pipe_mgr_flow_lrn_notify_ack(pd_sess_hdl_t sess_hdl, uint32_t digest_hdl, void *digest_msg);
pd_status_t pipe_mgr_flow_lrn_set_timeout(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t timeout);

/* ---- parser value set (all 32 bits of the device) ------------------------------------------------------------------
 */

pd_status_t pipe_mgr_pvs_set_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t pvs_hdl, uint32_t property,
                                      uint32_t value, uint32_t argument);
pd_status_t pipe_mgr_pvs_get_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t pvs_hdl, uint32_t property,
                                      uint32_t *value, uint32_t argument);
pd_status_t pipe_mgr_pvs_entry_add(pd_sess_hdl_t sess_hdl, uint64_t dev_id, uint32_t pvs_hdl, uint32_t tgt_scope,
                                   uint32_t tgt_index, uint32_t tgt_sub_index, uint32_t parser_value,
                                   uint32_t parser_value_mask, uint32_t *pvs_entry_hdl);
pd_status_t pipe_mgr_pvs_entry_modify(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t pvs_hdl, uint32_t pvs_entry_hdl,
                                      uint32_t parser_value, uint32_t parser_value_mask);
pd_status_t pipe_mgr_pvs_entry_delete(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t pvs_hdl,
                                      uint32_t pvs_entry_hdl);

/* ---- hash calculations ----------------------------------------------------------------------------------------- */

pd_status_t pipe_mgr_hash_calc_input_set(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t calc_hdl,
                                         uint32_t input_hdl);
pd_status_t pipe_mgr_hash_calc_input_get(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t calc_hdl,
                                         uint32_t *input_hdl);
pd_status_t pipe_mgr_hash_calc_algorithm_set(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t calc_hdl,
                                             uint32_t algorithm_hdl);
pd_status_t pipe_mgr_hash_calc_algorithm_get(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t calc_hdl,
                                             uint32_t *algorithm_hdl);
pd_status_t pipe_mgr_hash_calc_seed_set(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t calc_hdl,
                                        uint64_t seed);
pd_status_t pipe_mgr_hash_calc_seed_get(pd_sess_hdl_t sess_hdl, uint32_t dev_id /* 8 bits */, uint32_t calc_hdl,
                                        uint64_t *seed);

/* ---- placement data: a buffer that the driver hands out on update callbacks and alone can read ------------------- */

pd_status_t pipe_mgr_plcmt_mat_data_get_entry(const void *plcmt_data, drv_match_spec_t *match_spec,
                                              drv_action_spec_t *action_spec, uint32_t *act_hdl);
pd_status_t pipe_mgr_plcmt_adt_data_get_entry(const void *plcmt_data, drv_act_data_t *act_data, uint32_t *act_hdl);

/* ---- snapshots ------------------------------------------------------------------------------------------------- */

/** Shape of a capture record. */
typedef struct snap_capture_sizes {
  uint64_t total_size;
  uint64_t reserved_8;
  uint64_t ctrl_size;
} snap_capture_sizes_t;

TARVEX_PD_LAYOUT(sizeof(snap_capture_sizes_t) == 24);
TARVEX_PD_LAYOUT(offsetof(snap_capture_sizes_t, total_size) == 0);
TARVEX_PD_LAYOUT(offsetof(snap_capture_sizes_t, reserved_8) == 8);
TARVEX_PD_LAYOUT(offsetof(snap_capture_sizes_t, ctrl_size) == 16);

pd_status_t bf_snapshot_create(uint64_t dev_id, uint32_t pipe_id, uint32_t start_stage, uint32_t end_stage,
                               uint32_t direction, uint32_t *hdl);
pd_status_t bf_snapshot_delete(uint32_t hdl);
pd_status_t bf_snapshot_capture_trigger_set(uint32_t hdl, void *value_rec, void *mask_rec);
pd_status_t bf_snapshot_capture_get(uint32_t hdl, uint32_t pipe, void *capture, snap_capture_sizes_t *sizes,
                                    uint32_t *num_captures);

/* ---- member-selector state service ----------------------------------------------------------------------------- */

/** State of one action profile: its members with their actions, its groups, and who is in which. */
typedef struct ms_state ms_state;

/** Called for each group that holds a member. */
typedef pd_status_t (*p4_pd_ms_grp_fn_t)(uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, pd_grp_hdl_t grp_hdl, void *argument);

pd_status_t p4_pd_ms_init(void);
/** A new, empty state; null when there is no memory. */
ms_state *p4_pd_ms_init_state(void);
pd_status_t p4_pd_ms_new_mbr(pd_sess_hdl_t sess_hdl, ms_state *state, uint32_t dev_id /* 8 bits */,
                             pd_mbr_hdl_t mbr_hdl);
pd_status_t p4_pd_ms_set_mbr_act(ms_state *state, uint32_t dev_id /* 8 bits */, pd_mbr_hdl_t mbr_hdl, uint32_t act_hdl);
pd_status_t p4_pd_ms_get_mbr_act(ms_state *state, uint32_t dev_id /* 8 bits */, pd_mbr_hdl_t mbr_hdl,
                                 uint32_t *act_hdl);
pd_status_t p4_pd_ms_del_mbr(pd_sess_hdl_t sess_hdl, ms_state *state, uint32_t dev_id /* 8 bits */,
                             pd_mbr_hdl_t mbr_hdl);
/** The list stays the service's. */
pd_status_t p4_pd_ms_mbr_get_res(ms_state *state, uint32_t dev_id /* 8 bits */, pd_mbr_hdl_t mbr_hdl, uint32_t *count,
                                 pd_res_spec_t **list);
pd_status_t p4_pd_ms_mbr_apply_to_grps(ms_state *state, uint32_t dev_id /* 8 bits */, pd_mbr_hdl_t mbr_hdl,
                                       p4_pd_ms_grp_fn_t fn, void *argument);
pd_status_t p4_pd_ms_new_grp(pd_sess_hdl_t sess_hdl, ms_state *state, uint32_t dev_id /* 8 bits */,
                             pd_grp_hdl_t grp_hdl);
pd_status_t p4_pd_ms_del_grp(pd_sess_hdl_t sess_hdl, ms_state *state, uint32_t dev_id /* 8 bits */,
                             pd_grp_hdl_t grp_hdl);
pd_status_t p4_pd_ms_add_mbr_to_grp(pd_sess_hdl_t sess_hdl, ms_state *state, uint32_t dev_id /* 8 bits */,
                                    pd_mbr_hdl_t mbr_hdl, pd_grp_hdl_t grp_hdl);
pd_status_t p4_pd_ms_del_mbr_from_grp(pd_sess_hdl_t sess_hdl, ms_state *state, uint32_t dev_id /* 8 bits */,
                                      pd_mbr_hdl_t mbr_hdl, pd_grp_hdl_t grp_hdl);
pd_status_t p4_pd_ms_set_grp_act(ms_state *state, uint32_t dev_id /* 8 bits */, pd_grp_hdl_t grp_hdl, uint32_t act_hdl);
pd_status_t p4_pd_ms_get_grp_act(ms_state *state, uint32_t dev_id /* 8 bits */, pd_grp_hdl_t grp_hdl,
                                 uint32_t *act_hdl);
/** The list stays the service's. */
pd_status_t p4_pd_ms_grp_get_res(ms_state *state, uint32_t dev_id /* 8 bits */, pd_grp_hdl_t grp_hdl, uint32_t *count,
                                 pd_res_spec_t **list);
/** Brings a group's resources up to date from a member; made to be handed to p4_pd_ms_mbr_apply_to_grps. */
pd_status_t p4_pd_ms_grp_update_res(uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, pd_grp_hdl_t grp_hdl, void *state);
pd_status_t p4_pd_ms_log_state(uint32_t dev_id /* 8 bits */, ms_state *state, struct cJSON *object);
pd_status_t p4_pd_ms_restore_state(uint32_t dev_id /* 8 bits */, ms_state *state, struct cJSON *object);
/** The device comes with all its 32 bits, here and in the next. */
pd_status_t p4_pd_ms_destroy_state_for_dev(ms_state *state, uint32_t dev_id);
pd_status_t p4_pd_ms_destroy_txn_state_for_dev(uint32_t dev_id);

/* ---- system allocator ------------------------------------------------------------------------------------------ */

/** A zeroed block of `count` elements of `size` bytes, or null. */
void *bf_sys_calloc(size_t count, size_t size);
void bf_sys_free(void *block);

#ifdef __cplusplus
}
#endif

#endif
