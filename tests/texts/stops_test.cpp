// What stops the process: replies of the driver that contradict the pipeline, in every kind of build.
//
// SPDX-License-Identifier: Apache-2.0
#include <csignal>

#include "told_entry.h"

namespace tarvex::test {

namespace {

const void *const no_placement = "";

/// That something ends in the C library's report of a failed assertion of the library.
void expect_stop(const told_entry &reply, const std::string &function, const std::function<void(char *buf)> &call)
{
  driver().answer = reply;
  const std::string report = std::string(calls::pipeline.sources) + "/pd:[0-9]+: " + prefix() + function +
                             ": Assertion `\\(\\(void \\*\\)0\\)' failed";
  std::array<char, 4096> buf;
  EXPECT_EXIT(call(buf.data()), ::testing::KilledBySignal(SIGABRT), report);
}

TEST(stops, of_entries_on_a_broken_reply)
{
  for (const auto &table : calls::tables) {
    const std::string name = table.name;
    const bool indirect = table.profile != nullptr;
    told_entry reply(table, nullptr);
    reply.act_hdl = 0x20ffffff;  // of no action
    reply.act_kinds = indirect ? 3 : 1;
    expect_stop(reply, name + "_get_entry",
                [&](char *buf) { invoke<std::uint32_t>("entry_value", 1U, 0U, table.handle, 5U, 0U, buf); });
    if (table.counter_label) {
      expect_stop(reply, name + "_get_entry", [&](char *buf) {
        invoke<std::uint32_t>("stringify_counter_matchspec", 1U, 0U, table.handle, 5U, buf);
      });
    }
    if (indirect) continue;
    expect_stop(reply, name + "_get_entry_from_plcmt_data",
                [&](char *buf) { invoke<std::uint32_t>("plcmt_data_value", table.handle, no_placement, buf); });
    expect_stop(reply, name + "_get_entry_from_plcmt_data",
                [&](char *) { invoke<std::uint32_t>("plcmt_data_print", 2, 0, table.handle, no_placement); });
    expect_stop(reply, name + "_get_entry_from_plcmt_data",
                [&](char *) { invoke<std::uint8_t>("plcmt_data_eq_to_hw", 1U, 0U, table.handle, 5U, no_placement); });
  }
}

TEST(stops, of_members_on_a_broken_reply)
{
  for (const auto &profile : calls::profiles) {
    told_entry reply(calls::tables[0], nullptr);
    reply.act_hdl = 0x20ffffff;
    const std::string function = std::string(profile.name) + "_get_member_from_plcmt_data";
    const std::uint32_t handle = profile.action_data_table;
    expect_stop(reply, function,
                [&](char *buf) { invoke<std::uint32_t>("adt_plcmt_data_value", handle, no_placement, buf); });
    expect_stop(reply, function,
                [&](char *) { invoke<std::uint32_t>("adt_plcmt_data_print", 2, 0, handle, no_placement); });
  }
}

}  // namespace

}  // namespace tarvex::test
