// Any table and profile by its handle, and the labels for counters.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "capture.h"
#include "told_entry.h"

namespace tarvex::test {

namespace {

constexpr std::uint64_t target = 0xbeef'0305'0000'0102, cut_target = 0x0305'0000'0102;

/// Every handle near those of tables and profiles, and some of neither.
std::vector<std::uint32_t> handles()
{
  std::vector<std::uint32_t> all = {0, 1, 0x1ff, 0x3000001, 0x20000005, 0x7fffffff, 0xffffffff, 0x2100000a};
  for (std::uint32_t low = 0; low < 0x100; ++low) all.insert(all.end(), {0x1000000 + low, 0x2000000 + low});
  return all;
}

bool is_table(std::uint32_t handle)
{
  return std::ranges::count(calls::tables, handle, &calls::table_info::handle) > 0;
}

bool is_profile(std::uint32_t handle)
{
  return std::ranges::count(calls::profiles, handle, &calls::profile_info::action_data_table) > 0;
}

TEST(dispatch, walks_hand_on_their_arguments)
{
  struct walk {
    const char *name;
    const char *driver_function;
    std::vector<std::uint64_t> arguments;  // 0 for the handle
    bool of_profiles;
  };
  const std::vector<walk> walks = {
      {"entry_hdl_first", "pipe_mgr_get_first_entry_handle", {7, 0, cut_target}, false},
      {"entry_hdl_next", "pipe_mgr_get_next_entry_handles", {7, 0, cut_target, 9, 3}, false},
      {"entry_hdl_default", "pipe_mgr_table_get_default_entry_handle", {7, cut_target, 0}, false},
      {"member_hdl_next", "pipe_mgr_get_next_entry_handles", {7, 0, cut_target, 9, 3}, true},
  };
  std::size_t known = 0;
  for (const walk &walk : walks) {
    const bool has_count = walk.arguments.size() == 5;
    for (const std::uint32_t handle : handles()) {
      driver().reset();
      driver().answer = [](const recorded_call &) { return 0x80000055; };
      std::uint32_t out[4] = {1, 2, 3, 4};
      const auto status = has_count ? invoke<std::uint32_t>(walk.name, 7U, target, handle, 9U, 3U, &out[0])
                                    : invoke<std::uint32_t>(walk.name, 7U, target, handle, &out[0]);
      if (!(walk.of_profiles ? is_profile(handle) : is_table(handle))) {
        ASSERT_EQ(status, walk.of_profiles ? 0xffffffff : 0U) << walk.name << handle;
        ASSERT_EQ(std::vector(out, out + 4), (std::vector<std::uint32_t>{0xffffffff, 2, 3, 4})) << walk.name;
        ASSERT_TRUE(driver().calls.empty()) << walk.name;
        continue;
      }
      ++known;
      ASSERT_EQ(status, 0x80000055) << walk.name;
      ASSERT_EQ(driver().calls.size(), 1U);
      ASSERT_EQ(driver().calls[0].function, walk.driver_function);
      std::vector<std::uint64_t> words;
      for (const auto &argument : driver().calls[0].arguments) words.push_back(argument.word);
      std::vector<std::uint64_t> expected = walk.arguments;
      std::ranges::replace(expected, std::uint64_t{0}, std::uint64_t{handle});
      expected.push_back(reinterpret_cast<std::uint64_t>(&out[0]));
      ASSERT_EQ(words, expected) << walk.name;
    }
  }
  EXPECT_EQ(known, 3 * calls::tables.size() + calls::profiles.size());
}

TEST(dispatch, answers_for_unknown_handles)
{
  driver().reset();
  driver().answer = [](const recorded_call &) -> std::uint64_t {
    ADD_FAILURE() << "driver call";
    return 1;
  };
  for (const std::uint32_t handle : handles()) {
    const auto text = [&](const char *name, auto... behind) {
      return [=](char *buf) { return invoke<std::uint32_t>(name, behind..., buf); };
    };
    const auto print = [&](const char *name) {
      const auto lines = captured([&](int fd) { EXPECT_EQ(invoke<std::uint32_t>(name, fd, 4, handle, nullptr), 27U); });
      EXPECT_EQ(lines, std::vector{formatted("0x%08x table not found\n", handle)});
    };
    const void *const none = nullptr;
    if (!is_table(handle)) {
      ASSERT_TRUE(writes_nothing(text("entry_value", 1U, 0U, handle, 5U, 0U))) << handle;
      ASSERT_TRUE(writes_nothing(text("plcmt_data_value", handle, none))) << handle;
      ASSERT_EQ(invoke<std::uint8_t>("plcmt_data_eq_to_hw", 1U, 0U, handle, 5U, none), 0) << handle;
      print("plcmt_data_print");
    }
    if (!is_profile(handle)) {
      ASSERT_TRUE(writes_nothing(text("adt_plcmt_data_value", handle, none))) << handle;
      print("adt_plcmt_data_print");
    }
    if (!is_table(handle) && !is_profile(handle)) {
      ASSERT_TRUE(writes("()", text("cli_schema", handle))) << handle;
    }
    const auto table = std::ranges::find(calls::tables, handle, &calls::table_info::handle);
    if (table == calls::tables.end() || !table->counter_label) {
      ASSERT_TRUE(writes_nothing(text("stringify_counter_matchspec", 1U, 0U, handle, 5U))) << handle;
    }
  }
}

TEST(dispatch, schema_of_every_handle)
{
  for (const auto &table : calls::tables) EXPECT_TRUE(writes(table_schema(table), text_by("cli_schema", table.handle)));
  for (const auto &profile : calls::profiles)
    EXPECT_TRUE(writes(profile_schema(profile), text_by("cli_schema", profile.action_data_table)));
}

/// A label by the key, by the entry and by the table's handle.
void expect_label(const told_entry &entry, const std::string &label)
{
  driver().reset();
  driver().answer = entry;
  const std::string name = entry.table->name;
  const record key = entry.key();
  ASSERT_TRUE(writes(label, text_by(name + "_match_spec_stringify_for_counter", key.data())));
  ASSERT_TRUE(writes(label, text_by(name + "_stringify_counter_match_spec", 7U, 0x302U, 9U)));
  ASSERT_TRUE(writes(label, text_by("stringify_counter_matchspec", 7U, 0x302U, entry.table->handle, 9U)));
  for (const recorded_call &call : driver().calls) {
    ASSERT_EQ(call.arguments[1].word, entry.table->handle);
    ASSERT_EQ(call.arguments[2].word, 2U);
    ASSERT_EQ(call.arguments[7].word, 1U) << "not from the hardware";
  }
}

/// As it is told by hand; where nobody has, as the library writes it by the key, so that all ways are compared at
/// least.
std::string label_of(const calls::table_info &table, const record &key)
{
  if (told_labels().contains(table.name)) return counter_label(table, key);
  std::string text(PD_LABEL_TEXT_SIZE, 'x');
  text.resize(invoke(std::string(table.name) + "_match_spec_stringify_for_counter", key.data(), text.data()));
  return text;
}

TEST(label, of_every_labelled_table)
{
  longest_text longest;
  for (const auto &table : calls::tables) {
    if (!table.counter_label) continue;
    told_entry entry(table, &table.actions[0]);
    for (unsigned round = 0; round < 300; ++round) {
      for (record *bytes : {&entry.value, &entry.mask}) {
        *bytes = random_record(table.key_bytes);
        // Few bits set, few not set, or any.
        for (std::uint8_t &byte : *bytes)
          if (round % 3 == 0) byte = static_cast<std::uint8_t>(byte & random_record(1)[0] & random_record(1)[0]);
        if (round < 2) std::ranges::fill(*bytes, static_cast<std::uint8_t>(round == 0 ? 0xff : 0));
      }
      expect_label(entry, label_of(table, entry.key()));
    }
    longest.see(label_of(table, record(table.record_size, 0xff)));
    entry.with_key = false;
    driver().answer = entry;
    const auto by_handle = text_by("stringify_counter_matchspec", 7U, 0U, table.handle, 9U);
    EXPECT_TRUE(writes_nothing(by_handle)) << table.name << ": without a key";
    entry.with_key = true;
    entry.status = 0x44;
    driver().answer = entry;
    EXPECT_TRUE(writes_nothing(by_handle)) << table.name << ": unreadable";
  }
  longest.expect_room(PD_LABEL_TEXT_SIZE);
}

}  // namespace

}  // namespace tarvex::test
