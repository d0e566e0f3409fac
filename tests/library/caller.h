// Calls any exported function by its row of the call table: each argument has a value of its own, junk stands above
// every narrow one, and pointers point at blocks whose bytes are watched.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "raw_call.h"

namespace tarvex::test {

using calls::argument_kind;
using calls::exported_function;

class call {
 public:
  using block = std::vector<std::uint8_t>;

  explicit call(const exported_function &function);
  call(call &&) = default;
  call(const call &) = delete;
  call &operator=(const call &) = delete;

  const exported_function &function() const { return function_; }
  bool takes(argument_kind kind) const;
  /// The scalar or address that is given; the n-th of its kind. 0 where the function does not take one.
  std::uint64_t value(argument_kind kind, std::size_t nth = 0) const;
  void give(argument_kind kind, std::uint64_t value);
  /// The block that a pointer points at, and the value as it stands there.
  block &memory(argument_kind kind);
  const block &memory(argument_kind kind) const;
  void fill(argument_kind kind, std::span<const std::uint8_t> content, std::size_t offset = 0);

  /// All blocks, in the order of the arguments; empty ones for numbers.
  std::span<const block> blocks() const { return blocks_; }

  /// Makes the call on a stack filled with a pattern.
  std::uint64_t run(std::uint8_t stack_pattern = 0xa5);
  /// Whether the library is at work.
  static inline bool under_way = false;

  /// The blocks as they must stand after the call: as they were before, but for what is noted with expect().
  void expect(argument_kind kind, std::span<const std::uint8_t> content, std::size_t offset = 0);
  void expect_number(argument_kind kind, std::uint64_t number, std::size_t size);
  /// Where blocks stand otherwise, in words; empty where they do not.
  std::string unexpected_bytes() const;

 private:
  std::size_t index_of(argument_kind kind, std::size_t nth = 0) const;

  const exported_function &function_;
  std::vector<std::uint64_t> values_;
  std::vector<block> blocks_;
  std::vector<block> expected_;
};

/// What stands before every name of the pipeline but those of the decoders: "p4_pd_NAME_".
const std::string &prefix();
/// The function of a full name; fails the program where there is none.
const exported_function &function_named(const std::string &name);
/// Calls a function by its name without the prefix.
template <typename Result = std::uint32_t, typename... Arguments>
Result invoke(const std::string &name, Arguments... arguments)
{
  const calls::address function = function_named(prefix() + name).function;
  return reinterpret_cast<Result (*)(Arguments...)>(reinterpret_cast<void *>(function))(arguments...);
}
/// Where bytes differ, in words.
std::string difference(std::span<const std::uint8_t> expected, std::span<const std::uint8_t> actual);
std::string hex(std::span<const std::uint8_t> content);

}  // namespace tarvex::test
