// Placement data: decoded, printed, as value text, and held against the hardware.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <ranges>

#include "capture.h"
#include "told_entry.h"

namespace tarvex::test {

namespace {

const void *const placement = "the driver alone reads this";

std::string print_of(const told_entry &entry, std::int32_t indent)
{
  const calls::table_info &table = *entry.table;
  std::string text;
  if (!keyed(table)) text = formatted("%*s%s%s:\n", indent, "", prefix().c_str(), table.name);
  if (!entry.no_key()) text = key_print(table, indent, entry.key());
  if (entry.use == nullptr) return text;
  text += formatted("%*s%s%s:\n", indent, "", prefix().c_str(), entry.use->action->name);
  if (entry.use->action->params.empty()) return text;
  return text + action_print(*entry.use->action, indent, entry.parameters());
}

/// A print function, with all arguments but the descriptor.
template <typename... Arguments>
auto print_by(const std::string &name, Arguments... arguments)
{
  return [=](int fd) { return invoke<std::uint32_t>(name, fd, arguments...); };
}

std::string printed(const std::function<std::uint32_t(int fd)> &print, std::uint32_t expected)
{
  std::uint32_t result = ~expected;
  const std::string text = joined(captured([&](int fd) { result = print(fd); }));
  EXPECT_EQ(result, expected) << text;
  return text;
}

TEST(placement, of_entries_as_print_and_value_text)
{
  for_each_entry([](const told_entry &entry) {
    driver().reset();
    driver().answer = entry;
    const std::string name = entry.table->name;
    const std::string value = entry.key_and_action() + ")";
    const std::string print = print_of(entry, 3);
    ASSERT_TRUE(writes(value, text_by(name + "_plcmt_data_value", placement))) << name;
    ASSERT_TRUE(writes(value, text_by("plcmt_data_value", entry.table->handle, placement))) << name;
    ASSERT_EQ(printed(print_by(name + "_plcmt_data_print", 3, placement), 0), print);
    ASSERT_EQ(printed(print_by("plcmt_data_print", 3, entry.table->handle, placement), 0), print);
    for (const recorded_call &call : driver().calls) {
      EXPECT_EQ(call.function, "pipe_mgr_plcmt_mat_data_get_entry");
      EXPECT_EQ(call.at<const char>(0), 't');
      // Value, mask and data stand behind the records.
      constexpr auto is_zero = [](std::uint8_t byte) { return byte == 0; };
      EXPECT_TRUE(std::ranges::all_of(call.arguments[1].record | std::views::drop(sizeof(drv_match_spec_t)), is_zero));
      EXPECT_TRUE(std::ranges::all_of(call.arguments[2].record | std::views::drop(sizeof(drv_action_spec_t)), is_zero));
    }
  });
}

TEST(placement, of_an_indirect_entry_that_points_nowhere)
{
  for (const auto &profile : calls::profiles) {
    for (const int kind : {0, 1, 3, 6, 255}) {
      for (const bool with_key : {true, false}) {
        const calls::table_info &table = table_of(profile);
        told_entry entry(table, nullptr, with_key);
        entry.act_kinds = static_cast<std::uint8_t>(kind);
        driver().answer = entry;
        const std::string value = "(" + (with_key ? key_value(table, entry.key()) : "(),") + ")";
        ASSERT_TRUE(writes(value, text_by("plcmt_data_value", table.handle, placement))) << table.name;
      }
    }
  }
}

TEST(placement, that_the_driver_refuses)
{
  for (const auto &table : calls::tables) {
    told_entry entry(table, table.actions.empty() ? nullptr : &table.actions[0]);
    entry.status = 0x51;
    driver().answer = entry;
    EXPECT_EQ(printed(print_by("plcmt_data_print", 3, table.handle, placement), 0x51),
              "cannot decode plcmt_data for " + prefix() + table.name + "\n");
    EXPECT_TRUE(writes_nothing(text_by("plcmt_data_value", table.handle, placement)));
    EXPECT_EQ(invoke<std::uint8_t>("plcmt_data_eq_to_hw", 1U, 0U, table.handle, 5U, placement), 0) << table.name;
  }
}

TEST(placement, takes_memory_for_the_resources_of_parameters_alone)
{
  for_each_entry([](const told_entry &entry) {
    if (entry.use == nullptr) return;
    driver().reset();
    driver().answer = [&](const recorded_call &call) {
      call.at<drv_action_spec_t>(2).res_count = 1;  // a counter, say
      return entry(call);
    };
    driver().refused_block = 1;
    const bool parameters = !entry.use->action->params.empty();
    const std::uint32_t status = parameters ? std::uint32_t{PD_STATUS_NO_MEMORY} : 0;
    const std::string print = printed(print_by("plcmt_data_print", 3, entry.table->handle, placement), status);
    if (parameters)
      EXPECT_EQ(print, "cannot decode plcmt_data for " + prefix() + entry.table->name + "\n");
    else
      EXPECT_EQ(print, print_of(entry, 3));
    EXPECT_EQ(driver().asked_blocks.size(), parameters ? 1u : 0u) << entry.table->name;
  });
}

TEST(placement, of_members)
{
  for (const auto &profile : calls::profiles) {
    const std::string name = profile.name;
    const calls::table_info &table = table_of(profile);
    const std::uint32_t handle = profile.action_data_table;
    for (const auto &use : profile.actions) {
      told_entry member(table, &use);
      driver().answer = member;
      const record parameters = use.action->params.empty() ? record() : member.parameters();
      const std::string value = action_value(*use.action, parameters);
      const std::string print =
          formatted("%*s%s%s:\n", 5, "", prefix().c_str(), use.action->name) + action_print(*use.action, 5, parameters);
      const auto write_named = text_by(name + "_plcmt_data_value", placement);
      const auto write = text_by("adt_plcmt_data_value", handle, placement);
      const auto print_named = print_by(name + "_adt_plcmt_data_print", 5, placement);
      const auto print_any = print_by("adt_plcmt_data_print", 5, handle, placement);
      EXPECT_TRUE(writes(value, write_named)) << name;
      EXPECT_TRUE(writes(value, write)) << name;
      EXPECT_EQ(printed(print_named, 0), print);
      EXPECT_EQ(printed(print_any, 0), print);
      member.status = 0x51;
      driver().answer = member;
      EXPECT_TRUE(writes_nothing(write)) << name;
      EXPECT_EQ(printed(print_any, 0x51),
                "cannot decode plcmt_data for " + prefix() + name + "_adt_plcmt_data_print\n");
    }
  }
}

/// The comparison, by the table's own function and by handle.
int equal(const told_entry &placed, const told_entry &hardware)
{
  driver().reset();
  driver().answer = [&](const recorded_call &call) {
    return call.function == "pipe_mgr_get_entry" ? hardware(call) : placed(call);
  };
  const std::string name = std::string(placed.table->name) + "_plcmt_data_eq_to_hw";
  const std::uint8_t by_name = invoke<std::uint8_t>(name, 7U, 0x302U, 0xdeadU, 9U, placement);
  const std::uint8_t by_handle =
      invoke<std::uint8_t>("plcmt_data_eq_to_hw", 7U, 0x302U, placed.table->handle, 9U, placement);
  EXPECT_EQ(by_name, by_handle) << name;
  for (const recorded_call &call : driver().calls) {
    if (call.function != "pipe_mgr_get_entry") continue;
    const std::uint64_t expected[] = {7, placed.table->handle, 2, 9};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(call.arguments[i].word, expected[i]) << name << ", argument " << i;
    EXPECT_EQ(call.arguments[7].word, 1U) << name;
  }
  return by_name;
}

TEST(comparison, of_any_entry)
{
  for_each_entry([](const told_entry &placed) {
    const std::string name = placed.table->name;
    told_entry other = placed;
    EXPECT_EQ(equal(placed, other), 1) << name;
    other.priority = 0xffffffff;
    EXPECT_EQ(equal(placed, other), 1) << name << ": priority";
    other.status = 0x44;
    EXPECT_EQ(equal(placed, other), 0) << name << ": unreadable";
    if (keyed(*placed.table)) {
      other = placed;
      other.with_key = !placed.with_key;
      EXPECT_EQ(equal(placed, other), 0) << name << ": key on one side";
      other = placed;
      for (std::uint8_t &byte : other.value) byte = static_cast<std::uint8_t>(~byte);
      other.partition = ~placed.partition;
      EXPECT_EQ(equal(placed, other), placed.with_key ? 0 : 1) << name << ": other key";
    }
    if (placed.use == nullptr) {
      other = placed;
      other.act_kinds = static_cast<std::uint8_t>(6 - placed.act_kinds);
      EXPECT_EQ(equal(placed, other), 0) << name << ": member and group";
      other = placed;
      other.mbr_hdl = 1, other.grp_hdl = 2;
      EXPECT_EQ(equal(placed, other), placed.act_kinds == 4 ? 1 : 0) << name << ": other handle";
      other = placed;
      other.act_kinds = 3;
      EXPECT_EQ(equal(other, placed), 0) << name << ": neither";
      return;
    }
    for (const auto &use : placed.table->actions) {
      other = placed;
      other.use = &use;
      other.act_hdl = use.handle;
      EXPECT_EQ(equal(placed, other), &use == placed.use ? 1 : 0) << name << ": " << use.action->name;
    }
    if (placed.use->action->params.empty()) return;
    other = placed;
    for (std::uint8_t &byte : other.data) byte = static_cast<std::uint8_t>(~byte);
    other.resource_index = ~placed.resource_index;
    EXPECT_EQ(equal(placed, other), 0) << name << ": other parameters";
  });
}

}  // namespace

}  // namespace tarvex::test
