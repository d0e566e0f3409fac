// Drivers that answer nonsense, to every exported function: it ends in an orderly status or in the one assertion that
// is laid down, and nothing strays. Every block of a call is one of its own, so that the address sanitizer sees it.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <map>
#include <random>
#include <vector>

#include "plausible.h"

namespace tarvex::test {

namespace {

using enum calls::family_id;

std::vector<std::uint32_t> odd_numbers()
{
  std::vector<std::uint32_t> odd = {0,    1,     2,          4,          5,          28,        29,
                                    0xff, 0x100, 0x7fffffff, 0x80000000, 0xffffffff, 0x1000000, 0xfffffff0};
  for (const calls::table_info *table : {&calls::tables.front(), &calls::tables.back()}) {
    odd.push_back(table->handle);
    for (const calls::use_info &use : table->actions) odd.push_back(use.handle);
  }
  for (const calls::hash_info &hash : calls::hashes) odd.push_back(hash.first_input);
  return odd;
}

/// Numbers that a careless reader trips over, and some of anything.
class nonsense {
 public:
  explicit nonsense(unsigned seed) : source_(seed) {}

  bool chance(unsigned one_in) { return source_() % one_in == 0; }
  std::uint32_t number()
  {
    static const std::vector<std::uint32_t> odd = odd_numbers();
    return chance(3) ? static_cast<std::uint32_t>(source_()) : odd[source_() % odd.size()];
  }
  void scribble(void *over, std::size_t size)
  {
    for (auto *byte = static_cast<std::uint8_t *>(over); size > 0; ++byte, --size)
      *byte = static_cast<std::uint8_t>(source_());
  }
  template <typename T>
  void maybe(T &value)
  {
    if (chance(2)) value = static_cast<T>(number());
  }

 private:
  std::mt19937 source_;
};

void spoil(nonsense &any, drv_match_spec_t &key)
{
  for (std::uint8_t *bytes : {key.key_value, key.key_mask}) {
    if (bytes != nullptr) any.scribble(bytes, key.key_bytes);
  }
  if (any.chance(4)) key.key_value = nullptr;
  if (any.chance(4)) key.key_mask = nullptr;
  any.maybe(key.partition_index), any.maybe(key.key_bits), any.maybe(key.key_bytes), any.maybe(key.priority);
}

void spoil(nonsense &any, drv_act_data_t &data)
{
  if (data.data != nullptr) any.scribble(data.data, 28);
  if (any.chance(4)) data.data = nullptr;
  any.maybe(data.data_bits), any.maybe(data.data_bytes);
}

void spoil(nonsense &any, drv_action_spec_t &action)
{
  spoil(any, action.act_data);
  any.scribble(action.res, sizeof action.res);
  any.maybe(action.act_kinds), any.maybe(action.mbr_hdl), any.maybe(action.grp_hdl);
  action.res_count = any.number();
  for (drv_res_spec_t &res : action.res) any.maybe(res.res_hdl), res.res_tag = any.number() % 4;
}

/// Shapes, and pointers to rows that the driver's own carelessness has overwritten.
void spoil(nonsense &any, drv_stful_query_t &query, std::int32_t rows)
{
  static drv_stful_spec_t *foreign[4] = {};
  if (query.rows != nullptr && any.chance(3)) {
    for (std::int32_t i = 0; i < rows; ++i) query.rows[i] = nullptr;
  }
  if (any.chance(3)) query.rows = any.chance(2) ? foreign : nullptr;
  any.maybe(query.row_count), any.maybe(query.values_per_row);
}

std::uint64_t spoilt_answer(nonsense &any, const plausible_call &call, const recorded_call &asked)
{
  static pd_res_spec_t one = {};
  static std::int32_t rows = 0;  // there is room for as many as the driver said last
  const std::string &name = asked.function;
  const std::uint64_t status = call.oblige(asked);
  if (name == "p4_pd_ms_init_state" || name == "bf_drv_register") return status;
  for (std::size_t i = 0; i < asked.arguments.size(); ++i) {
    if (asked.arguments[i].room > 0 && any.chance(2)) any.scribble(&asked.at<std::uint8_t>(i), asked.arguments[i].room);
    if (asked.arguments[i].room == 4 && any.chance(2)) asked.at<std::uint32_t>(i) = any.number();
  }
  if (name == "pipe_mgr_get_entry" || name == "pipe_mgr_plcmt_mat_data_get_entry") {
    const std::size_t first = name == "pipe_mgr_get_entry" ? 4 : 1;
    spoil(any, asked.at<drv_match_spec_t>(first));
    spoil(any, asked.at<drv_action_spec_t>(first + 1));
  } else if (name == "pipe_mgr_get_action_data_entry" || name == "pipe_mgr_plcmt_adt_data_get_entry") {
    spoil(any, asked.at<drv_act_data_t>(name == "pipe_mgr_get_action_data_entry" ? 3 : 1));
  } else if (name.ends_with("_get_res")) {
    // A list that is there has as many elements as it is said to have; one that is not may be said to have any.
    asked.at<pd_res_spec_t *>(4) = any.chance(2) ? &one : nullptr;
    if (asked.at<pd_res_spec_t *>(4) != nullptr) asked.at<std::uint32_t>(3) = 1;
  } else if (name == "pipe_stful_query_get_sizes") {
    // Rooms small enough to be had; larger ones are refused by the allocator.
    for (const std::size_t at : {3U, 4U}) asked.at<std::int32_t>(at) = static_cast<std::int32_t>(any.number() % 9) - 2;
    rows = std::clamp(asked.at<std::int32_t>(3), 0, 1);
  } else if (name == "pipe_stful_ent_query" && call.function().family == register_read) {
    spoil(any, asked.at<drv_stful_query_t>(4), rows);
  } else if (name == "pipe_stful_ent_query_range") {
    for (std::size_t i = 0; i < 2; ++i) spoil(any, (&asked.at<drv_stful_query_t>(5))[i], i == 0 ? rows : 0);
  }
  return any.chance(6) ? any.number() : 0;
}

/// A reply that contradicts the pipeline stops the process in the function that reads an entry or member, which texts
/// call too.
bool may_stop_in(const std::string &name)
{
  const auto reads = [&](const exported_function &function) {
    const calls::family_id family = function.family;
    const bool reads_entry = family == get_entry || family == get_indirect_entry ||
                             family == get_entry_from_plcmt_data || family == get_indirect_entry_from_plcmt_data;
    const bool reads_member = family >= get_member && family <= get_full_member_info_from_plcmt_data;
    return function.name == name && (reads_entry || reads_member);
  };
  return std::ranges::any_of(calls::functions, reads);
}

/// Whether there may be more than one: texts, bytes, lists.
bool is_list(argument_kind kind)
{
  using enum argument_kind;
  if (kind == no_key_out || kind == is_member_out || kind == is_group_out) return false;
  return calls::row_of(kind).size <= 1 || kind == hash_attrs_out;
}

/// Where memory is written behind the one value that it is for, in words; empty where it is not.
std::string written_behind(const exported_function &function, const outcome &seen)
{
  for (std::size_t i = 0; i < function.arguments.size(); ++i) {
    const calls::argument_row &row = calls::row_of(function.arguments[i]);
    if (row.form != calls::argument_form::pointer || is_list(row.kind)) continue;
    if (!std::ranges::equal(std::span(seen.before[i]).subspan(row.size), std::span(seen.after[i]).subspan(row.size))) {
      return "argument " + std::to_string(i) + " is written behind its " + std::to_string(row.size) + " bytes";
    }
  }
  return {};
}

TEST(hostile_replies, end_in_a_status_or_in_the_assertion_laid_down)
{
  std::map<std::string, std::size_t> ends;
  for (const exported_function &function : calls::functions) {
    const outcome good = outcome_of(function);
    if (good.asked.empty()) continue;
    for (unsigned round = 0; round < 40; ++round) {
      nonsense any(round * 7919 + static_cast<unsigned>(&function - calls::functions.data()));
      const outcome seen = outcome_of(function, [&](const plausible_call &call, const recorded_call &asked) {
        return spoilt_answer(any, call, asked);
      });
      ++ends[!seen.stop.empty()                                                  ? "stops"
             : function.result == calls::result_kind::status && seen.result != 0 ? "refusals"
                                                                                 : "answers"];
      // Rows whose pointers the driver has overwritten are lost with them.
      if (function.family != register_read) {
        ASSERT_EQ(seen.wrong, "") << function.name << ", round " << round;
      }
      ASSERT_TRUE(seen.stop.empty() || may_stop_in(seen.stop)) << function.name << " stops in " << seen.stop;
      ASSERT_EQ(written_behind(function, seen), "") << function.name << ", round " << round;
    }
    const outcome again = outcome_of(function);
    ASSERT_TRUE(again.result == good.result && again.asked == good.asked) << function.name << " afterwards";
  }
  for (const auto &[what, count] : ends) std::cout << count << ' ' << what << "; ";
  std::cout << "to drivers that answer nonsense\n";
  EXPECT_EQ(ends.size(), 3u);
}

}  // namespace

}  // namespace tarvex::test
