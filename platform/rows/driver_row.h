// The driver's functions as data. The rows themselves are generated from driver.toml (driver_functions.h).
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "driver_kinds.h"

// Whoever defines these functions does so for everybody.
#pragma GCC visibility push(default)
#include "tarvex_platform/driver.h"
#pragma GCC visibility pop

namespace tarvex::driver {

inline constexpr std::uint8_t no_argument = 0xff;

struct argument_row {
  std::string_view name;
  value_kind kind;
  direction way;
  std::uint8_t size;                  // of the argument, or of the number that comes out there
  std::uint8_t room = no_argument;    // the argument that says for how many elements there is room
  std::uint8_t filled = no_argument;  // the argument that says how many have come out
};

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
};

/// The row of each function.
template <auto Function>
inline constexpr call_row row_of{};

template <auto... Functions>
struct function_list {
};

template <auto... Functions>
constexpr std::array<std::string_view, sizeof...(Functions)> names_of(function_list<Functions...>)
{
  return {row_of<Functions>.name...};
}

template <typename Function>
struct result_of_type;
template <typename Result, typename... Arguments>
struct result_of_type<Result (*)(Arguments...)> {
  using type = Result;
};
template <auto Function>
using result_of = typename result_of_type<decltype(Function)>::type;

}  // namespace tarvex::driver
