/*
 * SPDX-License-Identifier: Apache-2.0
 */
#include "null_driver.h"

#include <string.h>

int null_driver_watches;
struct null_driver_call null_driver_seen;
ms_state *null_driver_state;
uint32_t null_driver_read_action;

/* Begins the record of a call. */
static struct null_driver_call *see(const char *function, uint32_t session, uint64_t target, uint32_t table)
{
  struct null_driver_call *const call = &null_driver_seen;
  memset(call, 0, sizeof *call);
  call->function = function;
  call->session = session;
  call->target = target;
  call->table = table;
  return call;
}

static void see_key(struct null_driver_call *call, const drv_match_spec_t *key)
{
  call->key = *key;
  memcpy(call->key_value, key->key_value, key->key_bytes);
  memcpy(call->key_mask, key->key_mask, key->key_bytes);
  call->key.key_value = call->key.key_mask = NULL;
}

static void see_action(struct null_driver_call *call, uint32_t handle, const drv_action_spec_t *action)
{
  call->action = handle;
  call->action_spec = *action;
  if (action->act_data.data != NULL) memcpy(call->data, action->act_data.data, action->act_data.data_bytes);
  call->action_spec.act_data.data = NULL;
}

pd_status_t pipe_mgr_mat_ent_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                 drv_match_spec_t *match_spec, uint32_t act_hdl, drv_action_spec_t *action_spec,
                                 uint32_t ttl, uint32_t flags, pd_entry_hdl_t *entry_hdl)
{
  if (!null_driver_watches) return BF_SUCCESS;
  struct null_driver_call *const call = see(__func__, sess_hdl, dev_tgt, tbl_hdl);
  see_key(call, match_spec);
  see_action(call, act_hdl, action_spec);
  call->further[0] = ttl;
  call->further[1] = flags;
  *entry_hdl = 1;
  return BF_SUCCESS;
}

pd_status_t pipe_mgr_mat_ent_set_action(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t tbl_hdl,
                                        pd_entry_hdl_t entry_hdl, uint32_t act_hdl, drv_action_spec_t *action_spec,
                                        uint32_t flags)
{
  if (!null_driver_watches) return BF_SUCCESS;
  struct null_driver_call *const call = see(__func__, sess_hdl, dev_id, tbl_hdl);
  see_action(call, act_hdl, action_spec);
  call->entry = entry_hdl;
  call->further[0] = flags;
  return BF_SUCCESS;
}

pd_status_t pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                               drv_match_spec_t *match_spec, uint32_t flags)
{
  if (!null_driver_watches) return BF_SUCCESS;
  struct null_driver_call *const call = see(__func__, sess_hdl, dev_tgt, tbl_hdl);
  see_key(call, match_spec);
  call->further[0] = flags;
  return BF_SUCCESS;
}

pd_status_t pipe_mgr_mat_default_entry_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                           uint32_t act_hdl, drv_action_spec_t *action_spec, uint32_t flags,
                                           pd_entry_hdl_t *entry_hdl)
{
  if (!null_driver_watches) return BF_SUCCESS;
  struct null_driver_call *const call = see(__func__, sess_hdl, dev_tgt, tbl_hdl);
  see_action(call, act_hdl, action_spec);
  call->further[0] = flags;
  *entry_hdl = 1;
  return BF_SUCCESS;
}

pd_status_t p4_pd_ms_get_mbr_act(ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, uint32_t *act_hdl)
{
  (void)dev_id;
  null_driver_state = state;
  *act_hdl = 0x20000000 | mbr_hdl;
  return BF_SUCCESS;
}

pd_status_t p4_pd_ms_mbr_get_res(ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, uint32_t *count,
                                 pd_res_spec_t **list)
{
  (void)state, (void)dev_id, (void)mbr_hdl, (void)count, (void)list;
  return BF_SUCCESS;
}

pd_status_t pipe_mgr_get_entry(pd_sess_hdl_t sess_hdl, uint32_t tbl_hdl, uint32_t dev_id, pd_entry_hdl_t entry_hdl,
                               drv_match_spec_t *match_spec, drv_action_spec_t *action_spec, uint32_t *act_hdl,
                               uint32_t read_from_hw)
{
  action_spec->act_kinds = DRV_ACT_DATA;
  *act_hdl = null_driver_read_action;
  if (!null_driver_watches) return BF_SUCCESS;
  struct null_driver_call *const call = see(__func__, sess_hdl, dev_id, tbl_hdl);
  see_key(call, match_spec);
  see_action(call, 0, action_spec);
  call->entry = entry_hdl;
  call->further[0] = read_from_hw;
  /* A value of its own in every byte, so that a member filled from another's bytes shows. */
  for (uint32_t i = 0; i < match_spec->key_bytes; ++i) {
    match_spec->key_value[i] = (uint8_t)(0x11 + i);
    match_spec->key_mask[i] = (uint8_t)(0x81 + i);
  }
  match_spec->priority = 77;
  for (uint32_t i = 0; i < action_spec->act_data.data_bytes; ++i) action_spec->act_data.data[i] = (uint8_t)(0x41 + i);
  return BF_SUCCESS;
}

pd_status_t pipe_mgr_mat_ent_direct_stat_query(pd_sess_hdl_t sess_hdl, uint64_t dev_id, uint32_t tbl_hdl,
                                               pd_entry_hdl_t entry_hdl, drv_stat_data_t *data)
{
  if (!null_driver_watches) return BF_SUCCESS;
  see(__func__, sess_hdl, dev_id, tbl_hdl)->entry = entry_hdl;
  data->bytes = 12345;
  data->packets = 678;
  return BF_SUCCESS;
}
