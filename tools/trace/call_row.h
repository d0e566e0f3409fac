// A driver function as data: its name, and of each argument the name and what it carries, deduced from the type.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

// Whoever defines these functions does so for everybody.
#pragma GCC visibility push(default)
#include "tarvex_platform/driver.h"
#pragma GCC visibility pop

namespace tarvex::trace {

enum class value_kind : std::uint8_t {
  number,
  handle,  // of the catalogue
  device_target,
  text,
  state,
  match_spec,
  action_spec,
  action_data,
  resources,  // as many as the argument behind it says
  meter,
  wred,
  counter,
  register_value,
  register_queries,
  idle_params,  // by value
  capture_sizes,
  trigger,
  callback,
  pointer,
  // what comes out
  number_out,
  wide_number_out,
  signed_number_out,
  resource_list_out,  // as many as the argument ahead of it says
};

struct argument_row {
  std::string_view name;
  value_kind kind;
  std::uint8_t size;  // of a number, in bytes
};

/// What a call does, as far as its name and arguments tell.
enum class call_effect : std::uint8_t { read, write, other };

enum class result_kind : std::uint8_t { status, state, pointer, none };

inline constexpr std::size_t most_arguments = 9;

struct call_row {
  std::string_view name;
  result_kind result;
  call_effect effect;
  std::uint8_t count;
  std::array<argument_row, most_arguments> rows;

  constexpr std::span<const argument_row> arguments() const { return {rows.data(), count}; }
  /// Where an argument stands; the number of all where there is none of the name.
  constexpr std::size_t place_of(std::string_view argument) const
  {
    std::size_t at = 0;
    while (at < count && rows[at].name != argument) ++at;
    return at;
  }
  constexpr bool has(value_kind kind) const
  {
    for (const argument_row &row : arguments()) {
      if (row.kind == kind) return true;
    }
    return false;
  }
};

constexpr bool holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

/// Handles that the driver makes are no rows of the catalogue.
constexpr bool names_a_row(std::string_view argument)
{
  if (!argument.ends_with("_hdl")) return false;
  for (const std::string_view made : {"sess_hdl", "entry_hdl", "mbr_hdl", "grp_hdl", "client_hdl", "first_hdl"}) {
    if (argument.ends_with(made)) return false;
  }
  return true;
}

template <typename T>
constexpr value_kind kind_of(std::string_view argument)
{
  using enum value_kind;
  using plain = std::remove_const_t<std::remove_pointer_t<T>>;
  if constexpr (std::is_integral_v<T>) {
    if (argument == "dev_tgt") return device_target;
    return names_a_row(argument) ? handle : number;
  } else if constexpr (std::is_same_v<plain, pd_idle_params_t>) {
    return idle_params;
  } else if constexpr (std::is_function_v<plain>) {
    return callback;
  } else if constexpr (std::is_same_v<plain, char>) {
    return text;
  } else if constexpr (std::is_same_v<plain, ms_state>) {
    return state;
  } else if constexpr (std::is_same_v<plain, drv_match_spec_t>) {
    return match_spec;
  } else if constexpr (std::is_same_v<plain, drv_action_spec_t>) {
    return action_spec;
  } else if constexpr (std::is_same_v<plain, drv_act_data_t>) {
    return action_data;
  } else if constexpr (std::is_same_v<plain, drv_res_spec_t>) {
    return resources;
  } else if constexpr (std::is_same_v<plain, drv_meter_spec_t>) {
    return meter;
  } else if constexpr (std::is_same_v<plain, drv_wred_spec_t>) {
    return wred;
  } else if constexpr (std::is_same_v<plain, drv_stat_data_t>) {
    return counter;
  } else if constexpr (std::is_same_v<plain, drv_stful_spec_t>) {
    return register_value;
  } else if constexpr (std::is_same_v<plain, drv_stful_query_t>) {
    return register_queries;
  } else if constexpr (std::is_same_v<plain, snap_capture_sizes_t>) {
    return capture_sizes;
  } else if constexpr (std::is_same_v<plain, pd_res_spec_t *>) {
    return resource_list_out;
  } else if constexpr (std::is_same_v<plain, std::uint32_t>) {
    return number_out;
  } else if constexpr (std::is_same_v<plain, std::uint64_t>) {
    return wide_number_out;
  } else if constexpr (std::is_same_v<plain, std::int32_t>) {
    return signed_number_out;
  } else {
    if (argument == "state" || argument == "argument") return state;  // as group functions take it
    return argument == "value_rec" || argument == "mask_rec" ? trigger : pointer;
  }
}

constexpr bool comes_out(value_kind kind) { return kind >= value_kind::number_out; }

constexpr call_effect effect_of(const call_row &row)
{
  for (const std::string_view part : {"get_", "_get", "query", "read_", "match_spec_to"}) {
    if (holds(row.name, part)) return call_effect::read;
  }
  for (const std::string_view part : {"bf_drv", "bf_sys", "_sync", "notif", "hit_state", "ms_init", "destroy"}) {
    if (holds(row.name, part)) return call_effect::other;
  }
  if (row.name == "p4_pd_ms_mbr_apply_to_grps") return call_effect::write;
  // What hangs on memory or code of the program cannot be told to another one.
  return row.has(value_kind::callback) || row.has(value_kind::pointer) ? call_effect::other : call_effect::write;
}

/// Whether a record of this kind is filled by the call, not read by it.
constexpr bool is_answer(const call_row &row, value_kind kind)
{
  if (comes_out(kind)) return true;
  const bool record = kind >= value_kind::match_spec && kind <= value_kind::register_queries;
  return record && row.effect == call_effect::read && row.name != "pipe_mgr_match_spec_to_ent_hdl";
}

template <typename Result, typename... Arguments>
constexpr call_row row_for(Result (*)(Arguments...), std::string_view name,
                           [[maybe_unused]] std::array<std::string_view, sizeof...(Arguments)> names)
{
  static_assert(sizeof...(Arguments) <= most_arguments);
  call_row row{name, result_kind::status, call_effect::other, sizeof...(Arguments), {}};
  if constexpr (std::is_void_v<Result>) row.result = result_kind::none;
  if constexpr (std::is_same_v<Result, ms_state *>) row.result = result_kind::state;
  if constexpr (std::is_same_v<Result, void *>) row.result = result_kind::pointer;
  [[maybe_unused]] std::size_t at = 0;
  ((row.rows[at] = {names[at], kind_of<Arguments>(names[at]), sizeof(Arguments)}, ++at), ...);
  row.effect = effect_of(row);
  return row;
}

/// The row of each function, generated from the driver's header.
template <auto Function>
inline constexpr call_row row_of{};

template <auto... Functions>
struct function_list {
};

/// An argument in a word, as calls are traced and replayed: a number, an address, or the address of a record that
/// travels by value.
using word = std::uint64_t;

template <typename T>
word to_word(const T &argument)
{
  if constexpr (std::is_integral_v<T>) {
    return static_cast<word>(argument);
  } else if constexpr (std::is_pointer_v<T>) {
    return reinterpret_cast<std::uintptr_t>(argument);
  } else {
    return reinterpret_cast<std::uintptr_t>(&argument);
  }
}

template <typename T>
T from_word(word value)
{
  if constexpr (std::is_integral_v<T>) {
    return static_cast<T>(value);
  } else if constexpr (std::is_pointer_v<T>) {
    return reinterpret_cast<T>(static_cast<std::uintptr_t>(value));
  } else {
    return *reinterpret_cast<const T *>(static_cast<std::uintptr_t>(value));
  }
}

}  // namespace tarvex::trace
