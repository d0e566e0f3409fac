// A call of the driver as its row and a word for each argument: a number, an address, or the address of a record that
// travels by value.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <type_traits>

#include "driver_functions.h"

namespace tarvex::trace {

using driver::argument_row;
using driver::call_effect;
using driver::call_row;
using driver::direction;
using driver::driver_functions;
using driver::function_list;
using driver::result_kind;
using driver::row_of;
using driver::value_kind;

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
