// Calls from many threads: each thread's entries are its own, while devices come and go beside them.
//
// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "switch_fixture.h"

namespace {

class Threads : public SwitchTest {};

TEST_F(Threads, CallsDoNotDisturbEachOther)
{
  ms_state *const state = p4_pd_ms_init_state();
  const auto work = [state](std::uint8_t number) {
    for (int round = 0; round < 30; ++round) {
      std::vector<pd_entry_hdl_t> entries;
      for (std::uint8_t i = 0; i < 100; ++i) entries.push_back(add_host(number & 1, i, number));
      for (std::uint8_t i = 0; i < 100; ++i) {
        const std::uint8_t key[] = {static_cast<std::uint8_t>(number & 1), i, number};
        pd_entry_hdl_t found = 0;
        ok(standin_lookup(target, host_table, key, 3, 0, &found));
        ASSERT_EQ(found, entries[i]);
        ok(p4_pd_ms_new_mbr(session, state, device, number * 1000u + i));
        ok(p4_pd_ms_del_mbr(session, state, device, number * 1000u + i));
        ok(pipe_mgr_mat_ent_del(session, device, host_table, found, 0));
      }
    }
  };
  std::vector<std::thread> threads;
  for (std::uint8_t number = 1; number <= 4; ++number) threads.emplace_back(work, number);
  threads.emplace_back([] {
    for (int i = 0; i < 200; ++i) {
      ok(standin_device_add(9));
      ok(standin_idle_advance(1));
      ok(standin_device_remove(9));
    }
  });
  for (std::thread &each : threads) each.join();
  EXPECT_EQ(count(host_table), 0u);
}

}  // namespace
