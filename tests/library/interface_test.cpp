// Every exported function: that it exists, takes what it must, makes the driver calls it must with every byte of every
// record as it must be, stops where it must, and gives the right status.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <set>

#include "reference.h"

namespace tarvex::test {

namespace {

using enum argument_kind;
using enum calls::family_id;

bool is_read_back(calls::family_id family)
{
  return family == get_entry || family == get_indirect_entry || family == get_member ||
         family == get_member_from_plcmt_data || family == get_full_member_info_from_plcmt_data;
}

// Families that no line tells of, the resources and services, are other tests' affair.
bool is_told(calls::family_id family)
{
  return std::ranges::any_of(operations, [&](const operation &operation) { return operation.family == family; });
}

TEST(interface, every_function_is_known_by_name_and_arguments)
{
  std::map<const operation *, unsigned> found;
  for (const exported_function &function : calls::functions) {
    if (!is_told(function.family)) continue;
    const operation *operation = operation_of(function);
    ASSERT_NE(operation, nullptr) << function.name << " has no line in operations.cpp";
    ++found[operation];
    EXPECT_TRUE(std::ranges::equal(arguments_of(*operation, function), function.arguments)) << function.name;
  }
  for (const operation &operation : operations) EXPECT_EQ(found[&operation], operation.count) << operation.name;
}

constexpr int patterns = 6;
constexpr std::uint8_t stack_patterns[] = {0xa5, 0x5a};

// Fills a structure, room and gaps included: each byte its own, all ones, zeros, then random ones.
void fill(call &call, argument_kind kind, std::size_t size, int pattern, std::mt19937 &random)
{
  if (!call.takes(kind) || pattern == 0) return;
  bytes content(size, pattern == 1 ? 0xff : 0);
  if (pattern > 2) {
    for (std::uint8_t &byte : content) byte = static_cast<std::uint8_t>(random());
  }
  call.fill(kind, content);
}

void prepare(call &call, int pattern, std::mt19937 &random)
{
  constexpr std::uint32_t priorities[] = {0x81020304, 0xffffffff, 0, 1, 0x80000000, 0x7fffffff};
  const auto &function = call.function();
  if (call.takes(match_spec)) fill(call, match_spec, function.table->record_size, pattern, random);
  if (function.action != nullptr) fill(call, action_spec, function.action->record_size, pattern, random);
  if (call.takes(priority)) call.give(priority, priorities[pattern]);
  if (call.takes(member_state)) call.give(member_state, static_cast<std::uint64_t>(pattern % 2));
  if (!call.takes(meter_spec)) return;
  // Modify and default take no meter as well as one.
  fill(call, meter_spec, sizeof(pd_meter_spec_t), pattern, random);
  const std::uint8_t color_unaware[] = {1, 0, 0, 0};
  call.fill(meter_spec, color_unaware, offsetof(pd_meter_spec_t, meter_type));
  if (pattern % 2 == 1 && function.family != entry_add) call.give(meter_spec, 0);
}

// Prefix lengths worth a try in a longest-prefix table; one round without any in another.
std::vector<int> prefix_lengths(const call &call, std::size_t &place)
{
  if (call.takes(match_spec)) {
    for (const calls::field_info &field : call.function().table->fields) {
      place = field.companion;
      const int width = field.bits;
      if (field.match == calls::match_kind::lpm) return {0, 1, 7, 8, 20, width - 1, width, width + 1, 0xffff};
    }
  }
  return {-1};
}

// Answers all calls with 0 but one, and gives numbers wherever a number is asked for, whatever the status.
class answers {
 public:
  answers(const operation &operation, std::size_t failing, std::uint32_t first_number)
      : operation_(operation), failing_(failing), number_(first_number)
  {
  }

  std::uint64_t operator()(const recorded_call &call)
  {
    if (at_ < operation_.series.size()) {
      const auto &terms = operation_.series[at_].arguments;
      for (std::size_t i = 0; i < terms.size() && i < call.arguments.size(); ++i) {
        if (wants_number(terms[i])) std::memcpy(&call.at<std::uint8_t>(i), &number_, sizeof number_), ++number_;
      }
    }
    return at_++ == failing_ ? status : 0;
  }

  static bool wants_number(const term &term)
  {
    if (!term.from_caller) return term.other == derived::local;
    for (const auto kind : {entry_hdl_out, mbr_hdl_out, grp_hdl_out, entry_count_out, next_entry_hdls_out, ttl_out}) {
      if (term.kind == kind) return true;
    }
    return false;
  }

  static constexpr std::uint32_t status = 0x80000005;

 private:
  const operation &operation_;
  std::size_t failing_;
  std::uint32_t number_;
  std::size_t at_ = 0;
};

// What outputs must hold afterwards: numbers that the driver put there itself, and the few that the library copies.
void expect_outputs(call &call, const operation &operation, std::size_t calls_made, bool failed, std::uint32_t number)
{
  for (std::size_t i = 0; i < calls_made; ++i) {
    for (const term &term : operation.series[i].arguments) {
      if (!answers::wants_number(term)) continue;
      if (term.from_caller) call.expect_number(term.kind, number, 4);
      if (operation.family == get_hit_state) call.expect_number(hit_state_out, number, 4);
      ++number;
    }
  }
  if (operation.family != get_property) return;
  call.expect_number(property_value_out, failed ? 0xffffffff : number - 2, 4);
  call.expect_number(property_argument_out, failed ? 0xffffffff : number - 1, 4);
}

// One call, with the n-th driver call failing; n beyond the series for none.
std::string try_once(call &call, const operation &operation, std::size_t failing, std::uint8_t stack_pattern)
{
  const auto &function = call.function();
  const std::uint32_t answered = function.family == modify_member ? function.use->handle : first_answer;
  auto expected = expected_calls(operation, call, answered);
  std::uint32_t status = 0;
  if (failing < expected.size() && !operation.series[failing].ignored) {
    status = answers::status;
    expected.resize(failing + 1);
  }
  driver().reset();
  driver().answer = answers(operation, failing, answered);
  const std::uint64_t result = call.run(stack_pattern);
  expect_outputs(call, operation, expected.size(), status != 0, answered);

  std::string wrong = difference(expected, driver().calls);
  if (result != status) wrong += "\nstatus " + std::to_string(result) + " instead of " + std::to_string(status);
  if (driver().blocks_taken != 0) wrong += "\ntook a block";
  return wrong + call.unexpected_bytes();
}

TEST(interface, driver_calls_are_as_laid_down_with_each_status)
{
  std::mt19937 random(20240229);
  std::set<const operation *> wrong_operations;  // tried no further
  for (const exported_function &function : calls::functions) {
    const operation *operation = operation_of(function);
    if (operation == nullptr || operation->series.empty() || is_read_back(function.family)) continue;
    if (wrong_operations.contains(operation)) continue;
    std::string wrong;
    for (int pattern = 0; pattern < patterns && wrong.empty(); ++pattern) {
      call call(function);
      std::size_t place = 0;
      prepare(call, pattern, random);
      for (const int prefix : prefix_lengths(call, place)) {
        const std::uint8_t length[] = {static_cast<std::uint8_t>(prefix), static_cast<std::uint8_t>(prefix >> 8)};
        if (prefix >= 0) call.fill(match_spec, length, place);
        for (std::size_t failing = 0; failing <= operation->series.size() && wrong.empty(); ++failing) {
          for (const std::uint8_t stack_pattern : stack_patterns) {
            if (wrong.empty()) wrong = try_once(call, *operation, failing, stack_pattern);
          }
        }
      }
    }
    EXPECT_TRUE(wrong.empty()) << function.name << ": " << wrong;
    if (!wrong.empty()) wrong_operations.insert(operation);
  }
}

// A value that the storm control meter does not take.
TEST(interface, adds_and_defaults_refuse_a_meter_that_cannot_be)
{
  for (const exported_function &function : calls::functions) {
    call call(function);
    if (!call.takes(meter_spec)) continue;
    for (const int meter_type : {0, 2, 255}) {
      const std::uint8_t type[] = {static_cast<std::uint8_t>(meter_type), 0, 0, 0};
      call.fill(meter_spec, type, offsetof(pd_meter_spec_t, meter_type));
      driver().reset();
      EXPECT_EQ(call.run(), PD_STATUS_INVALID_ARG) << function.name << ", meter type " << meter_type;
      EXPECT_TRUE(driver().calls.empty()) << function.name;
    }
    if (function.family != entry_add) continue;
    call.give(meter_spec, 0);
    EXPECT_EQ(call.run(), PD_STATUS_INVALID_ARG) << function.name << " without a meter";
    EXPECT_TRUE(driver().calls.empty()) << function.name;
  }
}

TEST(interface, handles_are_given_out_without_the_driver)
{
  for (const exported_function &function : calls::functions) {
    if (function.family != get_mat_table_handle && function.family != get_profile_table_handle) continue;
    const bool of_profile = function.profile != nullptr;
    const bool selector = std::string_view(function.name).ends_with("_get_sel_table_handle");
    driver().reset();
    call call(function);
    EXPECT_EQ(call.run(), 0u) << function.name;
    call.expect_number(table_handle_out,
                       of_profile ? (selector ? function.profile->selector_table : function.profile->action_data_table)
                                  : function.table->handle,
                       4);
    EXPECT_EQ(call.unexpected_bytes(), "") << function.name;
    call.give(table_handle_out, 0);
    EXPECT_EQ(call.run(), 0u) << function.name;
    EXPECT_TRUE(driver().calls.empty()) << function.name;
  }
}

}  // namespace

}  // namespace tarvex::test
