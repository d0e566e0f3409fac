// Every exported function of the library by name, with its address, the kind of each argument and the rows that it is
// of. Whoever goes over all functions (tests, fault walkers, fuzzers, the shell) goes over this table, so that nobody
// lists functions by hand. It holds no logic and is no part of the library.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <type_traits>

#include "function_kinds.h"
#include "pipeline_rows.h"

namespace tarvex::calls {

using namespace rows;
using tarvex::match_kind;
using tarvex::resource_form;
using tarvex::resource_kind;
using tarvex::result_kind;
using tarvex::table_kind;

/// How an argument is passed: in a register, of 32 bits or fewer or of 64, or as a record by value.
enum class argument_form : std::uint8_t { number, word, pointer, record };

struct argument_row {
  argument_kind kind;
  argument_form form;
  std::uint16_t size;  // of the record, by value or pointed at; 0 where the row or the driver decides
};

/// An argument of a C type; {key} and {params} structures are pointers to void here.
template <typename T>
constexpr argument_row passed_as(argument_kind kind)
{
  using pointee = std::remove_pointer_t<T>;
  if constexpr (std::is_pointer_v<T> && !std::is_function_v<pointee>) {
    if constexpr (!std::is_void_v<pointee> && requires { sizeof(pointee); }) {
      return {kind, argument_form::pointer, sizeof(pointee)};
    } else {
      return {kind, argument_form::pointer, 0};
    }
  } else if constexpr (std::is_class_v<T>) {
    return {kind, argument_form::record, sizeof(T)};
  } else {
    return {kind, sizeof(T) > sizeof(std::uint32_t) ? argument_form::word : argument_form::number, sizeof(T)};
  }
}

using address = void (*)();

struct exported_function {
  const char *name;
  address function;
  family_id family;
  result_kind result;
  std::span<const argument_kind> arguments;
  const table_info *table;      // null where the function is of no table; a profile's is its indirect table
  const profile_info *profile;  // of a profile's function
  const use_info *use;
  const action_info *action;
  const resource_info *resource;
  const hash_info *hash;
};

// Generated. Kinds of arguments stand in the order of their enumerators.
extern const std::span<const argument_row> arguments;
extern const std::span<const exported_function> functions;

}  // namespace tarvex::calls
