// Linked into l2_learning, makes the switch go wrong once, as FAULT names it.
//
// SPDX-License-Identifier: Apache-2.0
#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_standin/standin.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::uint32_t session = 1, device = 0;

pd_entry_hdl_t first_station()
{
  pd_entry_hdl_t handle = 0;
  p4_pd_tarvex_switch_l2LearningLookup_get_first_entry_handle(session, pd_dev_tgt(device, PD_ALL_PIPES), &handle);
  return handle;
}

struct fault {
  const char *name;
  const char *trigger;  // the first driver call of this name
  void (*happens)();
};

constexpr fault faults[] = {
    {"lost station", "pipe_mgr_get_first_entry_handle",
     [] { p4_pd_tarvex_switch_l2LearningLookup_table_delete(session, device, first_station()); }},
    {"short ttl", "pipe_mgr_get_first_entry_handle",
     [] { p4_pd_tarvex_switch_l2LearningLookup_set_ttl(session, device, first_station(), 1); }},
    {"early ageing", "pipe_mgr_mat_ent_set_resource", [] { standin_idle_advance(250'000); }},
    {"stray report", "pipe_mgr_flow_lrn_notify_ack",
     [] {
       const std::uint8_t entry[P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE] = {1, 2, 3};
       standin_digest_deliver(device, 0x21000084, entry, 1);
     }},
    {"miscount", "pipe_mgr_stat_database_sync", [] { standin_count_cell(device, 0x4000004, 3, 1, 0); }},
    {"open interface", "pipe_mgr_hash_calc_seed_set",
     [] { p4_pd_tarvex_switch_register_reset_all_ingStpCheckData(session, pd_dev_tgt(device, PD_ALL_PIPES)); }},
    {"other hash", "pipe_mgr_hash_calc_seed_get",
     [] { p4_pd_tarvex_switch_hash_calc_hashOuterEthHdr_seed_set(session, device, 0); }},
};

const fault *chosen = nullptr;

void go_wrong(const char *function, std::uint32_t, void *)
{
  if (std::strcmp(function, chosen->trigger) != 0) return;
  standin_set_listener(nullptr, nullptr);
  chosen->happens();
}

const bool armed = [] {
  const char *const wanted = std::getenv("FAULT");
  if (wanted == nullptr) return false;
  for (const fault &each : faults)
    if (std::strcmp(wanted, each.name) == 0) chosen = &each;
  if (chosen == nullptr) std::abort();  // the test has another name for it
  standin_set_listener(go_wrong, nullptr);
  return true;
}();

}  // namespace
