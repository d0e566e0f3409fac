// Entry writes: add, modify, delete and finding an entry's handle. Each ends in one driver call whose status it
// returns.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "action_marshalling.h"
#include "call_conventions.h"
#include "key_marshalling.h"
#include "resource_lists.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// Builds the action record of one use of an action. False if the caller's meter spec is refused.
template <const action_use_row &U, entry_operation Op>
[[gnu::always_inline]] inline bool build_entry_action(action_record<*U.action> &action, const void *action_spec,
                                                      const pd_meter_spec_t *meter_spec)
{
  if (meter_refused<U, Op>(meter_spec)) return false;
  build_action<*U.action>(action, action_spec, DRV_ACT_DATA);
  name_resources<U, Op>(action.spec, action_spec, meter_spec);
  return true;
}

template <const table_row &T, const action_use_row &U>
[[gnu::always_inline]] inline pd_status_t entry_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                    const void *match_spec, std::uint32_t priority,
                                                    const void *action_spec, std::uint32_t ttl,
                                                    const pd_meter_spec_t *meter_spec, pd_entry_hdl_t *entry_hdl)
{
  action_record<*U.action> action;
  if (!build_entry_action<U, entry_operation::add>(action, action_spec, meter_spec)) return PD_STATUS_INVALID_ARG;
  key_record<T> key;
  build_key<T>(key, match_spec, priority);
  return pipe_mgr_mat_ent_add(sess_hdl, whole_target(dev_tgt), T.handle, &key.spec, U.handle, &action.spec, ttl, 0,
                              entry_hdl);
}

template <const table_row &T, const action_use_row &U>
[[gnu::always_inline]] inline pd_status_t entry_modify(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                       pd_entry_hdl_t entry_hdl, const void *action_spec,
                                                       const pd_meter_spec_t *meter_spec)
{
  action_record<*U.action> action;
  if (!build_entry_action<U, entry_operation::modify>(action, action_spec, meter_spec)) return PD_STATUS_INVALID_ARG;
  return pipe_mgr_mat_ent_set_action(sess_hdl, low_byte(dev_id), T.handle, entry_hdl, U.handle, &action.spec, 0);
}

template <const table_row &T, const action_use_row &U>
[[gnu::always_inline]] inline pd_status_t entry_modify_by_match_spec(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                                     const void *match_spec, std::uint32_t priority,
                                                                     const void *action_spec,
                                                                     const pd_meter_spec_t *meter_spec)
{
  action_record<*U.action> action;
  if (!build_entry_action<U, entry_operation::modify>(action, action_spec, meter_spec)) return PD_STATUS_INVALID_ARG;
  key_record<T> key;
  build_key<T>(key, match_spec, priority);
  return pipe_mgr_mat_ent_set_action_by_match_spec(sess_hdl, whole_target(dev_tgt), T.handle, &key.spec, U.handle,
                                                   &action.spec, 0);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t entry_delete(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                       pd_entry_hdl_t entry_hdl)
{
  return pipe_mgr_mat_ent_del(sess_hdl, low_byte(dev_id), T.handle, entry_hdl, 0);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t entry_delete_by_match_spec(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                                     const void *match_spec, std::uint32_t priority)
{
  key_record<T> key;
  build_key<T>(key, match_spec, priority);
  return pipe_mgr_mat_ent_del_by_match_spec(sess_hdl, whole_target(dev_tgt), T.handle, &key.spec, 0);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t match_spec_to_entry_hdl(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                                  const void *match_spec, std::uint32_t priority,
                                                                  pd_entry_hdl_t *entry_hdl)
{
  key_record<T> key;
  build_key<T>(key, match_spec, priority);
  return pipe_mgr_match_spec_to_ent_hdl(sess_hdl, whole_target(dev_tgt), T.handle, &key.spec, entry_hdl);
}

}  // namespace tarvex::pd
