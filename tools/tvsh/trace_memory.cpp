// Driver calls by name, and what of each is remembered.
//
// SPDX-License-Identifier: Apache-2.0
#include "trace_memory.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "tarvex_standin/standin.h"

namespace tarvex::shell {

namespace {

struct replayed_call {
  const nlohmann::json &arguments;
  std::uint32_t handle;

  std::uint32_t number(const char *name) const { return arguments.at(name).get<std::uint32_t>(); }
};

void value_set_add(own_writes &written, const replayed_call &call)
{
  written.value_set[call.handle] = {call.number("parser_value"), call.number("parser_value_mask"),
                                    call.number("tgt_scope"), static_cast<std::uint16_t>(call.number("tgt_index")),
                                    static_cast<std::uint8_t>(call.number("tgt_sub_index"))};
}

void value_set_modify(own_writes &written, const replayed_call &call)
{
  value_set_entry &kept = written.value_set[call.handle];
  kept.value = call.number("parser_value");
  kept.mask = call.number("parser_value_mask");
}

void idle_enable(own_writes &written, const replayed_call &call)
{
  const nlohmann::json &words = call.arguments.at("params");
  const auto word = [&](const char *name) { return words.at(name).get<std::uint32_t>(); };
  written.idle[call.number("tbl_hdl")] = {word("word_0") == STANDIN_IDLE_NOTIFY, word("word_1"), word("word_2")};
}

void add_cell(own_writes &written, const replayed_call &call, const char *owner)
{
  const std::uint32_t index = call.number("index");
  written.cells[call.number(owner)].add({index, index});
}

/// To a value, or to what the driver has for it.
void whole_register(own_writes &written, const replayed_call &call)
{
  const std::uint32_t reg = call.number("reg_hdl");
  const auto spec = call.arguments.at("spec").get<std::string>();
  std::uint8_t value = 0;
  if (spec != "null") std::from_chars(spec.data(), spec.data() + 2, value, 16);  // it stands in the first byte
  written.cells.erase(reg);
  written.register_rests.erase(reg);
  if (value != 0) written.register_rests[reg] = value;
}

void register_range(own_writes &written, const replayed_call &call)
{
  const std::uint64_t first = call.number("first_index");
  const std::uint64_t last = std::min<std::uint64_t>(first + call.number("count"), 1ull << 32);
  if (last > first) {
    written.cells[call.number("reg_hdl")].add(
        {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(last - 1)});
  }
}

struct remembered_call {
  std::string_view name;
  void (*remember)(own_writes &, const replayed_call &);
};

constexpr remembered_call remembered_calls[] = {
    {"pipe_mgr_pvs_entry_add", value_set_add},
    {"pipe_mgr_pvs_entry_modify", value_set_modify},
    {"pipe_mgr_pvs_entry_delete",
     [](own_writes &written, const replayed_call &call) { written.value_set.erase(call.handle); }},
    {"pipe_mgr_sel_grp_add",
     [](own_writes &written, const replayed_call &call) {
       written.group_sizes[{call.number("sel_hdl"), call.handle}] = call.number("max_grp_size");
     }},
    {"pipe_mgr_sel_grp_del",
     [](own_writes &written, const replayed_call &call) {
       written.group_sizes.erase({call.number("sel_hdl"), call.handle});
     }},
    {"pipe_mgr_sel_fallback_mbr_set",
     [](own_writes &written, const replayed_call &call) {
       written.fallback_members[call.number("sel_hdl")] = call.handle;
     }},
    {"pipe_mgr_sel_fallback_mbr_reset",
     [](own_writes &written, const replayed_call &call) { written.fallback_members.erase(call.number("sel_hdl")); }},
    {"pipe_mgr_idle_tmo_enable", idle_enable},
    {"pipe_mgr_idle_tmo_disable",
     [](own_writes &written, const replayed_call &call) { written.idle.erase(call.number("tbl_hdl")); }},
    {"pipe_mgr_stat_ent_set",
     [](own_writes &written, const replayed_call &call) { add_cell(written, call, "stat_hdl"); }},
    {"pipe_mgr_meter_ent_set",
     [](own_writes &written, const replayed_call &call) { add_cell(written, call, "meter_hdl"); }},
    {"pipe_mgr_wred_ent_set",
     [](own_writes &written, const replayed_call &call) { add_cell(written, call, "wred_hdl"); }},
    {"pipe_stful_ent_set", [](own_writes &written, const replayed_call &call) { add_cell(written, call, "reg_hdl"); }},
    {"pipe_stful_table_reset", whole_register},
    {"pipe_stful_table_reset_range", register_range},
    {"pipe_mgr_flow_lrn_set_timeout",
     [](own_writes &written, const replayed_call &call) { written.learning_timeout = call.number("timeout"); }},
    {"bf_snapshot_create",
     [](own_writes &written, const replayed_call &call) {
       written.snapshots[call.handle].egress = call.number("direction") != 0;
     }},
    {"bf_snapshot_delete",
     [](own_writes &written, const replayed_call &call) { written.snapshots.erase(call.handle); }},
};

std::uint32_t device_of(const nlohmann::json &arguments, std::uint32_t otherwise)
{
  for (const char *const name : {"dev_tgt", "dev_id"}) {
    if (const auto found = arguments.find(name); found != arguments.end()) {
      return static_cast<std::uint32_t>(found->get<std::uint64_t>());  // a target has the pipe above it
    }
  }
  return otherwise;
}

}  // namespace

void remember_replayed(switch_memory &memory, std::uint32_t device, std::string_view call,
                       const nlohmann::json &arguments, std::uint32_t handle)
{
  const auto known = std::ranges::find(remembered_calls, call, &remembered_call::name);
  if (known == std::ranges::end(remembered_calls)) return;
  known->remember(*memory.of(device_of(arguments, device)).written.lock(), {arguments, handle});
}

}  // namespace tarvex::shell
