// The check of structures for values that their fields cannot hold, over every table and action.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "call_table.h"
#include "tarvex_agent/tv_check.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::calls {
namespace {

/// What is found in a structure that is 0 but for one member.
std::string found_in(std::uint32_t handle, std::size_t size, std::size_t offset, std::uint64_t value, std::size_t bytes)
{
  std::vector<char> structure(size);
  std::memcpy(structure.data() + offset, &value, bytes);
  char text[TV_CHECK_TEXT_SIZE] = "untouched";
  const auto result = tv_check_structure(handle, structure.data(), text);
  EXPECT_EQ(result == TV_CHECK_FITS, *text == 0) << text;
  EXPECT_EQ(tv_check_structure(handle, structure.data(), nullptr), result);
  return text;
}

/// The widest number fits, and one bit more does not if the member has room for it.
void expect_bits(std::uint32_t handle, std::size_t size, const std::string &name, std::size_t offset,
                 std::size_t member_size, unsigned bits)
{
  if (member_size > 4) return;
  EXPECT_EQ(found_in(handle, size, offset, (std::uint64_t{1} << bits) - 1, member_size), "") << name;
  if (bits == 8 * member_size) return;
  const std::string found = found_in(handle, size, offset, std::uint64_t{1} << bits, member_size);
  EXPECT_EQ(found, name + " is " + std::to_string(std::uint64_t{1} << bits) + ", beyond its " + std::to_string(bits) +
                       " bits");
  EXPECT_LT(found.size(), std::size_t{TV_CHECK_TEXT_SIZE} - 1);
}

TEST(check_test, each_member_of_each_table_and_action)
{
  for (const table_info &table : tables) {
    for (const field_info &field : table.fields) {
      const std::string name = field.name;
      if (field.match == match_kind::lpm) {
        EXPECT_EQ(found_in(table.handle, table.record_size, field.companion, field.bits, 2), "");
        EXPECT_NE(found_in(table.handle, table.record_size, field.companion, field.bits + 1U, 2).find("_prefix_length"),
                  std::string::npos);
      }
      if (field.match == match_kind::ternary)
        expect_bits(table.handle, table.record_size, name + "_mask", field.companion, field.member_size, field.bits);
      if (field.match != match_kind::partition)
        expect_bits(table.handle, table.record_size, name, field.member, field.member_size, field.bits);
    }
    for (const use_info &use : table.actions) {
      for (const param_info &each : use.action->params)
        expect_bits(use.handle, use.action->record_size, std::string("action_") + each.name, each.member,
                    each.member_size, each.bits);
    }
  }
}

TEST(check_test, what_a_program_meets)
{
  char text[TV_CHECK_TEXT_SIZE];
  std::uint32_t hosts = 0, finals = 0;
  p4_pd_tarvex_switch_ipv4Host_get_mat_table_handle(&hosts);
  p4_pd_tarvex_switch_ipv4FinalResolve_get_mat_table_handle(&finals);
  const p4_pd_tarvex_switch_ipv4Host_match_spec_t key = {.l3Info_vrfId = 300, .ingIpv4_dip = 0x0a000001};
  EXPECT_EQ(tv_check_structure(hosts, &key, text), TV_CHECK_TOO_WIDE);
  EXPECT_STREQ(text, "l3Info_vrfId is 300, beyond its 8 bits");
  const p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_t route = {
      .ingIpv4_fibPartitionIndex = 0x8000, .ingIpv4_dip = 0x0a010000, .ingIpv4_dip_prefix_length = 16};
  EXPECT_EQ(tv_check_structure(finals, &route, text), TV_CHECK_TOO_WIDE);
  EXPECT_STREQ(text, "ingIpv4_fibPartitionIndex is 32768, beyond its 15 bits");
  EXPECT_EQ(tv_check_structure(0x0100ffff, &key, text), TV_CHECK_UNKNOWN_HANDLE);
  EXPECT_EQ(tv_check_structure(hosts, nullptr, nullptr), TV_CHECK_FITS);
}

}  // namespace
}  // namespace tarvex::calls
