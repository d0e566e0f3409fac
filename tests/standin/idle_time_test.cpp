// Idle time: ageing by the test's clock, hits, hit states.
//
// SPDX-License-Identifier: Apache-2.0
#include "switch_fixture.h"

namespace {

void note(std::uint32_t dev_id, std::uint32_t table, pd_entry_hdl_t entry, void *cookie)
{
  EXPECT_EQ(dev_id, device);
  EXPECT_EQ(table, host_table);
  static_cast<std::vector<std::uint32_t> *>(cookie)->push_back(entry);
  std::uint32_t ttl = 1;  // the driver can be called from a callback
  ok(pipe_mgr_mat_ent_get_idle_ttl(session, device, table, entry, &ttl));
  EXPECT_EQ(ttl, 0u);
}

class IdleTime : public SwitchTest {
 protected:
  pd_status_t enable(std::uint32_t mode, std::uint32_t interval = 0, std::uint32_t largest = 0)
  {
    pd_idle_params_t params{};
    params.word_0 = mode;
    params.word_1 = interval;
    params.word_2 = largest;
    params.word_4 = reinterpret_cast<std::uintptr_t>(&note);
    params.word_5 = reinterpret_cast<std::uintptr_t>(&expired_);
    return pipe_mgr_idle_tmo_enable(session, device, host_table, params);
  }
  /// Entries that expire in a time.
  std::vector<std::uint32_t> after(std::uint32_t milliseconds)
  {
    expired_.clear();
    ok(standin_idle_advance(milliseconds));
    return expired_;
  }
  static std::uint32_t ttl(pd_entry_hdl_t entry)
  {
    std::uint32_t left = 0xdead;
    ok(pipe_mgr_mat_ent_get_idle_ttl(session, device, host_table, entry, &left));
    return left;
  }

  using list = std::vector<std::uint32_t>;
  list expired_;
};

TEST_F(IdleTime, EntriesExpireOnceUntilTheyStartAnew)
{
  const pd_entry_hdl_t soon = add_host(0, 1, 0, 100), late = add_host(0, 2, 0, 300), never = add_host(0, 3, 0, 0);
  EXPECT_EQ(after(1000), list{});  // not enabled: no time passes for the table
  EXPECT_EQ(ttl(soon), 100u);
  ok(enable(STANDIN_IDLE_NOTIFY));
  EXPECT_EQ(after(99), list{});
  EXPECT_EQ(ttl(late), 201u);
  EXPECT_EQ(after(1), list{soon});
  EXPECT_EQ(after(50), list{});
  ok(standin_entry_hit(device, host_table, soon));
  EXPECT_EQ(after(100), list{soon});
  EXPECT_EQ(after(50), list{late});
  ok(pipe_mgr_mat_ent_set_idle_ttl(session, device, host_table, never, 10, 0));
  ok(standin_count_packets(device, host_table, soon, 1, 64));
  EXPECT_EQ(after(100), (list{soon, never}));
  ok(pipe_mgr_idle_register_tmo_cb(session, device, host_table, nullptr, nullptr));
  ok(standin_entry_hit(device, host_table, soon));
  EXPECT_EQ(after(100), list{});
  EXPECT_EQ(ttl(soon), 0u);
}

TEST_F(IdleTime, AgeingGoesByTheInterval)
{
  const pd_entry_hdl_t entry = add_host(0, 1, 0, 30);
  ok(enable(STANDIN_IDLE_NOTIFY, 20));
  EXPECT_EQ(after(19), list{});
  EXPECT_EQ(ttl(entry), 11u);
  EXPECT_EQ(after(2), list{});
  EXPECT_EQ(ttl(entry), 9u);
  EXPECT_EQ(after(18), list{});
  ok(standin_entry_hit(device, host_table, entry));  // just ahead of an ageing
  EXPECT_EQ(after(1), list{});
  EXPECT_EQ(ttl(entry), 29u);
  EXPECT_EQ(after(39), list{});
  EXPECT_EQ(after(1), list{entry});
}

TEST_F(IdleTime, HitStateIsThatOfTheLastUpdate)
{
  const pd_entry_hdl_t hit = add_host(0, 1, 0, 5), idle = add_host(0, 2, 0, 5);
  std::uint32_t state = 9;
  EXPECT_EQ(pipe_mgr_idle_time_get_hit_state(session, device, host_table, hit, &state), STANDIN_NOT_ENABLED);
  EXPECT_EQ(pipe_mgr_idle_time_update_hit_state(session, device, host_table, 0, 0), STANDIN_NOT_ENABLED);
  ok(enable(STANDIN_IDLE_POLL));
  EXPECT_EQ(after(1000), list{});
  int updates = 0;
  const standin_done_cb_t done = [](std::uint32_t, std::uint32_t, void *cookie) { ++*static_cast<int *>(cookie); };
  const auto states = [&](bool update) {
    if (update) {
      ok(pipe_mgr_idle_time_update_hit_state(session, device, host_table, reinterpret_cast<std::uintptr_t>(done),
                                             reinterpret_cast<std::uintptr_t>(&updates)));
    }
    list found;
    for (const pd_entry_hdl_t entry : {hit, idle}) {
      ok(pipe_mgr_idle_time_get_hit_state(session, device, host_table, entry, &state));
      found.push_back(state);
    }
    return found;
  };
  ok(standin_entry_hit(device, host_table, hit));
  EXPECT_EQ(states(false), (list{STANDIN_IDLE, STANDIN_IDLE}));
  EXPECT_EQ(states(true), (list{STANDIN_ACTIVE, STANDIN_IDLE}));
  EXPECT_EQ(states(true), (list{STANDIN_IDLE, STANDIN_IDLE}));
  EXPECT_EQ(updates, 2);
  ok(pipe_mgr_idle_tmo_disable(session, device, host_table));
  EXPECT_EQ(pipe_mgr_idle_tmo_disable(session, device, host_table), STANDIN_NOT_ENABLED);
}

TEST_F(IdleTime, Limits)
{
  EXPECT_EQ(enable(2), STANDIN_BAD_ARGUMENT);
  ok(enable(STANDIN_IDLE_NOTIFY, 0, 50));
  const pd_entry_hdl_t entry = add_host(0, 1, 0, 50);
  action_record to(16, {0, 0});
  pd_entry_hdl_t other = 0;
  EXPECT_EQ(add(host_table, host_key(0, 2, 0), forward, to, &other, 51), STANDIN_BAD_ARGUMENT);
  EXPECT_EQ(pipe_mgr_mat_ent_set_idle_ttl(session, device, host_table, entry, 51, 0), STANDIN_BAD_ARGUMENT);
  EXPECT_EQ(pipe_mgr_idle_tmo_enable(session, device, route_table, {}), STANDIN_NOT_ENABLED);
  std::uint32_t left = 0;
  EXPECT_EQ(pipe_mgr_mat_ent_get_idle_ttl(session, device, host_table, entry + 1, &left), STANDIN_NO_ENTRY);
}

}  // namespace
