// What the loops over all functions leave out of action profiles: guards, states of members, reading members back, and
// the rebuilding of the states after a warm restart.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "reference.h"
#include "stopped.h"
#include "tarvex_pd/types.h"

namespace tarvex::test {

namespace {

using enum argument_kind;
using enum calls::family_id;

std::vector<std::uint32_t> member_actions()
{
  std::vector<std::uint32_t> handles;
  for (const calls::profile_info &profile : calls::profiles)
    for (const calls::use_info &use : profile.actions) handles.push_back(use.handle);
  return handles;
}

TEST(profile, modify_needs_the_members_own_action)
{
  for (const exported_function &function : calls::functions) {
    if (function.family != modify_member) continue;
    for (const std::uint32_t other : member_actions()) {
      if (other == function.use->handle) continue;
      driver().reset();
      driver().answer = [&](const recorded_call &call) {
        call.at<std::uint32_t>(3) = other;
        return 0;
      };
      call call(function);
      EXPECT_EQ(call.run(), 0xffffffff) << function.name;
      EXPECT_EQ(driver().calls.size(), 1u) << function.name;
    }
  }
}

TEST(profile, member_states_are_0_and_1)
{
  for (const exported_function &function : calls::functions) {
    if (function.family == group_member_state_set) {
      for (const std::uint32_t state : {2U, 0x100U, 0xffffffffU}) {
        call call(function);
        call.give(member_state, state);
        driver().reset();
        EXPECT_EQ(call.run(), PD_STATUS_INVALID_ARG) << function.name;
        EXPECT_TRUE(driver().calls.empty()) << function.name;
      }
    }
    if (function.family != group_member_state_get) continue;
    for (const std::uint32_t state : {0U, 1U, 2U, 0xffffffffU}) {
      for (const std::uint32_t status : {0U, 9U}) {
        call call(function);
        driver().reset();
        driver().answer = [&](const recorded_call &recorded) {
          recorded.at<std::uint32_t>(5) = state;
          return status;
        };
        EXPECT_EQ(call.run(), status);
        if (status == 0 && state < 2) call.expect_number(member_state_out, state, 4);
        EXPECT_EQ(call.unexpected_bytes(), "") << function.name << ", state " << state;
      }
    }
  }
}

// A member as the driver knows it, its resources as the state service does.
struct member {
  bytes data;
  std::uint32_t action;
  std::vector<pd_res_spec_t> resources;
  std::uint32_t status = 0;

  std::uint64_t operator()(const recorded_call &call)
  {
    if (call.function == "p4_pd_ms_mbr_get_res") {
      call.at<std::uint32_t>(3) = static_cast<std::uint32_t>(resources.size());
      call.at<pd_res_spec_t *>(4) = resources.data();
      return 1;  // not looked at
    }
    const bool from_table = call.function == "pipe_mgr_get_action_data_entry";
    std::ranges::copy(data, call.at<drv_act_data_t>(from_table ? 3 : 1).data);
    call.at<std::uint32_t>(from_table ? 4 : 2) = action;
    return status;
  }
};

bool reads_member(calls::family_id family)
{
  return family == get_member || family == get_member_from_plcmt_data || family == get_full_member_info_from_plcmt_data;
}

void check_members_read(const exported_function &function, bool started)
{
  bytes data(28);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::uint8_t>(0xf1 + 13 * i);
  const operation &operation = *operation_of(function);
  for (const calls::use_info &use : function.profile->actions) {
    const calls::action_info &action = *use.action;
    for (const std::uint32_t status : {0U, 0x12345678U}) {
      call call(function);
      driver().reset();
      driver().answer = member{data, use.handle, {{0x4000003, 5}}, status};
      auto expected = expected_calls(operation, call, 0);
      const bool asks = status == 0 && !action.params.empty() && started;
      if (!asks) expected.resize(1);
      EXPECT_EQ(call.run(), status) << function.name;
      EXPECT_EQ(difference(expected, driver().calls), "") << function.name << ", " << action.name;
      if (status == 0) {
        call.expect_number(member_action_out, action.enum_value, 4);
        call.expect(member_action_out, parameter_structure(action, data, {}), 4);
      }
      EXPECT_EQ(call.unexpected_bytes(), "") << function.name << ", " << action.name;
      EXPECT_EQ(driver().blocks_taken + driver().blocks_given_back, 0u);
    }
  }
}

TEST(profile, members_are_read_back)
{
  for (const exported_function &function : calls::functions) {
    if (!reads_member(function.family)) continue;
    check_members_read(function, true);
    driver().reset();
    driver().answer = member{bytes(28), 0x20ffffff, {}, 0};
    call call(function);
    const auto stop = stopped([&] { call.run(); });
    ASSERT_TRUE(stop) << function.name;
    EXPECT_EQ(stop->assertion, "((void *)0)");
    EXPECT_EQ(stop->file, source_of("pd"));
    EXPECT_EQ(stop->function, function.name);
  }
}

// Placement data can be read in a process that never started the library.
TEST(profile, placement_data_is_read_without_states)
{
  driver().reset();
  driver().answer = [](const recorded_call &) { return 0; };
  invoke("init");  // no state is to be had
  for (const exported_function &function : calls::functions) {
    if (reads_member(function.family) && function.family != get_member) check_members_read(function, false);
  }
  driver().reset();
  invoke("init");
}

// ---- warm restart ----

constexpr std::uint64_t words[] = {0xf1f2f3f4f5f6f7f8, 0xe1e2e3e4e5e6e7e8, 0xd1d2d3d4d5d6d7d8, 0xc1c2c3c4c5c6c7c8,
                                   0xb1b2b3b4b5b6b7b8};

drv_adt_sel_restore_t restore_function()
{
  driver().reset();
  driver().answer = [](const recorded_call &) { return 0x4321; };
  EXPECT_EQ(invoke("restore_virtual_dev_state", words[0], words[1], words[2], words[3], words[4]), 0x4321u);
  EXPECT_EQ(driver().calls.size(), 1u);
  const recorded_call asked = driver().calls.at(0);
  EXPECT_EQ(asked.function, "pipe_mgr_hitless_ha_restore_virtual_dev_state");
  for (std::size_t i = 0; i < std::size(words); ++i) EXPECT_EQ(asked.arguments.at(i).word, words[i]);
  return reinterpret_cast<drv_adt_sel_restore_t>(asked.arguments.at(5).word);
}

recorded_call service(const char *function, const std::vector<std::uint64_t> &arguments)
{
  recorded_call call{function, {}};
  for (const std::uint64_t word : arguments) call.arguments.push_back({word, {}});
  return call;
}

TEST(profile, replay_rebuilds_the_states)
{
  const auto restore = restore_function();
  constexpr std::uint32_t session = 0x77, device = 0xabcd01fe, member = 0x61, group = 0x62, recorded = 0x20000999;
  for (std::size_t index = 0; index < calls::profiles.size(); ++index) {
    const calls::profile_info &profile = calls::profiles[index];
    const auto state = reinterpret_cast<std::uint64_t>(state_of_profile(index));
    const auto apply = [&](std::uint32_t mbr) {
      return service("p4_pd_ms_mbr_apply_to_grps",
                     {state, 0xfe, mbr, reinterpret_cast<std::uint64_t>(&p4_pd_ms_grp_update_res), state});
    };
    // Each action of the profile, one of another profile, and none; with the flag and without.
    std::vector<std::uint32_t> actions = {0, calls::profiles[(index + 1) % calls::profiles.size()].actions[0].handle};
    for (const calls::use_info &use : profile.actions) actions.push_back(use.handle);
    for (std::size_t i = 0; i < 16 * actions.size(); ++i) {
      const std::uint32_t action = actions[i / 16];
      const std::uint32_t mbr = i % 2 != 0 ? member : 0, grp = i / 2 % 2 != 0 ? group : 0;
      const std::uint32_t flag = i / 4 % 2 != 0 ? 0x80000000 : 0;
      const bool unknown_member = i / 8 % 2 != 0;
      std::vector<recorded_call> expected;
      if (mbr != 0 && grp == 0) {
        expected = {service("p4_pd_ms_new_mbr", {session, state, 0xfe, mbr}),
                    service("p4_pd_ms_set_mbr_act", {state, 0xfe, mbr, action})};
      } else if (grp != 0 && mbr == 0) {
        expected = {service("p4_pd_ms_new_grp", {session, state, 0xfe, grp})};
      } else if (grp != 0) {
        expected = {service("p4_pd_ms_add_mbr_to_grp", {session, state, 0xfe, mbr, grp}),
                    service("p4_pd_ms_get_mbr_act", {state, 0xfe, mbr, 0})};
        if (!unknown_member) expected.push_back(service("p4_pd_ms_set_grp_act", {state, 0xfe, grp, recorded}));
      }
      const bool ended = unknown_member && mbr != 0 && grp != 0;
      if (flag != 0 && i / 16 >= 2 && !ended) expected.push_back(apply(mbr));

      driver().reset();
      driver().answer = [&](const recorded_call &call) -> std::uint64_t {
        if (call.function != "p4_pd_ms_get_mbr_act") return 1;  // not looked at
        call.at<std::uint32_t>(3) = recorded;
        return unknown_member ? 5 : 0;
      };
      restore(session, device, profile.action_data_table, action, grp, mbr, flag);
      for (recorded_call &call : driver().calls) {
        if (call.function == "p4_pd_ms_get_mbr_act") call.arguments[3].word = 0;  // a place on the stack
      }
      ASSERT_EQ(difference(expected, driver().calls), "") << profile.name << ", call " << i;
    }
    driver().reset();
    restore(session, device, profile.selector_table, profile.actions[0].handle, group, member, 1);
    restore(session, device, profile.table, profile.actions[0].handle, 0, member, 1);
    EXPECT_TRUE(driver().calls.empty()) << "a table that holds no action data";
  }
}

}  // namespace

}  // namespace tarvex::test
