// All ten counters: written, counted by the pipeline, synchronised and read back.
//
// SPDX-License-Identifier: Apache-2.0
#include "resource_test.h"

namespace tarvex::resource_tests {
namespace {

using counts = std::pair<std::uint64_t, std::uint64_t>;

/// A counter with one cell of its own: an entry's where it is direct, else an index.
struct counter {
  explicit counter(const calls::resource_info &its_row) : row(its_row)
  {
    if (row.direct) add_default_entry();
  }

  void add_default_entry()
  {
    for (const auto &each : calls::functions) {
      if (each.family != calls::family_id::set_default_action || each.table->handle != row.table) continue;
      if (!each.use->action->params.empty()) continue;
      const auto set =
          reinterpret_cast<decltype(&p4_pd_tarvex_switch_l2Lookup_set_default_action_onMiss)>(each.function);
      ok(set(session, target, &cell));
      return;
    }
    FAIL() << row.name;
  }

  void count(std::uint64_t packets, std::uint64_t bytes) const
  {
    ok(row.direct ? standin_count_packets(device, row.table, cell, packets, bytes)
                  : standin_count_cell(device, row.handle, cell, packets, bytes));
  }

  pd_status_t read(std::uint32_t flags, pd_counter_value_t &value) const
  {
    return like(p4_pd_tarvex_switch_counter_read_pdpClassCount, row)(session, target, cell, flags, &value);
  }
  counts read(std::uint32_t flags) const
  {
    pd_counter_value_t value{};
    ok(read(flags, value));
    return {value.packets, value.bytes};
  }
  pd_status_t write(pd_dev_tgt_t to, pd_counter_value_t value) const
  {
    return like(p4_pd_tarvex_switch_counter_write_pdpClassCount, row)(session, to, cell, value);
  }

  const calls::resource_info &row;
  std::uint32_t cell = 70'000;
};

class Counters : public ResourceTest {};

TEST_F(Counters, CountAndSynchronise)
{
  constexpr std::uint64_t many = 0xfedc'ba98'7654'3210;
  const auto rows = resources_of(calls::resource_kind::counter);
  ASSERT_EQ(rows.size(), 10u);
  for (const auto *row : rows) {
    SCOPED_TRACE(row->name);
    const counter c(*row);
    EXPECT_EQ(c.read(1), counts(0, 0));
    ok(c.write(target, {3, many}));
    EXPECT_EQ(c.read(0), counts(3, many));
    c.count(2, 128);
    EXPECT_EQ(c.read(0), counts(3, many));
    EXPECT_EQ(c.read(0xfffffffe), counts(3, many));  // bit 0 alone asks for a synchronisation
    EXPECT_EQ(c.read(1), counts(5, many + 128));
    c.count(1, 1);
    std::uint32_t told = 0;
    ok(like(p4_pd_tarvex_switch_counter_hw_sync_pdpClassCount, *row)(
        session, target, reinterpret_cast<pd_callback_t>(note_handle), &told));
    EXPECT_EQ(told, row->direct ? row->table : row->handle);
    EXPECT_EQ(c.read(0), counts(6, many + 129));

    pd_counter_value_t kept{7, 8};
    const auto driver_calls = refuse_in_turn([&] { return c.read(1, kept); },
                                             [&](pd_status_t status) {
                                               EXPECT_EQ(status, refused);
                                               EXPECT_EQ(counts(kept.packets, kept.bytes), counts(7, 8));
                                             });
    EXPECT_EQ(driver_calls, 2u);
    EXPECT_EQ(c.write(target + 1, {1, 1}), pd_status_t{STANDIN_NO_DEVICE});
  }
}

TEST_F(Counters, OfAnIndexCountsTheEntriesAttached)
{
  const p4_pd_tarvex_switch_setPdpClassCount_action_spec_t attached{.action_pdpResourceIndex = 9};
  pd_entry_hdl_t entry = 0;
  ok(p4_pd_tarvex_switch_pdpPolicy_set_default_action_setPdpClassCount(session, target, &attached, &entry));
  std::uint32_t table = 0;
  ok(p4_pd_tarvex_switch_pdpPolicy_get_mat_table_handle(&table));
  ok(standin_count_packets(device, table, entry, 4, 256));
  for (const std::uint32_t index : {8u, 9u}) {
    pd_counter_value_t value{};
    ok(p4_pd_tarvex_switch_counter_read_pdpClassCount(session, target, index, 1, &value));
    EXPECT_EQ(counts(value.packets, value.bytes), index == 9 ? counts(4, 256) : counts(0, 0));
  }
}

}  // namespace
}  // namespace tarvex::resource_tests
