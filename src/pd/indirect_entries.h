// Entries and defaults of the indirect tables: they point at a member or at a group of the table's action profile. The
// driver wants the action too, which the member-selector state knows.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"
#include "key_marshalling.h"
#include "profile_states.h"

namespace tarvex::pd {

enum class pointee { member, group };

/// Clears the record, points it at a member or a group, and finds the action. The status is the state's.
template <const profile_row &P, pointee What>
[[gnu::always_inline]] inline pd_status_t point_at(drv_action_spec_t &action, std::uint32_t &act_hdl,
                                                   std::uint32_t device, std::uint32_t hdl)
{
  std::memset(&action, 0, sizeof action);
  act_hdl = 0;
  // The driver asks for nothing of a member's or group's resources: none of this pipeline has any.
  std::uint32_t res_count = 0;
  pd_res_spec_t *resources = nullptr;
  pd_status_t status;
  if constexpr (What == pointee::member) {
    action.act_kinds = DRV_ACT_MEMBER;
    action.mbr_hdl = hdl;
    status = p4_pd_ms_get_mbr_act(state_of<P>(), device, hdl, &act_hdl);
    if (status == BF_SUCCESS) p4_pd_ms_mbr_get_res(state_of<P>(), device, hdl, &res_count, &resources);
  } else {
    action.act_kinds = DRV_ACT_GROUP;
    action.grp_hdl = hdl;
    status = p4_pd_ms_get_grp_act(state_of<P>(), device, hdl, &act_hdl);
    if (status == BF_SUCCESS) p4_pd_ms_grp_get_res(state_of<P>(), device, hdl, &res_count, &resources);
  }
  return status;
}

template <const table_row &T, const profile_row &P, pointee What>
inline pd_status_t add_indirect_entry(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, const void *match_spec,
                                      std::uint32_t priority, std::uint32_t hdl, pd_entry_hdl_t *entry_hdl)
{
  key_record<T> key;
  build_key<T>(key, match_spec, priority);
  drv_action_spec_t action;
  std::uint32_t act_hdl;
  const pd_status_t status = point_at<P, What>(action, act_hdl, low_byte(dev_tgt), hdl);
  if (status != BF_SUCCESS) return status;
  return pipe_mgr_mat_ent_add(sess_hdl, whole_target(dev_tgt), T.handle, &key.spec, act_hdl, &action, 0, 0, entry_hdl);
}

template <const table_row &T, const profile_row &P, pointee What>
inline pd_status_t modify_indirect_entry(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                         std::uint32_t hdl)
{
  drv_action_spec_t action;
  std::uint32_t act_hdl;
  const pd_status_t status = point_at<P, What>(action, act_hdl, low_byte(dev_id), hdl);
  if (status != BF_SUCCESS) return status;
  return pipe_mgr_mat_ent_set_action(sess_hdl, low_byte(dev_id), T.handle, entry_hdl, act_hdl, &action, 0);
}

template <const table_row &T, const profile_row &P, pointee What>
inline pd_status_t modify_indirect_entry_by_match_spec(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                       const void *match_spec, std::uint32_t priority,
                                                       std::uint32_t hdl)
{
  key_record<T> key;
  build_key<T>(key, match_spec, priority);
  drv_action_spec_t action;
  std::uint32_t act_hdl;
  const pd_status_t status = point_at<P, What>(action, act_hdl, low_byte(dev_tgt), hdl);
  if (status != BF_SUCCESS) return status;
  return pipe_mgr_mat_ent_set_action_by_match_spec(sess_hdl, whole_target(dev_tgt), T.handle, &key.spec, act_hdl,
                                                   &action, 0);
}

template <const table_row &T, const profile_row &P, pointee What>
inline pd_status_t set_indirect_default(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t hdl,
                                        pd_entry_hdl_t *entry_hdl)
{
  drv_action_spec_t action;
  std::uint32_t act_hdl;
  const pd_status_t status = point_at<P, What>(action, act_hdl, low_byte(dev_tgt), hdl);
  if (status != BF_SUCCESS) return status;
  return pipe_mgr_mat_default_entry_set(sess_hdl, whole_target(dev_tgt), T.handle, act_hdl, &action, 0, entry_hdl);
}

}  // namespace tarvex::pd
