// Selector groups of an action profile and who is in them. The hardware changes first, the member-selector state
// follows.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"
#include "profile_states.h"
#include "rows.h"

namespace tarvex::pd {

template <const profile_row &P>
inline pd_status_t create_group(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t max_grp_size,
                                pd_grp_hdl_t *grp_hdl)
{
  const pd_status_t status =
      pipe_mgr_sel_grp_add(sess_hdl, whole_target(dev_tgt), P.selector_table, max_grp_size, grp_hdl, 0);
  if (status != BF_SUCCESS) return status;
  p4_pd_ms_new_grp(sess_hdl, state_of<P>(), low_byte(dev_tgt), *grp_hdl);
  return BF_SUCCESS;
}

/// The one operation that reports the state's status after the hardware has changed.
template <const profile_row &P>
inline pd_status_t del_group(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_grp_hdl_t grp_hdl)
{
  const pd_status_t status = pipe_mgr_sel_grp_del(sess_hdl, low_byte(dev_id), P.selector_table, grp_hdl, 0);
  if (status != BF_SUCCESS) return status;
  return p4_pd_ms_del_grp(sess_hdl, state_of<P>(), low_byte(dev_id), grp_hdl);
}

/// The driver wants the member's action, which the state alone knows. The group's action becomes that of its latest
/// member.
template <const profile_row &P>
inline pd_status_t add_member_to_group(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_grp_hdl_t grp_hdl,
                                       pd_mbr_hdl_t mbr_hdl)
{
  const std::uint32_t device = low_byte(dev_id);
  std::uint32_t act_hdl = 0;
  pd_status_t status = p4_pd_ms_get_mbr_act(state_of<P>(), device, mbr_hdl, &act_hdl);
  if (status != BF_SUCCESS) return status;
  status = pipe_mgr_sel_grp_mbr_add(sess_hdl, device, P.selector_table, grp_hdl, act_hdl, mbr_hdl, 0);
  if (status != BF_SUCCESS) return status;
  p4_pd_ms_add_mbr_to_grp(sess_hdl, state_of<P>(), device, mbr_hdl, grp_hdl);
  p4_pd_ms_set_grp_act(state_of<P>(), device, grp_hdl, act_hdl);
  return BF_SUCCESS;
}

/// The group keeps its action, also when its last member leaves.
template <const profile_row &P>
inline pd_status_t del_member_from_group(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_grp_hdl_t grp_hdl,
                                         pd_mbr_hdl_t mbr_hdl)
{
  const pd_status_t status =
      pipe_mgr_sel_grp_mbr_del(sess_hdl, low_byte(dev_id), P.selector_table, grp_hdl, mbr_hdl, 0);
  if (status != BF_SUCCESS) return status;
  p4_pd_ms_del_mbr_from_grp(sess_hdl, state_of<P>(), low_byte(dev_id), mbr_hdl, grp_hdl);
  return BF_SUCCESS;
}

template <const profile_row &P>
inline pd_status_t group_member_state_set(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_grp_hdl_t grp_hdl,
                                          pd_mbr_hdl_t mbr_hdl, std::uint32_t state)
{
  switch (state) {
    case P4_PD_GRP_MBR_STATE_ACTIVE:
      return pipe_mgr_sel_grp_mbr_enable(sess_hdl, low_byte(dev_id), P.selector_table, grp_hdl, mbr_hdl, 0);
    case P4_PD_GRP_MBR_STATE_INACTIVE:
      return pipe_mgr_sel_grp_mbr_disable(sess_hdl, low_byte(dev_id), P.selector_table, grp_hdl, mbr_hdl, 0);
    default: return PD_STATUS_INVALID_ARG;
  }
}

/// A state that has no name is not handed on.
template <const profile_row &P>
inline pd_status_t group_member_state_get(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_grp_hdl_t grp_hdl,
                                          pd_mbr_hdl_t mbr_hdl, std::uint32_t *state)
{
  std::uint32_t found = 0;
  const pd_status_t status =
      pipe_mgr_sel_grp_mbr_state_get(sess_hdl, low_byte(dev_id), P.selector_table, grp_hdl, mbr_hdl, &found);
  if (status != BF_SUCCESS) return status;
  if (found == P4_PD_GRP_MBR_STATE_ACTIVE || found == P4_PD_GRP_MBR_STATE_INACTIVE) *state = found;
  return BF_SUCCESS;
}

template <const profile_row &P>
inline pd_status_t set_fallback_member(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, pd_mbr_hdl_t mbr_hdl)
{
  return pipe_mgr_sel_fallback_mbr_set(sess_hdl, whole_target(dev_tgt), P.selector_table, mbr_hdl, 0);
}

template <const profile_row &P>
inline pd_status_t reset_fallback_member(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt)
{
  return pipe_mgr_sel_fallback_mbr_reset(sess_hdl, whole_target(dev_tgt), P.selector_table, 0);
}

/// Registers on the selector table; tracking of updates does it without a session, as session 0.
template <const profile_row &P>
inline pd_status_t register_selector_callback(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_callback_t cb,
                                              void *cookie)
{
  return pipe_mgr_sel_tbl_register_cb(sess_hdl, low_byte(dev_id), P.selector_table, cb, cookie);
}

}  // namespace tarvex::pd
