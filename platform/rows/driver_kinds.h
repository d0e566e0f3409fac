// Kinds of the driver's functions and arguments, each with its word in driver.toml, which is the enumerator's name.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "words.h"

namespace tarvex::driver {

/// What an argument carries.
enum class value_kind : std::uint8_t {
  number,
  signed_number,
  device,
  device_target,
  handle,        // of a row of the pipeline
  entry_handle,  // these five are made by the driver
  member_handle,
  group_handle,
  value_set_handle,
  snapshot_handle,
  text,
  state,  // of an action profile, in the member-selector service
  match_spec,
  action_spec,
  action_data,
  resources,
  meter,
  wred,
  counter,
  register_value,
  register_queries,
  idle_params,
  capture_sizes,
  trigger,
  resource_list,  // stays the driver's
  callback,
  // Addresses whose contents only the driver or the library's caller knows.
  cookie,
  client_callbacks,
  document,
  digest_message,
  placement,
  capture,
  block,
};

constexpr bool is_made_handle(value_kind kind)
{
  return kind >= value_kind::entry_handle && kind <= value_kind::snapshot_handle;
}
constexpr bool is_opaque(value_kind kind) { return kind >= value_kind::cookie; }

enum class direction : std::uint8_t { in, out, inout };

/// What a call does to the switch. Rows that are `callback` are no functions of the driver, but types of functions.
enum class call_effect : std::uint8_t { reads, writes, neither, callback };

enum class result_kind : std::uint8_t { status, state, block, nothing };

}  // namespace tarvex::driver

template <>
inline constexpr auto tarvex::words<tarvex::driver::value_kind> =
    std::to_array<std::string_view>({"number",           "signed_number",  "device",
                                     "device_target",    "handle",         "entry_handle",
                                     "member_handle",    "group_handle",   "value_set_handle",
                                     "snapshot_handle",  "text",           "state",
                                     "match_spec",       "action_spec",    "action_data",
                                     "resources",        "meter",          "wred",
                                     "counter",          "register_value", "register_queries",
                                     "idle_params",      "capture_sizes",  "trigger",
                                     "resource_list",    "callback",       "cookie",
                                     "client_callbacks", "document",       "digest_message",
                                     "placement",        "capture",        "block"});
template <>
inline constexpr auto tarvex::words<tarvex::driver::direction> = std::to_array<std::string_view>({"in", "out",
                                                                                                  "inout"});
template <>
inline constexpr auto tarvex::words<tarvex::driver::call_effect> =
    std::to_array<std::string_view>({"reads", "writes", "neither", "callback"});
template <>
inline constexpr auto tarvex::words<tarvex::driver::result_kind> =
    std::to_array<std::string_view>({"status", "state", "block", "nothing"});
