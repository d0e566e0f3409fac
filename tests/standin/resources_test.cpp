// Counters, meters, WRED and registers.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "switch_fixture.h"

namespace {

class Resources : public SwitchTest {
 protected:
  using counts = std::pair<std::uint64_t, std::uint64_t>;

  static counts read(std::uint32_t index)
  {
    drv_stat_data_t data{};
    ok(pipe_mgr_stat_ent_query(session, target, policy_counter, index, &data));
    return {data.packets, data.bytes};
  }
  static counts read_direct(pd_entry_hdl_t entry)
  {
    drv_stat_data_t data{};
    ok(pipe_mgr_mat_ent_direct_stat_query(session, device, host_table, entry, &data));
    return {data.packets, data.bytes};
  }
};

void done(std::uint32_t, std::uint32_t handle, void *cookie) { *static_cast<std::uint32_t *>(cookie) = handle; }

TEST_F(Resources, CountersShowWhatWasCountedAfterASynchronisation)
{
  const pd_entry_hdl_t entry = add_host(1, 2, 3), quiet = add_host(1, 2, 4);
  ok(standin_count_packets(device, host_table, entry, 2, 128));
  EXPECT_EQ(read_direct(entry), counts(0, 0));
  ok(pipe_mgr_direct_stat_ent_database_sync(session, target, host_table, quiet));
  EXPECT_EQ(read_direct(entry), counts(0, 0));
  ok(pipe_mgr_direct_stat_ent_database_sync(session, target, host_table, entry));
  EXPECT_EQ(read_direct(entry), counts(2, 128));
  action_record to(16, {9, 9});
  ok(pipe_mgr_mat_ent_set_action(session, device, host_table, entry, forward, &to, 0));
  EXPECT_EQ(read_direct(entry), counts(2, 128));
  drv_stat_data_t given{5, 4};  // bytes, packets
  ok(pipe_mgr_mat_ent_direct_stat_set(session, device, host_table, quiet, &given));
  ok(standin_count_packets(device, host_table, quiet, 1, 1));
  EXPECT_EQ(read_direct(quiet), counts(4, 5));
  std::uint32_t told = 0;
  const auto callback = reinterpret_cast<pd_callback_t>(done);
  ok(pipe_mgr_direct_stat_database_sync(session, target, host_table, callback, &told));
  EXPECT_EQ(told, host_table);
  EXPECT_EQ(read_direct(quiet), counts(5, 6));
  EXPECT_EQ(pipe_mgr_direct_stat_database_sync(session, target, route_table, callback, &told), STANDIN_BAD_RESOURCE);

  // An entry counts in the cells that it is attached to, and only there.
  pd_entry_hdl_t policy = 0;
  action_record attached(32, {0, 0, 0, 0}, {resource(policy_counter, 70000, DRV_RES_ATTACHED)});
  ok(add(policy_table, policy_key(1, 1, 1), police, attached, &policy));
  ok(standin_count_packets(device, policy_table, policy, 3, 4));
  ok(standin_count_cell(device, policy_counter, 6, 7, 8));
  EXPECT_EQ(read(70000), counts(0, 0));
  ok(pipe_mgr_stat_ent_database_sync(session, target, policy_counter, 70000));
  EXPECT_EQ(read(70000), counts(3, 4));
  EXPECT_EQ(read(6), counts(0, 0));
  ok(pipe_mgr_stat_database_sync(session, target, policy_counter, callback, &told));
  EXPECT_EQ(told, policy_counter);
  EXPECT_EQ(read(6), counts(7, 8));
  ok(pipe_mgr_stat_ent_set(session, target, policy_counter, 6, &given));
  EXPECT_EQ(read(6), counts(4, 5));
}

TEST_F(Resources, WrongHandlesAndIndices)
{
  drv_stat_data_t data{};
  drv_meter_spec_t meter{};
  drv_wred_spec_t wred{};
  ok(standin_size_limit(device, policy_counter, 4));
  ok(standin_size_limit(device, policy_meter, 4));
  const std::pair<pd_status_t, pd_status_t> cases[] = {
      {pipe_mgr_stat_ent_query(session, target, policy_counter, 3, &data), BF_SUCCESS},
      {pipe_mgr_stat_ent_query(session, target, policy_counter, 4, &data), STANDIN_BAD_INDEX},
      {pipe_mgr_stat_ent_query(session, target, host_counter, 0, &data), STANDIN_NO_OBJECT},
      {pipe_mgr_stat_ent_query(session, target, policy_meter, 0, &data), STANDIN_NO_OBJECT},
      {pipe_mgr_meter_ent_set(session, target, policy_meter, 4, &meter, 0), STANDIN_BAD_INDEX},
      {pipe_mgr_meter_ent_set(session, target, route_meter, 0, &meter, 0), STANDIN_NO_OBJECT},
      {pipe_mgr_wred_ent_set(session, target, policy_meter, 0, &wred, 0), STANDIN_NO_OBJECT},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) EXPECT_EQ(cases[i].first, cases[i].second) << i;
}

TEST_F(Resources, MetersAndWredReadBack)
{
  drv_meter_spec_t rate{}, got{};
  rate.color_mode = 1;
  rate.first_unit_kind = rate.second_unit_kind = 1;
  rate.first_rate = 1ull << 40;
  rate.first_burst = 2;
  rate.second_rate = 3;
  rate.second_burst = 4;
  ok(pipe_mgr_meter_ent_set(session, target, policy_meter, 12, &rate, 0));
  ok(pipe_mgr_meter_read_entry_idx(session, target, policy_meter, 12, &got));
  EXPECT_EQ(std::memcmp(&rate, &got, sizeof rate), 0);
  ok(pipe_mgr_meter_read_entry_idx(session, target, policy_meter, 13, &got));
  EXPECT_EQ(got.first_rate, 0u);

  // A direct meter hangs on the entry: it comes with the action or with a resource, and goes when it is detached.
  pd_entry_hdl_t entry = 0;
  action_record act(32, {0, 0, 0, 0});
  ok(add(route_table, route_key(0, 0, 0), route, act, &entry));
  EXPECT_EQ(pipe_mgr_meter_read_entry(session, target, route_table, entry, &got), STANDIN_BAD_RESOURCE);
  drv_res_spec_t spec = resource(route_meter, 0, DRV_RES_ATTACHED);
  spec.res_value.meter = rate;
  ok(pipe_mgr_mat_ent_set_resource(session, device, route_table, entry, &spec, 1, 0));
  ok(pipe_mgr_meter_read_entry(session, target, route_table, entry, &got));
  EXPECT_EQ(got.first_rate, 1ull << 40);
  spec = resource(route_meter, 0, DRV_RES_NOT_TOLD);
  action_record untold(32, {1, 1, 1, 1}, {spec});
  ok(pipe_mgr_mat_ent_set_action(session, device, route_table, entry, route, &untold, 0));
  ok(pipe_mgr_meter_read_entry(session, target, route_table, entry, &got));
  EXPECT_EQ(got.second_burst, 4u);
  spec.res_tag = DRV_RES_DETACHED;
  ok(pipe_mgr_mat_ent_set_resource(session, device, route_table, entry, &spec, 1, 0));
  EXPECT_EQ(pipe_mgr_meter_read_entry(session, target, route_table, entry, &got), STANDIN_BAD_RESOURCE);

  drv_wred_spec_t drop_early{0.1f, 2, 3, 0.7f}, read{};
  ok(pipe_mgr_wred_ent_set(session, target, wred_block, 5, &drop_early, 0));
  ok(pipe_mgr_wred_read_entry_idx(session, target, wred_block, 5, &read));
  EXPECT_EQ(std::memcmp(&read, &drop_early, sizeof read), 0);
}

/// Room for queries of any shape up to 4 by 4.
struct query_room {
  query_room()
  {
    for (std::size_t q = 0; q < std::size(queries); ++q) {
      for (std::size_t row = 0; row < 4; ++row) rows[q][row] = slots[q][row];
      queries[q] = {0, 0, rows[q]};
    }
  }
  drv_stful_spec_t slots[4][4][4] = {};
  drv_stful_spec_t *rows[4][4] = {};
  drv_stful_query_t queries[4] = {};
};

TEST_F(Resources, RegistersHaveRowsAndPositions)
{
  ok(standin_register_shape(device, check_register, 2, 3));
  ok(standin_size_limit(device, check_register, 10));
  std::int32_t rows = 0, values = 0;
  ok(pipe_stful_query_get_sizes(session, target, check_register, &rows, &values));
  EXPECT_EQ(std::make_pair(rows, values), std::make_pair(2, 3));
  drv_stful_spec_t one{{1, 9, 9}};
  ok(pipe_stful_ent_set(session, target, check_register, 8, &one, 0));
  ok(standin_register_value(device, check_register, 8, 1, 2, 7));
  EXPECT_EQ(standin_register_value(device, check_register, 8, 2, 0, 7), STANDIN_BAD_INDEX);

  query_room room;
  ok(pipe_stful_ent_query(session, target, check_register, 8, room.queries, 0));
  EXPECT_EQ(room.queries[0].row_count, 2);
  EXPECT_EQ(room.queries[0].values_per_row, 3);
  const std::uint8_t expected[2][3] = {{1, 1, 1}, {1, 1, 7}};
  for (std::size_t row = 0; row < 2; ++row)
    for (std::size_t at = 0; at < 3; ++at) EXPECT_EQ(room.slots[0][row][at].bytes[0], expected[row][at]);
  EXPECT_EQ(room.slots[0][0][0].bytes[1], 0);

  std::uint32_t found = 0;
  ok(pipe_stful_ent_query_range(session, target, check_register, 7, 4, room.queries, &found, 0));
  EXPECT_EQ(found, 3u);  // the register ends at 10
  EXPECT_EQ(room.slots[1][1][2].bytes[0], 7);
  EXPECT_EQ(pipe_stful_ent_query(session, target, check_register, 10, room.queries, 0), STANDIN_BAD_INDEX);

  const auto value = [&](std::uint32_t index) {
    ok(pipe_stful_ent_query(session, target, check_register, index, room.queries, 0));
    return room.slots[0][1][2].bytes[0];
  };
  ok(pipe_stful_table_reset(session, target, check_register, &one));
  EXPECT_EQ(value(8) + value(3), 2);
  ok(pipe_stful_table_reset_range(session, target, check_register, 3, 2, nullptr));
  EXPECT_EQ(value(2) * 8 + value(3) * 4 + value(4) * 2 + value(5), 9);
  ok(standin_register_value(device, check_register, 6, 1, 2, 5));
  ok(pipe_stful_table_reset_range(session, target, check_register, 4, 2, &one));
  EXPECT_EQ(value(2) * 8 + value(3) * 4 + value(4) * 2 + value(5), 11);
  EXPECT_EQ(value(6), 5);  // behind the range
  EXPECT_EQ(pipe_stful_table_reset_range(session, target, check_register, 9, 2, nullptr), STANDIN_BAD_INDEX);
  ok(pipe_stful_table_reset(session, target, check_register, nullptr));
  EXPECT_EQ(value(8), 0);
  std::uint32_t told = 0;
  ok(pipe_stful_database_sync(session, target, check_register, reinterpret_cast<pd_callback_t>(done), &told));
  EXPECT_EQ(told, check_register);
}

TEST_F(Resources, DirectRegisterIsToldByTheTablesHandleToo)
{
  const pd_entry_hdl_t entry = add_host(1, 2, 3);
  query_room room;
  for (const std::uint32_t handle : {std::uint32_t{host_register}, std::uint32_t{host_table}}) {
    drv_res_spec_t spec = resource(handle, 0, DRV_RES_ATTACHED);
    spec.res_value.register_value = handle & 0xff;
    ok(pipe_mgr_mat_ent_set_resource(session, device, host_table, entry, &spec, 1, 0));
    ok(pipe_stful_direct_ent_query(session, device, host_table, entry, room.queries, 0));
    EXPECT_EQ(room.slots[0][0][0].bytes[0], handle & 0xff);
  }
  EXPECT_EQ(pipe_stful_direct_ent_query(session, device, policy_table, entry, room.queries, 0), STANDIN_NO_ENTRY);
  EXPECT_EQ(pipe_stful_direct_database_sync(session, target, policy_table, nullptr, nullptr), STANDIN_BAD_RESOURCE);
}

}  // namespace
