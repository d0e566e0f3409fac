// What the driver tells of an entry or member, how the caller's structures look by that, and how text functions are
// called: into buffers that end at a page which nobody may touch.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "recorder.h"
#include "reference.h"
#include "tarvex_pd/types.h"

namespace tarvex::test {

/// A text function, with all arguments but the buffer.
template <typename... Arguments>
auto text_by(const std::string &name, Arguments... arguments)
{
  return [=](char *buf) { return invoke<std::uint32_t>(name, arguments..., buf); };
}

/// Holds a text function's text, its NUL and its result against what they should be, with room for no byte more.
::testing::AssertionResult writes(const std::string &expected, const std::function<std::uint32_t(char *)> &write);
/// That a text function gives 0 and leaves its buffer.
::testing::AssertionResult writes_nothing(const std::function<std::uint32_t(char *)> &write);

/// The longest text of a sort that a test has seen, and that callers make room for it and for no more.
class longest_text {
 public:
  void see(const std::string &text) { most_ = std::max(most_, text.size()); }
  void expect_room(std::size_t size) const { EXPECT_EQ(most_ + 1, size); }

 private:
  std::size_t most_ = 0;
};

record random_record(std::size_t size);

struct told_entry {
  told_entry(const calls::table_info &told_table, const calls::use_info *told_use, bool told_key = true);

  const calls::table_info *table;
  const calls::use_info *use;  // null for an indirect table
  bool with_key;
  record value, mask, data = random_record(28);
  std::uint32_t partition = 0x1234;
  std::uint32_t priority = 42;
  std::uint8_t act_kinds = 1;
  std::uint32_t mbr_hdl = 0xabcd, grp_hdl = 0x1234;
  std::uint32_t act_hdl = 0;
  std::uint32_t resource_index = 0x87654321;  // of an action that has one
  std::uint32_t status = 0;

  /// Fills the records of a driver call that reads or decodes.
  std::uint64_t operator()(const recorded_call &call) const;

  bool no_key() const { return !with_key || !keyed(*table); }
  record key() const;
  record parameters() const;
  /// "(key,action": what all texts of an entry begin with.
  std::string key_and_action() const;
};

/// Calls for each action of each direct table, and for member and group of each indirect one, with and without a key.
void for_each_entry(const std::function<void(const told_entry &)> &check);

}  // namespace tarvex::test
