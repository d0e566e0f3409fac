// Every exported function through one walker: it is executed and shows its effect; then each of its driver calls and
// each of its blocks is refused in turn.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iostream>

#include "plausible.h"

namespace tarvex::test {

namespace {

using enum argument_kind;
using enum calls::family_id;
using calls::result_kind;

constexpr std::uint32_t refused = 0x80000005;

// Functions that neither ask the driver nor write: what they must give for the plausible call.
std::uint64_t expected_result(const exported_function &function)
{
  const std::string_view name = function.name;
  switch (function.family) {
    case hash_common_field: return function.hash->common[0];
    case hash_own_field:
      return static_cast<std::uint64_t>(std::ranges::find(function.hash->common, 0U) - function.hash->common.begin());
    case supports_entry_priority: return function.table->kind == calls::table_kind::ternary ? 1 : 0;
    case match_specs_are_equal:
    case action_specs_are_equal: return 0;  // the two blocks differ
    default: return name.ends_with("_device_state_cleanup") ? 0 : ~std::uint64_t{0};
  }
}

std::string missing_effect(const exported_function &function, const outcome &good)
{
  if (!good.stop.empty()) return "stopped";
  if (!good.asked.empty() || !good.wrote_nothing()) return {};
  const std::uint64_t expected = expected_result(function);
  if (expected == ~std::uint64_t{0}) return good.result == 0 ? "no effect" : "";
  return good.result == expected ? "" : "result " + std::to_string(good.result);
}

TEST(faults, every_function_is_executed_and_shows_its_effect)
{
  std::size_t shown = 0;
  for (const exported_function &function : calls::functions) {
    const outcome good = outcome_of(function);
    const std::string wrong = missing_effect(function, good) + good.wrong;
    if (function.result == result_kind::status) {
      EXPECT_EQ(good.result, 0u) << function.name;
    }
    EXPECT_EQ(wrong, "") << function.name;
    shown += wrong.empty() ? 1 : 0;
  }
  std::cout << shown << " of " << calls::functions.size() << " exported functions are executed with their effect\n";
  EXPECT_EQ(shown, calls::functions.size());
}

/// What a function answers where the driver gives it `status` and it has no use for the answer of its own.
std::uint64_t told_of(const exported_function &function, std::uint32_t status)
{
  const std::string_view name = function.name;
  const bool reads_hash = name.find("hash_calc_") != name.npos && name.ends_with("_get") && !name.ends_with("seed_get");
  if (reads_hash) return PD_STATUS_INVALID_ARG;
  if (function.result == result_kind::status || name.ends_with("_print")) return status;
  const bool hands_on = name.ends_with("_hdl_first") || name.ends_with("_hdl_next") || name.ends_with("_hdl_default");
  return hands_on ? status : 0;
}

/// Outputs that are written on failure too, and what they must hold.
std::string unlawfully_written(const exported_function &function, outcome seen)
{
  for (std::size_t i = 0; i < function.arguments.size(); ++i) {
    std::uint32_t word = 0;
    if (seen.before[i] == seen.after[i]) continue;
    std::memcpy(&word, seen.after[i].data(), sizeof word);
    const argument_kind kind = function.arguments[i];
    const bool laid_down = ((kind == property_value_out || kind == property_argument_out) && word == 0xffffffff) ||
                           kind == hit_state_out ||
                           ((kind == hash_attr_count_out || kind == capture_count_out) && word == 0);
    if (laid_down) std::copy_n(seen.before[i].begin(), sizeof word, seen.after[i].begin());
    if (seen.before[i] != seen.after[i]) return "argument " + std::to_string(i) + " is written";
  }
  return {};
}

TEST(faults, every_driver_call_may_fail)
{
  std::size_t failed = 0;
  for (const exported_function &function : calls::functions) {
    const outcome good = outcome_of(function);
    for (std::size_t nth = 0; nth < good.asked.size(); ++nth, ++failed) {
      const std::string &name = good.asked[nth];
      const outcome bad = outcome_of(function, [&](const plausible_call &call, const recorded_call &asked) {
        const bool its_turn = driver().calls.size() == nth + 1;
        if (!its_turn) return call.oblige(asked);
        return name == "p4_pd_ms_init_state" ? 0 : std::uint64_t{refused};
      });
      std::string wrong = bad.wrong;
      if (name == "bf_drv_register") {
        wrong = bad.stop == function.name ? "" : "does not stop";
      } else if (is_ignored(name)) {
        if (bad.result != good.result || bad.after != good.after) wrong += "a status that counts for nothing shows";
      } else {
        if (bad.result != told_of(function, refused)) wrong += "result " + std::to_string(bad.result);
        wrong += unlawfully_written(function, bad);
        if (bad.asked.size() != nth + 1) wrong += "goes on";
      }
      wrong += difference(good, outcome_of(function));
      ASSERT_EQ(wrong, "") << function.name << " with a failing " << name << ", driver call " << nth + 1;
    }
  }
  std::cout << failed << " driver calls refused\n";
  EXPECT_GT(failed, calls::functions.size() / 2) << "the driver's calls do not come by here";
}

TEST(faults, properties_that_the_driver_does_not_write_are_zero)
{
  std::size_t read = 0;
  for (const exported_function &function : calls::functions) {
    const outcome seen = outcome_of(function, [](const plausible_call &, const recorded_call &) { return 0; });
    for (std::size_t i = 0; i < function.arguments.size(); ++i) {
      if (function.arguments[i] != property_value_out && function.arguments[i] != property_argument_out) continue;
      std::uint32_t word = 1;
      std::memcpy(&word, seen.after[i].data(), sizeof word);
      EXPECT_EQ(word, 0u) << function.name;
      ++read;
    }
  }
  EXPECT_EQ(read, 2 * calls::tables.size() + calls::value_sets.size());
}

TEST(faults, every_block_may_be_refused)
{
  std::size_t failed = 0;
  for (const exported_function &function : calls::functions) {
    const outcome good = outcome_of(function);
    for (unsigned nth = 1; nth <= good.blocks; ++nth, ++failed) {
      const outcome bad = outcome_of(function, obliging, nth);
      std::string wrong = bad.wrong + bad.stop + unlawfully_written(function, bad);
      if (bad.result != told_of(function, PD_STATUS_NO_MEMORY)) wrong += "result " + std::to_string(bad.result);
      wrong += difference(good, outcome_of(function));
      ASSERT_EQ(wrong, "") << function.name << " without block " << nth;
    }
  }
  std::cout << failed << " blocks refused\n";
  EXPECT_GT(failed, 0u);
}

}  // namespace

}  // namespace tarvex::test
