// SPDX-License-Identifier: Apache-2.0
#include "plausible.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <set>

#include "reference.h"
#include "stopped.h"
#include "tarvex_pd/hash_access.h"
#include "tarvex_pd/types.h"

namespace tarvex::test {

namespace {

using enum argument_kind;

constexpr std::size_t data_size = 28;

std::uint32_t nothing_listed(std::uint32_t, const char *, std::uint32_t, std::uint32_t, void *) { return 1; }
std::uint32_t nothing_shown(std::uint32_t, const char *, std::uint32_t, const std::uint8_t *, const std::uint8_t *)
{
  return 1;
}

template <typename T>
std::uint64_t address(T *place)
{
  return reinterpret_cast<std::uint64_t>(place);
}

/// The first table that meets a condition, the first of all where none does.
template <typename Condition>
const calls::table_info &table_that(Condition meets)
{
  const auto found = std::ranges::find_if(calls::tables, meets);
  return found == calls::tables.end() ? calls::tables.front() : *found;
}

std::uint32_t keep_first(std::uint32_t, const char *name, std::uint32_t, std::uint32_t, void *kept)
{
  if (static_cast<std::string *>(kept)->empty()) *static_cast<std::string *>(kept) = name;
  return 0;
}

const char *a_snapshot_field()
{
  static const std::string name = [] {
    std::string first;
    invoke("snapshot_capture_trigger_list", 0U, 0U, &keep_first, static_cast<void *>(&first));
    return first;
  }();
  return name.c_str();
}

/// One that is not the first, where there are more.
const calls::action_info &an_action() { return calls::actions[std::min<std::size_t>(3, calls::actions.size() - 1)]; }

const char *an_action_name()
{
  static const std::string name = prefix() + an_action().name;
  return name.c_str();
}

/// Functions that take a handle are tried with one that all of them know.
const calls::table_info &table_of(const exported_function &function)
{
  if (function.table != nullptr) return *function.table;
  const std::string_view name = function.name;
  if (name.find("_adt_") != name.npos || name.find("member_hdl") != name.npos)
    return table_that([](const auto &table) { return table.profile != nullptr; });
  return table_that([](const auto &table) { return table.counter_label; });
}

std::span<const calls::use_info> uses_of(const calls::table_info &table)
{
  return table.profile != nullptr ? table.profile->actions : table.actions;
}

/// The action with most to tell.
const calls::use_info &richest_use(const calls::table_info &table)
{
  const auto weight = [](const calls::use_info &use) {
    return use.action->params.size() + 10 * use.action->index_resources.size();
  };
  return *std::ranges::max_element(uses_of(table), {}, weight);
}

/// Null where the pipeline has none.
const calls::hash_info *hash_of(const exported_function &function)
{
  if (function.hash != nullptr || calls::hashes.empty()) return function.hash;
  return &calls::hashes[calls::hashes.size() / 2];
}

}  // namespace

plausible_call::plausible_call(const exported_function &function)
    : call(function), table_(&table_of(function)), log_(nullptr, cJSON_Delete)
{
  static const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const bool of_profile = function.table == nullptr && table_->profile != nullptr;
  const std::pair<argument_kind, std::uint64_t> values[] = {
      {priority, 9},
      {read_flags, 1},
      {has_pre_color, 0},
      {signed_range_count, 2},
      {res_count, 0},
      {action_enum, an_action().enum_value},
      {action_name, address(an_action_name())},
      {fd, static_cast<std::uint64_t>(nowhere)},
      {indent, 2},
      {table_handle, of_profile ? table_->profile->action_data_table : table_->handle},
      {snapshot_hdl, 0},
      {snapshot_field_name, address(a_snapshot_field())},
      {snapshot_list_callback, address(&nothing_listed)},
      {snapshot_show_callback, address(&nothing_shown)},
      {capture_index, 1},
      {is_egress, 0},
      {digest_name, address(calls::digests.empty() ? "" : calls::digests[0].name)},
      {digest_field_name, address(calls::digests.empty() ? "" : calls::digests[0].fields.back().name)},
      {calc_name, address(hash_of(function) != nullptr ? hash_of(function)->name : "")},
  };
  for (const auto &[kind, value] : values) {
    if (takes(kind)) give(kind, value);
  }
  prepare_records();
  prepare_hash();
}

void plausible_call::prepare_records()
{
  const std::uint8_t one[] = {1, 0, 0, 0};
  for (const argument_kind kind : {meter_value, meter_spec}) {
    if (takes(kind)) fill(kind, one, offsetof(pd_meter_spec_t, meter_type));
  }
  for (const argument_kind kind : {drv_match_spec, drv_act_data}) {
    if (!takes(kind)) continue;
    // What the driver has filled lies behind the record itself.
    std::uint8_t *const content = memory(kind).data() + sizeof(drv_match_spec_t);
    drv_match_spec_t key{};
    key.key_value = content, key.key_mask = content + 64;
    drv_act_data_t data{};
    data.data = content;
    if (kind == drv_match_spec) std::memcpy(memory(kind).data(), &key, sizeof key);
    if (kind == drv_act_data) std::memcpy(memory(kind).data(), &data, sizeof data);
  }
  if (!takes(argument_kind::log)) return;
  const std::string profile = calls::profiles.empty() ? "none" : calls::profiles.back().name;
  log_.reset(cJSON_Parse((R"({"act_profs":[{"name":")" + profile + R"("}]})").c_str()));
  give(argument_kind::log, address(log_.get()));
}

void plausible_call::prepare_hash()
{
  const calls::hash_info *const hash = hash_of(function());
  if (hash == nullptr) return;
  std::vector<hash_calc_attr_t> attrs;
  for (std::uint32_t i = 0; i < hash->common.size(); ++i) {
    attrs.push_back({function().hash != nullptr ? i : hash->common[i], 0, i % 2});
  }
  if (takes(hash_attrs)) {
    fill(hash_attrs, {reinterpret_cast<const std::uint8_t *>(attrs.data()), attrs.size() * sizeof attrs[0]});
  }
  for (const argument_kind kind : {hash_attr_count, hash_attr_max}) {
    if (takes(kind)) give(kind, attrs.size());
  }
  for (const argument_kind kind : {hash_number, hash_field}) {
    if (takes(kind)) give(kind, 0);
  }
}

std::uint64_t plausible_call::give_entry(const recorded_call &asked, std::size_t first) const
{
  auto &key = asked.at<drv_match_spec_t>(first);
  auto &action = asked.at<drv_action_spec_t>(first + 1);
  const calls::use_info &use = richest_use(*table_);
  for (std::size_t i = 0; key.key_value != nullptr && i < table_->key_bytes; ++i) {
    key.key_value[i] = static_cast<std::uint8_t>(i), key.key_mask[i] = 0xff;
  }
  action.act_kinds = table_->profile != nullptr ? 2 : 1;
  action.mbr_hdl = 7;
  if (action.act_data.data != nullptr) std::fill_n(action.act_data.data, data_size, std::uint8_t{0x21});
  action.res_count = 1;
  action.res[0].res_hdl = use.action->index_resources.empty() ? 1 : use.action->index_resources[0];
  action.res[0].res_index = 5;
  action.res[0].res_tag = 1;
  asked.at<std::uint32_t>(first + 2) = use.handle;
  return 0;
}

std::uint64_t plausible_call::oblige(const recorded_call &asked) const
{
  const std::string &name = asked.function;
  const auto give_number = [&](std::size_t argument, std::uint32_t number) {
    asked.at<std::uint32_t>(argument) = number;
    return std::uint64_t{0};
  };
  if (name == "p4_pd_ms_init_state") {
    const auto made = std::ranges::count(driver().calls, name, &recorded_call::function);
    return address(state_of_profile(static_cast<std::size_t>(made - 1) % calls::profiles.size()));
  }
  if (name == "pipe_mgr_get_entry") return give_entry(asked, 4);
  if (name == "pipe_mgr_plcmt_mat_data_get_entry") return give_entry(asked, 1);
  if (name == "pipe_mgr_get_action_data_entry" || name == "pipe_mgr_plcmt_adt_data_get_entry") {
    const std::size_t data = name == "pipe_mgr_get_action_data_entry" ? 3 : 1;
    std::fill_n(asked.at<drv_act_data_t>(data).data, data_size, std::uint8_t{0x43});
    return give_number(data + 1, richest_use(*table_).handle);
  }
  if (name.ends_with("_mbr_act") && name.find("_get_") != name.npos) {
    return give_number(3, function().use != nullptr ? function().use->handle : uses_of(*table_)[0].handle);
  }
  if (name == "pipe_mgr_hash_calc_input_get") return give_number(3, hash_of(function())->first_input);
  if (name == "pipe_mgr_hash_calc_algorithm_get") return give_number(3, hash_of(function())->algorithms[0]);
  if (name == "pipe_stful_query_get_sizes") {
    give_number(3, 4);
    return give_number(4, 3);
  }
  if (name == "pipe_stful_ent_query_range") return give_number(6, 2);
  const bool own_query = function().family == calls::family_id::register_read;
  if (name == "pipe_stful_ent_query" && own_query) {
    asked.at<drv_stful_query_t>(4).row_count = 4;
    asked.at<drv_stful_query_t>(4).values_per_row = 3;
    return 0;
  }
  for (std::size_t i = 0; i < asked.arguments.size(); ++i) {
    if (asked.arguments[i].room >= 4) give_number(i, 1);
  }
  return 0;
}

std::uint64_t obliging(const plausible_call &call, const recorded_call &asked) { return call.oblige(asked); }

outcome outcome_of(const exported_function &function, const driver_function &answer, unsigned refused_block)
{
  plausible_call made(function);
  outcome seen;
  seen.before.assign(made.blocks().begin(), made.blocks().end());
  driver().reset();
  driver().refused_block = refused_block;
  driver().answer = [&](const recorded_call &asked) { return answer(made, asked); };
  const auto stop = stopped([&] { seen.result = made.run(); });
  if (stop) seen.stop = stop->function;
  for (const recorded_call &asked : driver().calls) seen.asked.push_back(asked.function);
  seen.blocks = driver().blocks_taken;
  if (!stop && driver().blocks_taken != driver().blocks_given_back) seen.wrong = "blocks are left";
  seen.after.assign(made.blocks().begin(), made.blocks().end());
  driver().reset();
  return seen;
}

std::string difference(const outcome &good, const outcome &again)
{
  if (again.result != good.result || again.after != good.after || again.asked != good.asked) return "the next differs";
  return again.wrong;
}

bool is_ignored(const std::string &name)
{
  static const std::set<std::string> ignored = {
      "p4_pd_ms_init",        "p4_pd_ms_init_state",     "p4_pd_ms_destroy_state_for_dev",
      "p4_pd_ms_log_state",   "p4_pd_ms_restore_state",  "p4_pd_ms_destroy_txn_state_for_dev",
      "p4_pd_ms_new_mbr",     "p4_pd_ms_set_mbr_act",    "p4_pd_ms_del_mbr",
      "p4_pd_ms_new_grp",     "p4_pd_ms_add_mbr_to_grp", "p4_pd_ms_set_grp_act",
      "p4_pd_ms_mbr_get_res", "p4_pd_ms_grp_get_res",    "p4_pd_ms_del_mbr_from_grp",
  };
  return ignored.contains(name);
}

}  // namespace tarvex::test
