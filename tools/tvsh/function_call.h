// A call of any exported function by its row of the call table, on what the shell works on.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "raw_call.h"

namespace tarvex::shell {

using calls::argument_kind;
using calls::exported_function;

/// What the shell works on.
struct target {
  std::uint32_t session = 1;
  std::uint32_t device = 0;
  std::uint16_t pipe = 0xffff;

  std::uint64_t dev_tgt() const { return device | std::uint64_t{pipe} << 32; }
};

/// Session and device are given already.
class function_call : private calls::raw_call {
 public:
  function_call(const exported_function &function, const target &where);

  using calls::raw_call::function;
  using calls::raw_call::make;
  using calls::raw_call::takes;

  /// A number or memory, for the n-th argument of a kind; passed over where the function takes none.
  template <typename Value>
  function_call &give(argument_kind kind, Value value, std::size_t nth = 0)
  {
    calls::raw_call::give(kind, value, nth);
    return *this;
  }

  /// Makes a call that gives a status.
  std::uint32_t status() { return static_cast<std::uint32_t>(make()); }
  /// Makes a call that gives a status; throws refused_error with `what` where it is not 0.
  void must(const std::string &what);
};

}  // namespace tarvex::shell
