// Linked into acl_and_qos, makes the switch go wrong once, as FAULT names it.
//
// SPDX-License-Identifier: Apache-2.0
#include "faults.h"
#include "switch_device.h"

namespace tarvex::examples {
namespace {

pd_entry_hdl_t first_trap()
{
  pd_entry_hdl_t handle = 0;
  p4_pd_tarvex_switch_trapToCpu_get_first_entry_handle(session, all_pipes, &handle);
  return handle;
}

constexpr char reading[] = "pipe_mgr_get_entry_count";

fault faults[] = {
    {"lost rule", reading, [] { p4_pd_tarvex_switch_trapToCpu_table_delete(session, device_id, first_trap()); }},
    {"other action", reading,
     [] { p4_pd_tarvex_switch_trapToCpu_table_modify_with_noOp(session, device_id, first_trap()); }},
    {"other parameters", reading,
     [] {
       const p4_pd_tarvex_switch_copyPacket_action_spec_t other{0x77, 1};
       p4_pd_tarvex_switch_trapToCpu_table_modify_with_copyPacket(session, device_id, first_trap(), &other);
     }},
    {"extra rule", "pipe_mgr_mat_ent_del",
     [] {
       const p4_pd_tarvex_switch_packetDscpRewrite_match_spec_t all{};
       pd_entry_hdl_t handle = 0;
       p4_pd_tarvex_switch_packetDscpRewrite_table_add_with_noTunnelIpv6(session, all_pipes, &all, 0, &handle);
     }},
    {"other default", reading,
     [] {
       pd_entry_hdl_t handle = 0;
       p4_pd_tarvex_switch_trapToCpu_set_default_action_setLlm(session, all_pipes, &handle);
     }},
    {"other configuration", reading,
     [] {
       const p4_pd_tarvex_switch_setQosRewriteConfiguration_action_spec_t other{0, 0};
       pd_entry_hdl_t handle = 0;
       p4_pd_tarvex_switch_qosRewriteConfig_set_default_action_setQosRewriteConfiguration(session, all_pipes, &other,
                                                                                          &handle);
     }},
    {"direct counter", reading,
     [] {
       p4_pd_tarvex_switch_counter_write_trapToCpuCount(session, all_pipes, first_trap(), {1, 2});
     }},
    {"indexed counter", reading, [] { standin_count_cell(device_id, 0x4000003, 4095, 1, 0); }},
    {"meter", reading,
     [] {
       const pd_meter_spec_t other{1, 2, 3, 4, PD_METER_TYPE_COLOR_UNAWARE};
       p4_pd_tarvex_switch_meter_set_pdpMeter(session, all_pipes, 5, &other);
     }},
};

const bool armed = arm(faults);

}  // namespace
}  // namespace tarvex::examples
