// Linked into ecmp_fabric, makes the switch go wrong once, as FAULT names it.
//
// SPDX-License-Identifier: Apache-2.0
#include "faults.h"
#include "switch_device.h"

namespace tarvex::examples {
namespace {

// Handles begin at 1, and the group with handle 1 stays empty.
constexpr pd_grp_hdl_t group = 10;

pd_mbr_hdl_t first_of_group()
{
  pd_mbr_hdl_t handle = 0;
  p4_pd_tarvex_switch_ecmpMemberActionProfile_get_first_group_member(session, device_id, group, &handle);
  return handle;
}

void refuse_next() { standin_refuse_call(1, STANDIN_FULL); }

constexpr char checking[] = "pipe_mgr_get_action_data_entry", logging[] = "p4_pd_ms_log_state";

fault faults[] = {
    {"other member", checking,
     [] {
       const p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t other{{}, 0xdead};
       p4_pd_tarvex_switch_ecmpMemberActionProfile_modify_member_with_setEcmpNextHop(session, device_id, 7, &other);
     }},
    {"other state", checking,
     [] {
       std::uint32_t state = 0;
       p4_pd_tarvex_switch_ecmpMemberActionProfile_group_member_state_get(session, device_id, group, first_of_group(),
                                                                          &state);
       p4_pd_tarvex_switch_ecmpMemberActionProfile_group_member_state_set(session, device_id, group, first_of_group(),
                                                                          1 - state);
     }},
    {"lost membership", checking,
     [] {
       p4_pd_tarvex_switch_ecmpMemberActionProfile_del_member_from_group(session, device_id, group, first_of_group());
     }},
    {"extra group", checking,
     [] {
       pd_grp_hdl_t added = 0;
       p4_pd_tarvex_switch_tunnelMember_create_group(session, all_pipes, 1, &added);
     }},
    {"entry elsewhere", checking,
     [] {
       const p4_pd_tarvex_switch_lagGroup_match_spec_t third{3, 0xfffff};
       p4_pd_tarvex_switch_lagGroup_modify_entry_by_match_spec(session, all_pipes, &third, 100, 9);
     }},
    {"fallback gone", checking,
     [] { p4_pd_tarvex_switch_tunnelMember_reset_dynamic_action_selection_fallback_member(session, all_pipes); }},
    {"log cut short", logging, refuse_next},
    {"state not restored", "p4_pd_ms_restore_state", refuse_next},
    {"member not replayed", "pipe_mgr_hitless_ha_restore_virtual_dev_state", refuse_next},
    {"state kept", "p4_pd_ms_destroy_state_for_dev", refuse_next},
    {"full group", "p4_pd_ms_get_mbr_act", refuse_next},  // asked for just ahead of the driver's call
    {"membership not recorded", "pipe_mgr_sel_grp_mbr_add", refuse_next},
};

const bool armed = arm(faults);

}  // namespace
}  // namespace tarvex::examples
