// Entries and default entries: what is written reads back, is found by its live key, and is told of.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <set>

#include "switch_fixture.h"

namespace {

class Entries : public SwitchTest {};

TEST_F(Entries, ReadBackAsWritten)
{
  drv_meter_spec_t rate{};
  rate.color_mode = 1;
  rate.first_rate = 0xffffffff;
  rate.second_burst = 9;
  drv_res_spec_t meter = resource(route_meter, 0, DRV_RES_ATTACHED);
  meter.res_value.meter = rate;
  action_record act(32, {1, 2, 3, 4}, {meter});
  const key_record key = route_key(0x8123, 0x0a0b0c0d, 20);
  pd_entry_hdl_t entry = 0;
  ok(add(route_table, key, route, act, &entry));
  std::fill(act.data.begin(), act.data.end(), std::uint8_t{0xee});  // the switch keeps copies

  read_back got(6);
  ok(got.read(route_table, entry));
  EXPECT_EQ(got.value, key.value);
  EXPECT_EQ(got.mask, key.mask);
  EXPECT_EQ(got.key.key_bits, 48);
  EXPECT_EQ(got.key.partition_index, 0x8123u);
  EXPECT_EQ(got.key.priority, 12u);
  EXPECT_EQ(got.act_hdl, route);
  EXPECT_EQ(got.action.act_kinds, DRV_ACT_DATA);
  EXPECT_EQ(got.action.act_data.data_bits, 32);
  EXPECT_EQ(got.data_read(), (bytes{1, 2, 3, 4}));
  ASSERT_EQ(got.action.res_count, 1u);
  EXPECT_EQ(std::memcmp(&got.action.res[0].res_value.meter, &rate, sizeof rate), 0);

  // Bits that are not live do not make another key, and are read back all the same.
  const pd_entry_hdl_t host = add_host(0x01, 0x22, 0x85);
  read_back got_host(3);
  ok(got_host.read(host_table, host));
  EXPECT_EQ(got_host.value, (bytes{0x01, 0x22, 0x85}));
  EXPECT_EQ(got_host.mask, (bytes{0xff, 0xff, 0xff}));
  action_record to(16, {0, 0});
  EXPECT_EQ(add(host_table, host_key(0xff, 0x22, 0x05), forward, to, &entry), STANDIN_EXISTS);
  EXPECT_EQ(add(route_table, route_key(0x0123, 0x0a0b0fff, 20), route, act, &entry), STANDIN_EXISTS);
  ok(add(route_table, route_key(0x0123, 0x0a0b0c0d, 21), route, act, &entry));
  action_record none(0, {});
  ok(add(policy_table, policy_key(0x1200, 0xff00, 1), pass, none, &entry));
  ok(add(policy_table, policy_key(0x1200, 0xff00, 2), pass, none, &entry));
  EXPECT_EQ(add(policy_table, policy_key(0x1200, 0xff00, 2), pass, none, &entry), STANDIN_EXISTS);
}

TEST_F(Entries, ByHandleAndByKeyAreTheSameEntry)
{
  const pd_entry_hdl_t entry = add_host(1, 2, 3);
  key_record key = host_key(1, 2, 3);
  pd_entry_hdl_t found = 0;
  ok(pipe_mgr_match_spec_to_ent_hdl(session, target, host_table, &key, &found));
  EXPECT_EQ(found, entry);

  action_record to(16, {7, 8});
  ok(pipe_mgr_mat_ent_set_action(session, device, host_table, entry, forward, &to, 0));
  read_back got(3);
  ok(got.read(host_table, entry));
  EXPECT_EQ(got.data_read(), (bytes{7, 8}));
  action_record none(0, {});
  ok(pipe_mgr_mat_ent_set_action_by_match_spec(session, target, host_table, &key, miss, &none, 0));
  read_back changed(3);
  ok(changed.read(host_table, entry));
  EXPECT_EQ(changed.act_hdl, miss);
  EXPECT_EQ(changed.data_read(), bytes{});

  ok(pipe_mgr_mat_ent_del_by_match_spec(session, target, host_table, &key, 0));
  EXPECT_EQ(pipe_mgr_mat_ent_del_by_match_spec(session, target, host_table, &key, 0), STANDIN_NO_ENTRY);
  const pd_entry_hdl_t again = add_host(1, 2, 3);
  EXPECT_NE(again, entry);  // the old handle stays dead though its place is used again
  EXPECT_EQ(pipe_mgr_mat_ent_del(session, device, host_table, entry, 0), STANDIN_NO_ENTRY);
  ok(pipe_mgr_mat_ent_del(session, device, host_table, again, 0));
  EXPECT_EQ(count(host_table), 0u);
}

TEST_F(Entries, ModifyKeepsDirectResourcesAndLetsGoOfIndirectOnes)
{
  pd_entry_hdl_t entry = 0;
  action_record both(32, {0, 0, 0, 0},
                     {resource(policy_counter, 5, DRV_RES_ATTACHED), resource(policy_meter, 9, DRV_RES_ATTACHED)});
  ok(add(policy_table, policy_key(1, 0xffff, 0), police, both, &entry));
  action_record one(32, {0, 0, 0, 0},
                    {resource(policy_counter, 6, DRV_RES_ATTACHED), resource(policy_meter, 0, DRV_RES_DETACHED)});
  ok(pipe_mgr_mat_ent_set_action(session, device, policy_table, entry, police, &one, 0));
  read_back got(2);
  ok(got.read(policy_table, entry));
  ASSERT_EQ(got.action.res_count, 2u);
  EXPECT_EQ(got.action.res[0].res_index, 6u);
  EXPECT_EQ(got.action.res[1].res_tag, std::uint32_t{DRV_RES_DETACHED});
  action_record none(0, {});
  ok(pipe_mgr_mat_ent_set_action(session, device, policy_table, entry, pass, &none, 0));
  ok(got.read(policy_table, entry));
  EXPECT_EQ(got.action.res_count, 0u);

  action_record counted(16, {1, 1}, {resource(host_counter, 0, DRV_RES_ATTACHED)});
  ok(add(host_table, host_key(1, 1, 1), forward, counted, &entry));
  action_record untold(16, {2, 2});
  ok(pipe_mgr_mat_ent_set_action(session, device, host_table, entry, forward, &untold, 0));
  read_back host(3);
  ok(host.read(host_table, entry));
  EXPECT_EQ(host.action.res_count, 1u);
}

TEST_F(Entries, PropertiesAreKeptByTable)
{
  std::uint32_t value = 1, argument = 1;
  ok(pipe_mgr_tbl_set_property(session, device, host_table, 4, 5, 6));
  ok(pipe_mgr_tbl_get_property(session, device, host_table, 4, &value, &argument));
  EXPECT_EQ(std::make_pair(value, argument), std::make_pair(5u, 6u));
  EXPECT_EQ(pipe_mgr_tbl_get_property(session, device, route_table, 4, &value, &argument), STANDIN_NO_PROPERTY);
}

TEST_F(Entries, DefaultEntry)
{
  pd_entry_hdl_t entry = 0, same = 0;
  EXPECT_EQ(pipe_mgr_table_get_default_entry_handle(session, target, host_table, &entry), STANDIN_NO_ENTRY);
  action_record none(0, {});
  ok(pipe_mgr_mat_default_entry_set(session, target, host_table, miss, &none, 0, &entry));
  ok(pipe_mgr_table_get_default_entry_handle(session, target, host_table, &same));
  EXPECT_EQ(same, entry);
  EXPECT_EQ(count(host_table), 0u);
  EXPECT_EQ(walk(host_table, 2), std::vector<std::uint32_t>{});
  read_back got(3);
  ok(got.read(host_table, entry));
  EXPECT_EQ(got.key.key_value, nullptr);
  EXPECT_EQ(got.act_hdl, miss);
  action_record to(16, {1, 2});
  EXPECT_EQ(pipe_mgr_mat_default_entry_set(session, target, host_table, forward, &to, 0, &same), STANDIN_NOT_DEFAULT);
  EXPECT_EQ(pipe_mgr_mat_ent_del(session, device, host_table, entry, 0), STANDIN_NO_ENTRY);
  ok(pipe_mgr_mat_tbl_default_entry_reset(session, target, host_table, 0));
  EXPECT_EQ(got.read(host_table, entry), STANDIN_NO_ENTRY);
  ok(pipe_mgr_mat_default_entry_set(session, target, host_table, miss, &none, 0, &same));
  EXPECT_NE(same, entry);

  ok(pipe_mgr_mat_default_entry_set(session, target, check_table, check, &none, 0, &entry));
  read_back keyless;
  keyless.key = {};
  ok(keyless.read(check_table, entry));
  EXPECT_EQ(keyless.act_hdl, check);
}

TEST_F(Entries, WalkMeetsEveryEntryOnceAndFillsTheRest)
{
  std::uint32_t first = 1;
  EXPECT_EQ(pipe_mgr_get_first_entry_handle(session, host_table, target, &first), STANDIN_END);
  EXPECT_EQ(first, STANDIN_NO_HANDLE);
  std::set<std::uint32_t> added;
  for (std::uint8_t i = 0; i < 10; ++i) added.insert(add_host(0, i, 0));
  for (const std::uint8_t gone : bytes{0, 4, 9}) {
    key_record key = host_key(0, gone, 0);
    std::uint32_t handle = 0;
    ok(pipe_mgr_match_spec_to_ent_hdl(session, target, host_table, &key, &handle));
    ok(pipe_mgr_mat_ent_del(session, device, host_table, handle, 0));
    added.erase(handle);
  }
  for (const std::uint32_t n : {1u, 3u, 7u, 20u}) {
    const auto walked = walk(host_table, n);
    EXPECT_EQ(walked.size(), added.size()) << n;
    EXPECT_EQ(std::set<std::uint32_t>(walked.begin(), walked.end()), added) << n;
  }
  std::uint32_t behind[2] = {1, 1};
  EXPECT_EQ(pipe_mgr_get_next_entry_handles(session, host_table, target, walk(host_table, 1).back(), 2, behind),
            STANDIN_END);
  EXPECT_EQ(behind[0] & behind[1], STANDIN_NO_HANDLE);
}

struct told {
  std::uint32_t handle, event;
  bytes placement;
};

void keep(std::uint32_t, std::uint32_t, std::uint32_t handle, std::uint32_t event, const void *buffer, void *cookie)
{
  const auto *from = static_cast<const std::uint8_t *>(buffer);
  static_cast<std::vector<told> *>(cookie)->push_back({handle, event, {from, from + standin_placement_size(buffer)}});
}

TEST_F(Entries, UpdatesCarryPlacementDataThatOutlivesThem)
{
  std::vector<told> seen;
  ok(pipe_register_mat_update_cb(session, device, route_table, reinterpret_cast<pd_callback_t>(keep), &seen));
  action_record act(32, {1, 2, 3, 4}, {resource(route_meter, 0, DRV_RES_ATTACHED)});
  pd_entry_hdl_t entry = 0, by_default = 0;
  ok(add(route_table, route_key(5, 0x0a000000, 8), route, act, &entry));
  action_record next(32, {5, 6, 7, 8});
  ok(pipe_mgr_mat_ent_set_action(session, device, route_table, entry, route, &next, 0));
  ok(pipe_mgr_mat_ent_del(session, device, route_table, entry, 0));
  ok(pipe_mgr_mat_default_entry_set(session, target, route_table, route, &act, 0, &by_default));
  ok(pipe_mgr_mat_tbl_default_entry_reset(session, target, route_table, 0));
  ok(pipe_register_mat_update_cb(session, device, route_table, nullptr, nullptr));
  ok(add(route_table, route_key(5, 0x0a000000, 8), route, act, &entry));

  const struct {
    std::uint32_t event;
    bool keyed;
    bytes data;
  } expected[] = {{STANDIN_ADDED, true, {1, 2, 3, 4}},
                  {STANDIN_CHANGED, true, {5, 6, 7, 8}},
                  {STANDIN_DELETED, true, {5, 6, 7, 8}},
                  {STANDIN_DEFAULT_SET, false, {1, 2, 3, 4}},
                  {STANDIN_DEFAULT_RESET, false, {1, 2, 3, 4}}};
  ASSERT_EQ(seen.size(), std::size(expected));
  for (std::size_t i = 0; i < seen.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(seen[i].event, expected[i].event);
    read_back got(6);
    ok(pipe_mgr_plcmt_mat_data_get_entry(seen[i].placement.data(), &got.key, &got.action, &got.act_hdl));
    EXPECT_EQ(got.key.key_value != nullptr, expected[i].keyed);
    EXPECT_EQ(got.value, (expected[i].keyed ? bytes{0, 0, 10, 0, 0, 0} : bytes(6)));
    EXPECT_EQ(got.key.partition_index, expected[i].keyed ? 5u : 0u);
    EXPECT_EQ(got.data_read(), expected[i].data);
    EXPECT_EQ(got.act_hdl, route);
    EXPECT_EQ(got.action.res_count, 1u);
  }
  bytes foreign(64, 1);
  read_back got(6);
  EXPECT_EQ(pipe_mgr_plcmt_mat_data_get_entry(foreign.data(), &got.key, &got.action, &got.act_hdl),
            STANDIN_BAD_PLACEMENT);
  EXPECT_EQ(pipe_mgr_plcmt_adt_data_get_entry(seen[0].placement.data(), &got.action.act_data, &got.act_hdl),
            STANDIN_BAD_PLACEMENT);
}

}  // namespace
