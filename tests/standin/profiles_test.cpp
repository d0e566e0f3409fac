// Members, groups and memberships, the entries that refer to them, and their replay after a warm restart.
//
// SPDX-License-Identifier: Apache-2.0
#include "switch_fixture.h"

namespace {

struct event {
  std::uint32_t group, member, what;
  bool operator==(const event &) const = default;
};

void keep_selector(std::uint32_t, std::uint32_t, pd_grp_hdl_t group, pd_mbr_hdl_t member, std::uint32_t what,
                   void *cookie)
{
  static_cast<std::vector<event> *>(cookie)->push_back({group, member, what});
}

class Profiles : public SwitchTest {
 protected:
  static pd_status_t join(pd_grp_hdl_t group, pd_mbr_hdl_t member, std::uint32_t act_hdl = port)
  {
    return pipe_mgr_sel_grp_mbr_add(session, device, groups_table, group, act_hdl, member, 0);
  }
  static pd_status_t leave(pd_grp_hdl_t group, pd_mbr_hdl_t member)
  {
    return pipe_mgr_sel_grp_mbr_del(session, device, groups_table, group, member, 0);
  }
  static pd_status_t remove_member(pd_mbr_hdl_t member)
  {
    return pipe_mgr_adt_ent_del(session, device, members_table, member, 0);
  }
  static pd_status_t remove_group(pd_grp_hdl_t group)
  {
    return pipe_mgr_sel_grp_del(session, device, groups_table, group, 0);
  }
};

TEST_F(Profiles, MembersReadBackAndKeepTheirAction)
{
  struct updates {
    std::vector<std::uint32_t> events;
    bytes last;
  } seen;
  const standin_update_cb_t tell = [](std::uint32_t, std::uint32_t table, std::uint32_t, std::uint32_t what,
                                      const void *buffer, void *cookie) {
    EXPECT_EQ(table, members_table);
    auto *const to = static_cast<updates *>(cookie);
    to->events.push_back(what);
    std::array<std::uint8_t, 28> data{};
    drv_act_data_t room{};  // its count is not preset by those who read placement data
    room.data = data.data();
    std::uint32_t act_hdl = 0;
    ok(pipe_mgr_plcmt_adt_data_get_entry(buffer, &room, &act_hdl));
    EXPECT_EQ(act_hdl, port);
    to->last.assign(data.begin(), data.begin() + room.data_bytes);
  };
  ok(pipe_register_adt_update_cb(session, device, members_table, reinterpret_cast<pd_callback_t>(tell), &seen));
  const pd_mbr_hdl_t member = add_member(5);
  action_record next(9, {1, 0x23});
  ok(pipe_mgr_adt_ent_set(session, device, members_table, member, port, &next, 0));
  EXPECT_EQ(seen.last, (bytes{1, 0x23}));
  EXPECT_EQ(pipe_mgr_adt_ent_set(session, device, members_table, member, drop, &next, 0), STANDIN_BAD_ACTION);
  action_record wrong(8, {1});
  EXPECT_EQ(pipe_mgr_adt_ent_set(session, device, members_table, member, port, &wrong, 0), STANDIN_BAD_ACTION);

  read_back got;
  ok(pipe_mgr_get_action_data_entry(members_table, device, member, &got.action.act_data, &got.act_hdl, 0));
  EXPECT_EQ(got.act_hdl, port);
  EXPECT_EQ(got.data_read(), (bytes{1, 0x23}));
  ok(remove_member(member));
  EXPECT_EQ(remove_member(member), STANDIN_NO_MEMBER);
  EXPECT_EQ(seen.events, (std::vector<std::uint32_t>{STANDIN_ADDED, STANDIN_CHANGED, STANDIN_DELETED}));
}

TEST_F(Profiles, MembershipsAndWhatIsToldOfThem)
{
  std::vector<event> tracked, updated;
  const auto callback = reinterpret_cast<pd_callback_t>(keep_selector);
  ok(pipe_mgr_sel_tbl_register_cb(0, device, groups_table, callback, &tracked));
  ok(pipe_register_sel_update_cb(session, device, groups_table, callback, &updated));
  const pd_mbr_hdl_t a = add_member(1), b = add_member(2), c = add_member(3);
  pd_grp_hdl_t group = 0;
  ok(pipe_mgr_sel_grp_add(session, target, groups_table, 2, &group, 0));
  pd_mbr_hdl_t first = 0, next[3] = {};
  EXPECT_EQ(pipe_mgr_get_first_group_member(session, groups_table, device, group, &first), STANDIN_END);
  EXPECT_EQ(first, STANDIN_NO_HANDLE);
  EXPECT_EQ(join(group, a, drop), STANDIN_BAD_ACTION);
  ok(join(group, a));
  EXPECT_EQ(join(group, a), STANDIN_EXISTS);
  EXPECT_EQ(join(group, 99), STANDIN_NO_MEMBER);
  EXPECT_EQ(join(group + 1, a), STANDIN_NO_GROUP);
  ok(join(group, b));
  EXPECT_EQ(join(group, c), STANDIN_FULL);
  ok(pipe_mgr_get_first_group_member(session, groups_table, device, group, &first));
  EXPECT_EQ(first, a);
  ok(pipe_mgr_get_next_group_members(session, groups_table, device, group, a, 3, next));
  EXPECT_EQ(next[0], b);
  EXPECT_EQ(next[1] & next[2], STANDIN_NO_HANDLE);
  EXPECT_EQ(pipe_mgr_get_next_group_members(session, groups_table, device, group, b, 3, next), STANDIN_END);

  std::uint32_t state = 9;
  const auto state_of = [&](pd_mbr_hdl_t member) {
    return pipe_mgr_sel_grp_mbr_state_get(session, device, groups_table, group, member, &state);
  };
  ok(pipe_mgr_sel_grp_mbr_disable(session, device, groups_table, group, a, 0));
  ok(state_of(a));
  EXPECT_EQ(state, 1u);
  ok(state_of(b));
  EXPECT_EQ(state, 0u);
  EXPECT_EQ(state_of(c), STANDIN_NO_MEMBER);
  ok(pipe_mgr_sel_grp_mbr_enable(session, device, groups_table, group, a, 0));
  ok(state_of(a));
  EXPECT_EQ(state, 0u);

  EXPECT_EQ(remove_member(a), STANDIN_IN_USE);
  ok(leave(group, a));
  EXPECT_EQ(leave(group, a), STANDIN_NO_MEMBER);
  ok(remove_member(a));
  ok(remove_group(group));
  ok(remove_member(b));  // the group took its memberships with it
  EXPECT_EQ(count(groups_table), 0u);
  EXPECT_EQ(count(members_table), 1u);
  const std::vector<event> expected{{group, 0, STANDIN_ADDED},   {group, a, STANDIN_ADDED},
                                    {group, b, STANDIN_ADDED},   {group, a, STANDIN_DISABLED},
                                    {group, a, STANDIN_ENABLED}, {group, a, STANDIN_DELETED},
                                    {group, 0, STANDIN_DELETED}};
  EXPECT_EQ(tracked, expected);
  EXPECT_EQ(updated, expected);
}

TEST_F(Profiles, EntriesHoldTheirMemberOrGroup)
{
  const pd_mbr_hdl_t member = add_member(1);
  const pd_grp_hdl_t group = add_group({member});
  const pd_grp_hdl_t empty = add_group();
  drv_action_spec_t to_member = reference(DRV_ACT_MEMBER, member), to_group = reference(DRV_ACT_GROUP, group);
  drv_action_spec_t to_none = reference(DRV_ACT_MEMBER, 99), no_group = reference(DRV_ACT_GROUP, 99);
  action_record direct(9, {0, 1});
  pd_entry_hdl_t entry = 0, by_default = 0;
  const key_record key(12, {0, 7});
  EXPECT_EQ(add(lag_table, key, port, to_none, &entry), STANDIN_NO_MEMBER);
  EXPECT_EQ(add(lag_table, key, port, no_group, &entry), STANDIN_NO_GROUP);
  EXPECT_EQ(add(lag_table, key, drop, to_member, &entry), STANDIN_BAD_ACTION);
  EXPECT_EQ(add(lag_table, key, port, direct, &entry), STANDIN_BAD_ACTION);
  ok(add(lag_table, key, port, to_group, &entry));
  read_back got(2);
  got.action.act_data = {};  // there is no data to make room for
  ok(got.read(lag_table, entry));
  EXPECT_EQ(got.action.act_kinds, DRV_ACT_GROUP);
  EXPECT_EQ(got.action.grp_hdl, group);
  EXPECT_EQ(got.action.mbr_hdl, 0u);
  EXPECT_EQ(remove_group(group), STANDIN_IN_USE);
  ok(pipe_mgr_mat_ent_set_action(session, device, lag_table, entry, port, &to_member, 0));
  ok(pipe_mgr_mat_default_entry_set(session, target, lag_table, port, &to_member, 0, &by_default));
  ok(pipe_mgr_sel_fallback_mbr_set(session, target, groups_table, member, 0));
  ok(got.read(lag_table, entry));
  EXPECT_EQ(got.action.mbr_hdl, member);
  ok(remove_group(group));
  ok(remove_group(empty));

  // Each hold is let go of by its own undoing.
  EXPECT_EQ(remove_member(member), STANDIN_IN_USE);
  ok(pipe_mgr_mat_ent_del(session, device, lag_table, entry, 0));
  EXPECT_EQ(remove_member(member), STANDIN_IN_USE);
  ok(pipe_mgr_mat_tbl_default_entry_reset(session, target, lag_table, 0));
  EXPECT_EQ(remove_member(member), STANDIN_IN_USE);
  ok(pipe_mgr_sel_fallback_mbr_reset(session, target, groups_table, 0));
  ok(remove_member(member));
  EXPECT_EQ(pipe_mgr_sel_fallback_mbr_set(session, target, groups_table, member, 0), STANDIN_NO_MEMBER);
}

TEST_F(Profiles, SmallTablesAndWalks)
{
  ok(standin_size_limit(device, members_table, 2));
  ok(standin_size_limit(device, groups_table, 1));
  const pd_mbr_hdl_t a = add_member(1), b = add_member(2);
  const pd_grp_hdl_t group = add_group();
  action_record to(9, {0, 3});
  std::uint32_t handle = 0;
  EXPECT_EQ(pipe_mgr_adt_ent_add(session, target, members_table, port, &to, &handle, 0), STANDIN_FULL);
  EXPECT_EQ(pipe_mgr_sel_grp_add(session, target, groups_table, 0, &handle, 0), STANDIN_FULL);
  EXPECT_EQ(walk(members_table, 1), (std::vector<std::uint32_t>{a, b}));
  EXPECT_EQ(walk(groups_table, 4), std::vector<std::uint32_t>{group});
}

struct replayed {
  std::uint32_t action, group, member, update;
  bool operator==(const replayed &) const = default;
};

std::vector<replayed> replays;

TEST_F(Profiles, ReplayServesMembersAndGroupsAheadOfMemberships)
{
  const pd_mbr_hdl_t a = add_member(1), b = add_member(2);
  const pd_grp_hdl_t g = add_group({b, a}), h = add_group({a});
  replays.clear();
  const auto restore = [](pd_sess_hdl_t sess, std::uint32_t dev, std::uint32_t table, std::uint32_t action,
                          pd_grp_hdl_t group, pd_mbr_hdl_t member, std::uint32_t update) {
    EXPECT_EQ(sess, session);
    EXPECT_EQ(dev, device);
    EXPECT_EQ(table, members_table);
    replays.push_back({action, group, member, update});
  };
  ok(pipe_mgr_hitless_ha_restore_virtual_dev_state(session, device, 0, 0, 0, restore));
  EXPECT_EQ(replays, (std::vector<replayed>{{port, 0, a, 0},
                                            {port, 0, b, 0},
                                            {0, g, 0, 0},
                                            {0, h, 0, 0},
                                            {port, g, b, 1},
                                            {port, g, a, 1},
                                            {port, h, a, 1}}));
  EXPECT_EQ(pipe_mgr_hitless_ha_restore_virtual_dev_state(session, device, 0, 0, 0, nullptr), STANDIN_BAD_ARGUMENT);
  EXPECT_EQ(pipe_mgr_hitless_ha_restore_virtual_dev_state(session, 9, 0, 0, 0, restore), STANDIN_NO_DEVICE);
}

}  // namespace
