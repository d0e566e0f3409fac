// SPDX-License-Identifier: Apache-2.0
#include "recorded_arguments.h"

#include <dlfcn.h>

#include <algorithm>

#include "record_members.h"
#include "recorded_number.h"
#include "tarvex_pd/snapshots.h"
#include "tarvex_trace/tarvex_trace.h"

namespace tarvex::trace {

namespace {

using nlohmann::json;

constexpr std::size_t digits_of_byte = 2;

bool is_null(const json &value) { return value.is_string() && value.get_ref<const std::string &>() == "null"; }

std::uint8_t digit_of(char letter)
{
  if (letter >= '0' && letter <= '9') return static_cast<std::uint8_t>(letter - '0');
  if (letter >= 'a' && letter <= 'f') return static_cast<std::uint8_t>(letter - 'a' + 10);
  throw trace_error("'" + std::string(1, letter) + "' is no hexadecimal digit of bytes");
}

word address(const void *memory) { return reinterpret_cast<std::uintptr_t>(memory); }

/// The state of a profile, which the tracing library of this process knows.
word state_named(const json &value)
{
  const auto name = value.get<std::string>();
  const auto state = reinterpret_cast<decltype(&tarvex_trace_state)>(dlsym(RTLD_DEFAULT, "tarvex_trace_state"));
  for (std::uint32_t i = 0; state != nullptr && i < rows::profiles.size(); ++i) {
    if (rows::profiles[i].name != name) continue;
    if (ms_state *const found = state(i)) return address(found);
  }
  throw trace_error("the state of '" + name +
                    "' is not known in this process: the tracing library must stand ahead of the driver");
}

/// The one function that a call of the library hands on and that any process has.
word function_named(const json &value)
{
  if (value != "p4_pd_ms_grp_update_res") throw trace_error("the callback " + value.dump() + " is the program's own");
  return address(dlsym(RTLD_DEFAULT, "p4_pd_ms_grp_update_res"));
}

/// What the catalogue has of a handle among the rows; null for a handle that it does not know.
template <typename Row>
const Row *row_of_handle(std::span<const Row> rows, std::uint32_t handle)
{
  const auto found = std::ranges::find(rows, handle, &Row::handle);
  return found == rows.end() ? nullptr : &*found;
}

const rows::action_info *action_of_handle(std::uint32_t handle)
{
  const auto among = [&](const auto &owners) -> const rows::action_info * {
    for (const auto &each : owners) {
      if (const rows::use_info *const use = row_of_handle(each.actions, handle)) return use->action;
    }
    return nullptr;
  };
  const rows::action_info *const of_table = among(rows::tables);
  return of_table != nullptr ? of_table : among(rows::profiles);
}

}  // namespace

recorded_arguments::recorded_arguments(const call_row &row, const json &recorded, const handle_map &handles)
    : handles_(handles)
{
  const auto each = [&](const auto &action) {
    for (const argument_row &argument : row.arguments()) {
      const std::string name(argument.name);
      try {
        const bool goes_in = argument.way == direction::in;
        if (goes_in && !recorded.contains(name)) throw trace_error("is missing");
        action(argument, goes_in ? recorded[name] : json());
      } catch (const std::exception &error) {  // of the JSON library's, too
        throw trace_error("argument " + name + " of " + std::string(row.name) + ": " + error.what());
      }
    }
  };
  each([&](const argument_row &argument, const json &value) { find_scope(argument, value); });
  each([&](const argument_row &argument, const json &value) {
    words_.push_back(argument.way != direction::in ? address(memory(sizeof(std::uint64_t)))
                                                   : read(row, argument, value, recorded));
  });
}

void recorded_arguments::find_scope(const argument_row &argument, const json &value)
{
  if (argument.kind == value_kind::handle) {
    const auto handle = number<std::uint32_t>(value);
    if (argument.name == "tbl_hdl") scope_.table = handle;
    if (argument.name == "act_hdl") action_ = action_of_handle(handle);
    for (const rows::profile_info &profile : rows::profiles) {
      if (handle == profile.action_data_table || handle == profile.selector_table || handle == profile.table) {
        scope_.profile = profile.table;
      }
    }
  } else if (argument.kind == value_kind::state) {
    for (const rows::profile_info &profile : rows::profiles) {
      if (value == profile.name) scope_.profile = profile.table;
    }
  }
}

word recorded_arguments::read(const call_row &row, const argument_row &argument, const json &value,
                              const json &recorded)
{
  using enum value_kind;
  if (argument.kind == state) return state_named(value);
  if (argument.kind == callback) return function_named(value);
  // A reset to what the driver has for it.
  if (argument.kind == register_value && row.name.starts_with("pipe_stful_table_reset") && is_null(value)) return 0;
  switch (argument.kind) {
    case entry_handle:
    case member_handle:
    case group_handle:
    case value_set_handle:
    case snapshot_handle: return handles_.now(argument.kind, scope_, trace::number<std::uint32_t>(value));
    case number:
    case device:
      return argument.size == sizeof(std::uint32_t) ? trace::number<std::uint32_t>(value)
                                                    : trace::number<std::uint64_t>(value);
    case handle: return trace::number<std::uint32_t>(value);
    case device_target: return trace::number<pd_dev_tgt_t>(value);
    case match_spec: return key(value);
    case action_spec: return action(value);
    case resources:
      if (!value.is_array() || value.size() != recorded.at(std::string(row.rows[argument.room].name)))
        throw trace_error("the count of resources is not that of the list");
      return all_resources(value);
    case register_value: return address(bytes(value, sizeof(drv_stful_spec_t)));
    case trigger: return address(bytes(value, sizeof(snap_trig_spec_t)));
    case idle_params: {
      auto *const params = reinterpret_cast<pd_idle_params_t *>(members(argument.kind, value));
      params->word_4 = params->word_5 = 0;  // code and memory of the traced program
      return address(params);
    }
    default: return members(argument.kind, value);
  }
}

word recorded_arguments::key(const json &value)
{
  auto *const key = record<drv_match_spec_t>();
  key->partition_index = number<std::uint32_t>(value.at("partition_index"));
  key->key_bits = number<std::uint16_t>(value.at("key_bits"));
  key->key_bytes = number<std::uint16_t>(value.at("key_bytes"));
  key->priority = number<std::uint32_t>(value.at("priority"));
  const rows::table_info *const table = row_of_handle<rows::table_info>(rows::tables, scope_.table);
  if (table != nullptr && key->key_bytes != table->key_bytes) {
    throw trace_error("a key of " + std::to_string(key->key_bytes) + " bytes; those of " + table->name + " have " +
                      std::to_string(table->key_bytes));
  }
  key->key_value = bytes(value.at("value"), key->key_bytes);
  key->key_mask = bytes(value.at("mask"), key->key_bytes);
  return address(key);
}

word recorded_arguments::action(const json &value)
{
  auto *const action = record<drv_action_spec_t>();
  action->act_kinds = number<std::uint8_t>(value.at("act_kinds"));
  action->act_data.data_bits = number<std::uint16_t>(value.at("data_bits"));
  if ((action->act_kinds & (DRV_ACT_MEMBER | DRV_ACT_GROUP)) == 0) {
    const json &data = value.at("data");
    const std::size_t size =
        action_ != nullptr ? action_->data_bytes : data.get_ref<const std::string &>().size() / digits_of_byte;
    action->act_data.data_bytes = static_cast<std::uint16_t>(size);
    action->act_data.data = bytes(data, size);
  }
  const auto handle = [&](value_kind sort, const char *name) {
    return handles_.now(sort, scope_, number<std::uint32_t>(value.at(name)));
  };
  action->mbr_hdl = handle(value_kind::member_handle, "mbr_hdl");
  action->grp_hdl = handle(value_kind::group_handle, "grp_hdl");
  const json &list = value.at("resources");
  if (list.size() > DRV_ACTION_MAX_RES) throw trace_error("an action has more resources than there is room for");
  action->res_count = static_cast<std::uint32_t>(list.size());
  for (std::size_t i = 0; i < list.size(); ++i) fill_resource(list[i], action->res[i]);
  return address(action);
}

word recorded_arguments::all_resources(const json &list)
{
  auto *const all = record<drv_res_spec_t>(list.size() + 1);
  for (std::size_t i = 0; i < list.size(); ++i) fill_resource(list[i], all[i]);
  return address(all);
}

void recorded_arguments::fill_resource(const json &value, drv_res_spec_t &resource)
{
  resource.res_hdl = number<std::uint32_t>(value.at("res_hdl"));
  resource.res_index = number<std::uint32_t>(value.at("index"));
  resource.res_tag = number<std::uint32_t>(value.at("tag"));
  std::memcpy(resource.res_value.bytes, bytes(value.at("value"), sizeof resource.res_value), sizeof resource.res_value);
}

word recorded_arguments::members(value_kind kind, const json &value)
{
  std::uint8_t *const record = memory(sizeof(drv_meter_spec_t));
  for (const record_member &member : members_of(kind)) {
    const std::string name(member.name);
    const json &from = value.at(name);
    if (member.real) {
      const auto real = from.get<float>();
      std::memcpy(record + member.at, &real, sizeof real);
    } else if (member.size == 8) {
      const auto wide = number<std::uint64_t>(from);
      std::memcpy(record + member.at, &wide, sizeof wide);
    } else {
      const auto narrow = number<std::uint32_t>(from);
      std::memcpy(record + member.at, &narrow, sizeof narrow);
    }
  }
  return address(record);
}

std::uint8_t *recorded_arguments::bytes(const json &value, std::size_t size)
{
  const auto &text = value.get_ref<const std::string &>();
  if (text.size() != size * digits_of_byte) {
    throw trace_error(std::to_string(text.size()) + " hexadecimal digits, where " + std::to_string(size) +
                      " bytes have " + std::to_string(size * digits_of_byte));
  }
  std::uint8_t *const made = memory(std::max<std::size_t>(size, 1));
  for (std::size_t i = 0; i < size; ++i) {
    made[i] = static_cast<std::uint8_t>(digit_of(text[2 * i]) << 4 | digit_of(text[2 * i + 1]));
  }
  return made;
}

std::uint8_t *recorded_arguments::memory(std::size_t size)
{
  constexpr std::size_t unit = sizeof(std::max_align_t);
  memory_.push_back(std::make_unique<std::max_align_t[]>((size + unit - 1) / unit));
  return reinterpret_cast<std::uint8_t *>(memory_.back().get());
}

}  // namespace tarvex::trace
