// Members of an action profile: the driver's action data table first, the profile's member-selector state after it, so
// that the state never holds a member that the driver refused.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "action_marshalling.h"
#include "call_conventions.h"
#include "profile_states.h"

namespace tarvex::pd {

template <const profile_row &P, const action_use_row &U>
[[gnu::always_inline]] inline pd_status_t add_member(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                     const void *action_spec, pd_mbr_hdl_t *mbr_hdl)
{
  action_record<*U.action> action;
  build_action<*U.action>(action, action_spec, 0);
  const pd_status_t status =
      pipe_mgr_adt_ent_add(sess_hdl, whole_target(dev_tgt), P.action_data_table, U.handle, &action.spec, mbr_hdl, 0);
  if (status != BF_SUCCESS) return status;
  p4_pd_ms_new_mbr(sess_hdl, state_of<P>(), low_byte(dev_tgt), *mbr_hdl);
  p4_pd_ms_set_mbr_act(state_of<P>(), low_byte(dev_tgt), *mbr_hdl, U.handle);
  return BF_SUCCESS;
}

/// A member keeps its action for life: only the function of that action may change its parameters.
template <const profile_row &P, const action_use_row &U>
[[gnu::always_inline]] inline pd_status_t modify_member(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                        pd_mbr_hdl_t mbr_hdl, const void *action_spec)
{
  std::uint32_t act_hdl = 0;
  const pd_status_t status = p4_pd_ms_get_mbr_act(state_of<P>(), low_byte(dev_id), mbr_hdl, &act_hdl);
  if (status != BF_SUCCESS) return status;
  if (act_hdl != U.handle) return PD_STATUS_WRONG_MEMBER_ACTION;
  action_record<*U.action> action;
  build_action<*U.action>(action, action_spec, 0);
  return pipe_mgr_adt_ent_set(sess_hdl, low_byte(dev_id), P.action_data_table, mbr_hdl, U.handle, &action.spec, 0);
}

template <const profile_row &P>
inline pd_status_t del_member(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_mbr_hdl_t mbr_hdl)
{
  const pd_status_t status = pipe_mgr_adt_ent_del(sess_hdl, low_byte(dev_id), P.action_data_table, mbr_hdl, 0);
  if (status != BF_SUCCESS) return status;
  p4_pd_ms_del_mbr(sess_hdl, state_of<P>(), low_byte(dev_id), mbr_hdl);
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
