// What the library must do, written plainly and slowly: which functions there are, with which arguments, which driver
// calls each makes, and the bytes of every record. It shares nothing with the library but the rows of the call table.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "caller.h"
#include "recorder.h"

namespace tarvex::test {

/// An argument of a driver call: one of the function's own, cut as its kind wants, or one of these.
enum class derived : std::uint8_t {
  table,
  action_data_table,
  selector_table,
  action,         // handle of the action
  action_record,  // parameters and resources; a member or group where the function takes one
  member_record,  // parameters alone
  empty_key,      // zeroed, with the table's sizes
  empty_action,   // zeroed, with room for 28 bytes of data
  no_action,      // zeroed whole
  empty_data,     // zeroed, with room for 28 bytes
  untold_data,    // likewise, but for the size
  device,         // low 8 bits of the device or the target
  state,          // of the profile
  answered,       // what the first call gave
  zero,
  one,
  local,  // a place on the library's stack
  untouched_target,
  target_device,  // low 32 bits of the target
  resource,       // handle of a counter, meter or register in its own operations
  hardware_bit,   // of the flags
  stat_record,    // 16 bytes, from the caller's counter value
  stat_answer,    // a place for one
  meter_record,   // 56 bytes, from the caller's meter value
  meter_answer,
  meter_resource,  // the same as a resource of an entry, 72 bytes
  wred_record,
  wred_answer,
  register_slot,  // 0 or 1 in the first of 8 bytes
  register_resource,
  digest,
  value_set,
  parser_device,
  parser_scope,
  parser_index,
  parser_sub_index,
  calc,
  input_list,  // handle for the caller's number
  algorithm,
};

struct term {
  constexpr term(argument_kind k) : from_caller(true), kind(k) {}
  constexpr term(derived d) : from_caller(false), other(d) {}

  bool from_caller;
  argument_kind kind{};
  derived other{};
};

struct driver_call {
  const char *function;
  std::vector<term> arguments;
  bool ignored = false;     // its status is not looked at
  bool on_request = false;  // made with bit 0 of the flags alone
};

/// The rows that a function exists for, one each.
enum class per : std::uint8_t {
  pipeline,
  table,
  keyed_table,
  masked_table,  // ternary or lpm
  direct_table,
  indirect_table,
  idle_table,
  keyed_use,  // an action of a direct table with a key
  default_use,
  action_with_parameters,
  profile,
  member_use,  // an action of a profile
  direct_counter,
  indexed_counter,
  direct_meter,
  indexed_meter,
  wred,
  register_,
  hash,
  digest,
  value_set,
  unit,  // bytes and packets
};
std::size_t count_of(per rows);

/// One line of the interface: a function that exists for many rows.
struct operation {
  calls::family_id family;
  const char *name;  // with {table}, {profile} and {action}; {direct} or {indexed} for a resource, and so on
  per rows;
  std::vector<argument_kind> arguments;  // less those that the row has no use for
  std::vector<driver_call> series;
};

extern const std::vector<operation> operations;
/// The direct meter of the action that a function writes; null where it has none.
const calls::resource_use_info *direct_meter_of(const exported_function &function);
const operation *operation_of(const exported_function &function);
std::vector<argument_kind> arguments_of(const operation &operation, const exported_function &function);

/// First number that the driver gives out in a test; further ones of a series follow on.
constexpr std::uint32_t first_answer = 0xd00df00d;
/// Stands for an address that the library chooses.
constexpr std::uint64_t anywhere = 0x10ca1;
/// The driver calls that one call must make when none fails.
std::vector<driver_call> series_of(const operation &operation, const call &call);
/// The same with their arguments; `answered` is what the first gave.
std::vector<recorded_call> expected_calls(const operation &operation, const call &call, std::uint32_t answered);
/// Where two series differ, in words; empty where they do not. A function's name ends the message.
std::string difference(const std::vector<recorded_call> &expected, const std::vector<recorded_call> &actual);

bytes expected_key(const call &call);
bytes expected_action(const call &call);
bytes expected_member(const call &call);

/// An argument of a resource or a service, with its record.
recorded_argument resource_argument(derived kind, const call &call);
/// Bytes of the record that a driver call fills; 0 where it fills none.
std::size_t answer_size(const term &term);
/// The caller's record for what the driver put into its own.
bytes value_read(derived kind, const bytes &record);

/// A key structure as read back from bytes in key order, with masks and prefix lengths or without.
bytes key_structure(const calls::table_info &table, const bytes &value, const bytes &mask,
                    std::uint32_t partition_index, bool with_masks);
/// A parameter structure as read back from 28 bytes of data and a list of resources.
bytes parameter_structure(const calls::action_info &action, const bytes &data, const std::vector<pd_res_spec_t> &list);

/// The source file that an assertion tells, by its folder.
std::string source_of(const std::string &folder);

/// Number of `size` bytes at `at`, in host order.
std::uint64_t number_at(std::span<const std::uint8_t> structure, std::size_t at, std::size_t size);

}  // namespace tarvex::test
