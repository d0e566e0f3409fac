// Every exported function: that it exists, takes what it must, makes the driver calls it must with every byte of every
// record as it must be, stops where it must, and gives the right status.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <map>
#include <random>
#include <set>

#include "reference.h"

namespace tarvex::test {

namespace {

using enum argument_kind;
using enum calls::family_id;

// A run of neighbouring families, first to last.
struct other_check {
  const char *where;
  calls::family_id first, last;
  const char *part = "";  // of the functions' names
};

// What the loop over the driver calls leaves out: whatever converts answers, or asks the driver for nothing.
constexpr other_check other_checks[] = {
    {"lifecycle_test.cpp", lifecycle, lifecycle},
    {"read_back_test.cpp", unbuild_action_spec, unbuild_action_spec},
    {"read_back_test.cpp", get_entry, get_indirect_entry},
    {"read_back_test.cpp", unbuild_key, unbuild_mask},
    {"profile_test.cpp", get_member, get_full_member_info_from_plcmt_data},
    {"the test of handles below", get_mat_table_handle, get_mat_table_handle},
    {"the test of handles below", get_adt_table_handle, get_sel_table_handle},
    {"register_test.cpp", register_read, register_range_read},
    {"digest_test.cpp", learning_digest, learning_digest, "_get_digest_entry_"},
    {"hash_test.cpp", hash_access, hash_access},
    {"hash_test.cpp", hash_input_get, hash_input_get},
    {"hash_test.cpp", hash_algorithm_get, hash_algorithm_get},
    {"hash_test.cpp", hash_field_count_get, hash_own_field},
    {"tests/texts", match_spec_schema, dispatch},
    {"tests/snapshots", snapshot, snapshot},
};

const other_check *other_check_of(const exported_function &function)
{
  const auto found = std::ranges::find_if(other_checks, [&](const other_check &check) {
    return check.first <= function.family && function.family <= check.last &&
           std::string_view(function.name).find(check.part) != std::string_view::npos;
  });
  return found == std::end(other_checks) ? nullptr : found;
}

// Families that other programs test need no line.
bool is_told(calls::family_id family)
{
  return std::ranges::any_of(operations, [&](const operation &operation) { return operation.family == family; });
}

TEST(interface, every_function_is_known_by_name_and_arguments)
{
  std::map<const operation *, std::size_t> found;
  for (const exported_function &function : calls::functions) {
    if (!is_told(function.family)) continue;
    const operation *operation = operation_of(function);
    ASSERT_NE(operation, nullptr) << function.name << " has no line in operations.cpp";
    ++found[operation];
    EXPECT_TRUE(std::ranges::equal(arguments_of(*operation, function), function.arguments)) << function.name;
  }
  for (const operation &operation : operations)
    EXPECT_EQ(found[&operation], count_of(operation.rows)) << operation.name;
}

// A family that is run by no loop and listed nowhere would go untested unseen.
TEST(interface, every_function_is_checked_somewhere)
{
  std::map<std::string, std::size_t> left_to;
  std::set<const other_check *> used;
  std::size_t run_here = 0;
  for (const exported_function &function : calls::functions) {
    if (const other_check *other = other_check_of(function)) {
      ++left_to[other->where];
      used.insert(other);
      continue;
    }
    const operation *operation = operation_of(function);
    ASSERT_TRUE(operation != nullptr && !operation->series.empty())
        << function.name << " is neither of a family with driver calls in operations.cpp nor in the list of others";
    ++run_here;
  }
  EXPECT_EQ(used.size(), std::size(other_checks)) << "the list of others holds more than there is";
  std::cout << "driver calls of " << run_here << " of " << calls::functions.size() << " exported functions are run";
  for (const auto &[where, count] : left_to) std::cout << "; " << count << " are left to " << where;
  std::cout << '\n';
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

// Floats that arithmetic or a conversion would change: NaNs with their payload, signalling and quiet, and -0.
constexpr std::uint32_t odd_floats[] = {0x7f800001, 0xffffffff, 0x80000000, 0xffc12345};

// Values of resources, and what goes with them: flags, kinds of meter, numbers of hash inputs.
void prepare_values(call &call, int pattern, std::mt19937 &random)
{
  constexpr std::uint32_t flags[] = {0, 1, 2, 3, 0xfffffffe, 0xffffffff};
  constexpr std::uint32_t pre_colors[] = {0, 1, 0x100, 0x180, 0xff, 0x80};
  constexpr std::uint32_t hash_numbers[] = {0, 1, 0x100, 0x80000000, 0, 0xffffffff};
  constexpr std::pair<argument_kind, std::size_t> values[] = {{counter_value, 16}, {meter_value, 20},
                                                              {wred_value, 16},    {register_value, 1},
                                                              {register_word, 8},  {parser_tgt, 12}};
  for (const auto &[kind, size] : values) fill(call, kind, size, pattern, random);
  if (call.takes(read_flags)) call.give(read_flags, flags[pattern]);
  if (call.takes(hash_number)) call.give(hash_number, hash_numbers[pattern]);
  if (call.takes(wred_value) && pattern == 3) {
    std::memcpy(call.memory(wred_value).data(), odd_floats, sizeof odd_floats);
  }
  if (!call.takes(meter_value)) return;
  std::uint8_t meter_type[] = {1, 0, 0, 0};
  if (call.takes(has_pre_color)) {
    call.give(has_pre_color, pre_colors[pattern]);
    meter_type[0] = pattern % 2 == 0;  // aware of colours where there are any
  }
  call.fill(meter_value, meter_type, offsetof(pd_meter_spec_t, meter_type));
}

void prepare(call &call, int pattern, std::mt19937 &random)
{
  prepare_values(call, pattern, random);
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

// Answers all calls with 0 but one, and gives numbers and records wherever they are asked for, whatever the status.
class answers {
 public:
  answers(std::vector<driver_call> series, std::size_t failing, std::uint32_t first_number, bytes record)
      : series_(std::move(series)), failing_(failing), number_(first_number), record_(std::move(record))
  {
  }

  std::uint64_t operator()(const recorded_call &call)
  {
    if (at_ < series_.size()) {
      const auto &terms = series_[at_].arguments;
      for (std::size_t i = 0; i < terms.size() && i < call.arguments.size(); ++i) {
        const std::size_t size = answer_size(terms[i]);
        if (size != 0 && !(terms[i].from_caller && at_ == failing_)) {
          std::memcpy(&call.at<std::uint8_t>(i), record_.data(), size);
        }
        if (wants_number(terms[i])) std::memcpy(&call.at<std::uint8_t>(i), &number_, sizeof number_), ++number_;
      }
    }
    return at_++ == failing_ ? status : 0;
  }

  static bool wants_number(const term &term)
  {
    if (!term.from_caller) return term.other == derived::local;
    for (const auto kind : {entry_hdl_out, mbr_hdl_out, grp_hdl_out, entry_count_out, next_entry_hdls_out,
                            next_mbr_hdls_out, next_grp_hdls_out, ttl_out, pvs_entry_hdl_out}) {
      if (term.kind == kind) return true;
    }
    return false;
  }

  static constexpr std::uint32_t status = 0x80000005;

 private:
  std::vector<driver_call> series_;
  std::size_t failing_;
  std::uint32_t number_;
  bytes record_;
  std::size_t at_ = 0;
};

// A record of the driver's, as the caller gets it.
void expect_value(call &call, const term &term, bytes record)
{
  record.resize(answer_size(term));
  if (record.empty()) return;
  if (term.from_caller) return call.expect(term.kind, record);
  const argument_kind kind = term.other == derived::stat_answer    ? counter_value_out
                             : term.other == derived::meter_answer ? meter_value_out
                                                                   : wred_value_out;
  call.expect(kind, value_read(term.other, record));
}

// What outputs must hold afterwards: numbers that the driver put there itself, and the few that the library copies.
void expect_outputs(call &call, const std::vector<driver_call> &made, bool failed, std::uint32_t number,
                    const bytes &record)
{
  for (const driver_call &one : made) {
    for (const term &term : one.arguments) {
      if (!failed) expect_value(call, term, record);
      if (!answers::wants_number(term)) continue;
      if (term.from_caller) call.expect_number(term.kind, number, 4);
      if (call.takes(hit_state_out)) call.expect_number(hit_state_out, number, 4);
      ++number;
    }
  }
  if (call.takes(property_argument_out)) call.expect_number(property_argument_out, failed ? 0xffffffff : --number, 4);
  if (call.takes(property_value_out)) call.expect_number(property_value_out, failed ? 0xffffffff : --number, 4);
}

// One call, with the n-th driver call failing; n beyond the series for none.
std::string try_once(call &call, const operation &operation, std::size_t failing, std::uint8_t stack_pattern,
                     const bytes &record)
{
  const auto &function = call.function();
  const std::uint32_t answered = function.family == modify_member ? function.use->handle : first_answer;
  auto expected = expected_calls(operation, call, answered);
  auto series = series_of(operation, call);
  std::uint32_t status = 0;
  if (failing < expected.size() && !series[failing].ignored) {
    status = answers::status;
    expected.resize(failing + 1);
    series.resize(failing + 1);
  }
  driver().reset();
  driver().answer = answers(series, failing, answered, record);
  const std::uint64_t result = call.run(stack_pattern);
  expect_outputs(call, series, status != 0, answered, record);

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
    if (operation == nullptr || operation->series.empty() || other_check_of(function) != nullptr) continue;
    if (wrong_operations.contains(operation)) continue;
    std::string wrong;
    for (int pattern = 0; pattern < patterns && wrong.empty(); ++pattern) {
      call call(function);
      std::size_t place = 0;
      prepare(call, pattern, random);
      bytes record(64, 0xff);  // what the driver holds
      if (pattern != 1) std::ranges::generate(record, [&] { return static_cast<std::uint8_t>(random()); });
      if (pattern == 3) std::memcpy(record.data(), odd_floats, sizeof odd_floats);
      for (const int prefix : prefix_lengths(call, place)) {
        const std::uint8_t length[] = {static_cast<std::uint8_t>(prefix), static_cast<std::uint8_t>(prefix >> 8)};
        if (prefix >= 0) call.fill(match_spec, length, place);
        for (std::size_t failing = 0; failing <= operation->series.size() && wrong.empty(); ++failing) {
          for (const std::uint8_t stack_pattern : stack_patterns) {
            if (wrong.empty()) wrong = try_once(call, *operation, failing, stack_pattern, record);
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

// Colours ahead of the meter come to the meters by handle alone.
TEST(interface, meters_refuse_a_type_that_cannot_be)
{
  for (const exported_function &function : calls::functions) {
    call call(function);
    if (!call.takes(meter_value)) continue;
    const bool by_handle = call.takes(has_pre_color);
    for (const std::uint32_t meter_type : {0U, 2U, 0x100U, 0x80000001U, 0xffffffffU}) {
      for (const std::uint32_t pre_color : {0U, 0x100U, 1U, 0xffU}) {
        if (by_handle) call.give(has_pre_color, pre_color);
        if (by_handle && meter_type == 0 && (pre_color & 0xff) != 0) continue;
        std::memcpy(call.memory(meter_value).data() + offsetof(pd_meter_spec_t, meter_type), &meter_type, 4);
        driver().reset();
        EXPECT_EQ(call.run(), PD_STATUS_INVALID_ARG) << function.name << ", " << meter_type << ", " << pre_color;
        EXPECT_TRUE(driver().calls.empty()) << function.name;
      }
    }
  }
}

TEST(interface, handles_are_given_out_without_the_driver)
{
  for (const exported_function &function : calls::functions) {
    const bool selector = function.family == get_sel_table_handle;
    const bool of_profile = selector || function.family == get_adt_table_handle;
    if (!of_profile && function.family != get_mat_table_handle) continue;
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
