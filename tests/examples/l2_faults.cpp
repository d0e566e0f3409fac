// Linked into l2_learning, makes the switch go wrong once, as FAULT names it.
//
// SPDX-License-Identifier: Apache-2.0
#include "faults.h"
#include "switch_device.h"

namespace tarvex::examples {
namespace {

pd_entry_hdl_t first_station()
{
  pd_entry_hdl_t handle = 0;
  p4_pd_tarvex_switch_l2LearningLookup_get_first_entry_handle(session, all_pipes, &handle);
  return handle;
}

fault faults[] = {
    {"lost station", "pipe_mgr_get_first_entry_handle",
     [] { p4_pd_tarvex_switch_l2LearningLookup_table_delete(session, device_id, first_station()); }},
    {"short ttl", "pipe_mgr_get_first_entry_handle",
     [] { p4_pd_tarvex_switch_l2LearningLookup_set_ttl(session, device_id, first_station(), 1); }},
    {"early ageing", "pipe_mgr_mat_ent_set_resource", [] { standin_idle_advance(250'000); }},
    {"stray report", "pipe_mgr_flow_lrn_notify_ack",
     [] {
       const std::uint8_t entry[P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE] = {1, 2, 3};
       standin_digest_deliver(device_id, P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_HANDLE, entry, 1);
     }},
    {"miscount", "pipe_mgr_stat_database_sync", [] { standin_count_cell(device_id, 0x4000004, 3, 1, 0); }},
    {"open interface", "pipe_mgr_hash_calc_seed_set",
     [] { p4_pd_tarvex_switch_register_reset_all_ingStpCheckData(session, all_pipes); }},
    {"other hash", "pipe_mgr_hash_calc_seed_get",
     [] { p4_pd_tarvex_switch_hash_calc_hashOuterEthHdr_seed_set(session, device_id, 0); }},
};

const bool armed = arm(faults);

}  // namespace
}  // namespace tarvex::examples
