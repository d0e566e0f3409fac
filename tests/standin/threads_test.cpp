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
        ASSERT_EQ(standin_lookup(target, host_table, key, 3, 0, &found), BF_SUCCESS);
        ASSERT_EQ(found, entries[i]);
        ASSERT_EQ(p4_pd_ms_new_mbr(session, state, device, number * 1000u + i), BF_SUCCESS);
        ASSERT_EQ(p4_pd_ms_del_mbr(session, state, device, number * 1000u + i), BF_SUCCESS);
        ASSERT_EQ(pipe_mgr_mat_ent_del(session, device, host_table, found, 0), BF_SUCCESS);
      }
    }
  };
  std::vector<std::thread> threads;
  for (std::uint8_t number = 1; number <= 4; ++number) threads.emplace_back(work, number);
  threads.emplace_back([] {
    for (int i = 0; i < 200; ++i) {
      EXPECT_EQ(standin_device_add(9), BF_SUCCESS);
      EXPECT_EQ(standin_idle_advance(1), BF_SUCCESS);
      EXPECT_EQ(standin_device_remove(9), BF_SUCCESS);
    }
  });
  for (std::thread &each : threads) each.join();
  EXPECT_EQ(count(host_table), 0u);
}

}  // namespace
