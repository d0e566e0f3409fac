// Schema text and value text of all tables, actions and profiles, byte for byte.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "told_entry.h"

namespace tarvex::test {

namespace {

TEST(schema_text, every_text_byte_for_byte)
{
  longest_text longest;
  for (const auto &table : calls::tables) {
    const std::string text = table_schema(table);
    longest.see(text);
    EXPECT_TRUE(writes(text, text_by(std::string(table.name) + "_schema"))) << table.name;
    if (!keyed(table)) continue;
    EXPECT_EQ(invoke<const char *>(std::string(table.name) + "_match_spec_schema"), key_schema(table));
  }
  for (const auto &action : calls::actions)
    EXPECT_EQ(invoke<const char *>(std::string(action.name) + "_schema"), action_schema(action));
  for (const auto &profile : calls::profiles) {
    longest.see(profile_schema(profile));
    EXPECT_TRUE(writes(profile_schema(profile), text_by(std::string(profile.name) + "_schema"))) << profile.name;
  }
  longest.expect_room(PD_SCHEMA_TEXT_SIZE);
}

/// All zeros, all ones, and some of anything.
std::vector<record> records(std::size_t size)
{
  std::vector<record> all = {record(size), record(size, 0xff)};
  for (unsigned i = 0; i < 20; ++i) all.push_back(random_record(size));
  return all;
}

TEST(value_text, keys_and_actions_byte_for_byte)
{
  longest_text longest_key, longest_action;
  for (const auto &table : calls::tables) {
    if (!keyed(table)) continue;
    for (const record &key : records(table.record_size)) {
      const std::string text = key_value(table, key);
      longest_key.see(text);
      const std::string name = std::string(table.name) + "_match_spec_value";
      ASSERT_TRUE(writes(text, text_by(name, key.data()))) << table.name;
    }
  }
  for (const auto &action : calls::actions) {
    const std::string name = std::string(action.name) + "_value";
    for (const record &spec : records(action.record_size)) {
      const std::string text = action_value(action, spec);
      longest_action.see(text);
      ASSERT_TRUE(writes(text, [&](char *buf) {
        return action.params.empty() ? invoke<std::uint32_t>(name, buf) : invoke<std::uint32_t>(name, spec.data(), buf);
      })) << name;
    }
  }
  longest_key.expect_room(PD_KEY_TEXT_SIZE);
  longest_action.expect_room(PD_ACTION_TEXT_SIZE);
}

TEST(value_text, of_entries)
{
  longest_text longest;
  for_each_entry([&](const told_entry &told) {
    for (const std::uint32_t priority : {0U, 42U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
      told_entry entry = told;
      entry.priority = priority;
      entry.mbr_hdl = entry.grp_hdl = priority;
      driver().reset();
      driver().answer = entry;
      const bool ternary = entry.table->kind == calls::table_kind::ternary;
      const std::string text =
          "(" + entry.key_and_action() + formatted("),(%d,True))", ternary ? static_cast<int>(priority) : 0);
      longest.see(text);
      const std::string name = entry.table->name;
      ASSERT_TRUE(writes(text, text_by(name + "_value", 7U, 0x302U, 9U, 0x1ffU))) << name;
      ASSERT_TRUE(writes(text, text_by("entry_value", 7U, 0x302U, entry.table->handle, 9U, 0x100U))) << name;
      const std::vector<std::uint64_t> flags = {driver().calls.at(0).arguments.at(7).word,
                                                driver().calls.at(1).arguments.at(7).word};
      ASSERT_EQ(flags, (std::vector<std::uint64_t>{0xff, 0}));
    }
  });
  longest.expect_room(PD_ENTRY_TEXT_SIZE);
}

TEST(value_text, of_an_entry_that_cannot_be_read_is_nothing)
{
  for (const auto &table : calls::tables) {
    const bool indirect = table.profile != nullptr;
    told_entry entry(table, indirect ? nullptr : &table.actions[0]);
    const auto write = text_by("entry_value", 1U, 0U, table.handle, 5U, 0U);
    entry.status = 0x41;
    driver().answer = entry;
    EXPECT_TRUE(writes_nothing(write)) << table.name;
    if (indirect) continue;
    entry.status = 0;
    entry.act_kinds = 2;
    driver().answer = entry;
    EXPECT_TRUE(writes_nothing(write)) << table.name;
  }
}

TEST(equality, looks_at_live_bits_alone)
{
  const auto check = [](const std::string &function, const std::vector<text_row> &rows, std::size_t size) {
    record live(size);
    for (const text_row &row : rows) {
      for (std::size_t i = 0; i < row.size; ++i)
        live[row.member + i] |= row.bits == 128 ? row.live[i] : row.live[15 - i];
    }
    const record a = random_record(size);
    for (std::size_t bit = 0; bit < 8 * size; ++bit) {
      record b = a;
      b[bit / 8] = static_cast<std::uint8_t>(b[bit / 8] ^ 1U << bit % 8);
      const std::uint8_t equal = (live[bit / 8] >> bit % 8 & 1) != 0 ? 0 : 1;
      ASSERT_EQ(invoke<std::uint8_t>(function, a.data(), b.data()), equal) << function << ", bit " << bit;
    }
    EXPECT_EQ(invoke<std::uint8_t>(function, a.data(), a.data()), 1) << function;
  };
  for (const auto &table : calls::tables)
    if (keyed(table)) check(std::string(table.name) + "_match_specs_are_equal", rows_of(table), table.record_size);
  for (const auto &action : calls::actions)
    if (!action.params.empty())
      check(std::string(action.name) + "_action_specs_are_equal", rows_of(action), action.record_size);
}

TEST(width_and_priority, follow_the_rows)
{
  for (const auto &table : calls::tables) {
    for (const auto &field : table.fields) {
      std::string name = field.name;
      if (name.ends_with("_valid")) name.resize(name.size() - 6);
      EXPECT_EQ(invoke<std::uint32_t>(std::string(table.name) + "_" + name + "_width"), field.bits);
    }
    const auto rows = rows_of(table);
    const bool masked = std::ranges::any_of(rows, [](const auto &row) { return row.name.ends_with("_mask"); });
    EXPECT_EQ(invoke<std::uint32_t>(std::string(table.name) + "_supports_entry_priority"), masked ? 1U : 0U);
  }
}

}  // namespace

}  // namespace tarvex::test
