// A call of any exported function by its row of the call table: the arguments are given by their kind. The shell, the
// tests, the fault walkers and the fuzzers all call through it.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ffi.h>

#include <array>
#include <cstdint>

#include "call_table.h"

namespace tarvex::calls {

/// How arguments of a kind are passed.
const argument_row &row_of(argument_kind kind);

/// Prepared once, it can be made any number of times with other arguments. It owns nothing, so that a failed assertion
/// may jump out of a call.
class raw_call {
 public:
  static constexpr std::size_t most_arguments = 12;

  /// Throws std::logic_error for a function that cannot be called so.
  explicit raw_call(const exported_function &function);
  raw_call(const raw_call &) = delete;
  raw_call &operator=(const raw_call &) = delete;

  const exported_function &function() const { return function_; }
  bool takes(argument_kind kind) const { return place_of(kind, 0) < function_.arguments.size(); }
  /// Where the n-th argument of a kind stands; the number of all arguments where the function takes none.
  std::size_t place_of(argument_kind kind, std::size_t nth) const;

  /// A number or an address, in a whole register: the callee looks at as many low bits as the argument has.
  void set(std::size_t place, std::uint64_t number);
  /// A record by value, which must live as long as the calls; or the address of anything else.
  void set(std::size_t place, const void *memory);
  /// The same for the n-th argument of a kind; passed over where the function takes none.
  raw_call &give(argument_kind kind, std::uint64_t number, std::size_t nth = 0);
  raw_call &give(argument_kind kind, const void *memory, std::size_t nth = 0);

  /// The result; of narrow results the low bits alone count. Throws std::logic_error where an argument was not given.
  std::uint64_t make();

 private:
  struct argument {
    std::uint64_t number = 0;
    void *place = nullptr;  // what libffi reads the argument from; null until it is given
  };

  const exported_function &function_;
  ffi_cif description_{};
  std::array<ffi_type *, most_arguments> types_{};
  std::array<argument, most_arguments> arguments_{};
};

}  // namespace tarvex::calls
