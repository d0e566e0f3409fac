// A call of any exported function by its row of the call table: the arguments are given by their kind.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ffi.h>

#include <array>
#include <cstdint>
#include <string>

#include "call_table.h"

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

/// Prepared once, it can be made any number of times with other arguments. Session and device are given already.
class function_call {
 public:
  function_call(const exported_function &function, const target &where);
  function_call(const function_call &) = delete;
  function_call &operator=(const function_call &) = delete;

  const exported_function &function() const { return function_; }
  bool takes(argument_kind kind) const { return find(kind, 0) != nullptr; }

  /// A number, for the n-th argument of a kind; passed over where the function takes none.
  function_call &give(argument_kind kind, std::uint64_t number, std::size_t nth = 0);
  /// Memory that a pointer points at, or that a record by value is copied from. It must live as long as the calls.
  function_call &give(argument_kind kind, const void *memory, std::size_t nth = 0);

  /// The result; of narrow results the low bits alone count.
  std::uint64_t make();
  /// Makes a call that gives a status; throws refused_error with `what` where it is not 0.
  void must(const std::string &what);

 private:
  static constexpr std::size_t most = 12;
  struct argument {
    std::uint64_t number = 0;
    void *place = nullptr;  // what libffi reads the argument from
    bool given = false;
  };

  argument *find(argument_kind kind, std::size_t nth);
  const argument *find(argument_kind kind, std::size_t nth) const;

  const exported_function &function_;
  ffi_cif description_{};
  std::array<ffi_type *, most> types_{};
  std::array<argument, most> arguments_{};
};

}  // namespace tarvex::shell
