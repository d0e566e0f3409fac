// Rebuilds the member-selector states after a warm restart from what the driver replays of its tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "call_conventions.h"
#include "plain_functions.h"
#include "profile_states.h"
#include "restorable_profiles.h"

/// Weak, because its address is handed on: the library must load with a driver that lacks it.
extern "C" [[gnu::weak]] decltype(p4_pd_ms_grp_update_res) p4_pd_ms_grp_update_res;

namespace tarvex::pd {

namespace {

/// One row of the replay: a member (no group), a group (no member), or a membership (both). Members and groups are
/// expected before the memberships that name them.
void restore_from_replay(pd_sess_hdl_t sess_hdl, std::uint32_t dev_id, std::uint32_t adt_hdl, std::uint32_t act_hdl,
                         pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, std::uint32_t update_resources)
{
  const restorable_profile *profile = nullptr;
  for (const restorable_profile &p : restorable_profiles)
    if (p.action_data_table == adt_hdl) profile = &p;
  if (profile == nullptr) return;

  ms_state *state = profile_states[profile - restorable_profiles.data()];
  const std::uint32_t device = low_byte(dev_id);
  if (grp_hdl == 0 && mbr_hdl != 0) {
    p4_pd_ms_new_mbr(sess_hdl, state, device, mbr_hdl);
    p4_pd_ms_set_mbr_act(state, device, mbr_hdl, act_hdl);
  } else if (grp_hdl != 0 && mbr_hdl == 0) {
    p4_pd_ms_new_grp(sess_hdl, state, device, grp_hdl);
  } else if (grp_hdl != 0) {
    p4_pd_ms_add_mbr_to_grp(sess_hdl, state, device, mbr_hdl, grp_hdl);
    // The group takes the action that its member was reported with, not the one of this row.
    std::uint32_t member_action = 0;
    if (p4_pd_ms_get_mbr_act(state, device, mbr_hdl, &member_action) != BF_SUCCESS) return;
    p4_pd_ms_set_grp_act(state, device, grp_hdl, member_action);
  }

  if (update_resources == 0 || p4_pd_ms_grp_update_res == nullptr) return;
  for (const std::uint32_t own : profile->actions)
    if (own == act_hdl) p4_pd_ms_mbr_apply_to_grps(state, device, mbr_hdl, p4_pd_ms_grp_update_res, state);
}

}  // namespace

pd_status_t restore_virtual_dev_state(uintptr_t argument_1, uintptr_t argument_2, uintptr_t argument_3,
                                      uintptr_t argument_4, uintptr_t argument_5)
{
  return pipe_mgr_hitless_ha_restore_virtual_dev_state(argument_1, argument_2, argument_3, argument_4, argument_5,
                                                       restore_from_replay);
}

}  // namespace tarvex::pd
