// A call of any exported function with arguments made of bytes, in blocks of exactly the room that the function may
// use, over the hostile driver. Each thread may make calls of its own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

#include "hostile_driver.h"
#include "raw_call.h"

namespace tarvex::fuzz {

using calls::argument_kind;
using calls::exported_function;

/// Memory of exactly its size, so that the sanitizer sees a step beyond either end, even of none at all.
struct block {
  explicit block(std::size_t room) : place(new std::uint8_t[room]()), size(room) {}
  explicit block(std::span<const std::uint8_t> content) : block(content.size())
  {
    std::copy(content.begin(), content.end(), place.get());
  }
  std::span<std::uint8_t> all() const { return {place.get(), size}; }

  std::unique_ptr<std::uint8_t[]> place;
  std::size_t size;
};

class library_call {
 public:
  library_call(const exported_function &function, byte_source &input);

  /// Makes the call with an answering driver; false where it ended in the assertion that a broken reply leads to. A
  /// text is written twice, the second time into a block of just its size. The driver's fingerprint takes in what comes
  /// out as well.
  bool make(std::span<const std::uint8_t> answers);

  bool takes(argument_kind kind) const { return call_.takes(kind); }
  /// Another number, or other memory of the caller's, for an argument.
  template <typename T>
  void give(argument_kind kind, T value)
  {
    call_.give(kind, value);
  }
  /// What the n-th argument of a kind points at.
  std::span<std::uint8_t> memory(argument_kind kind, std::size_t nth = 0) const;

 private:
  using family_id = calls::family_id;

  std::uint64_t number_for(argument_kind kind, byte_source &input);
  std::size_t room_for(argument_kind kind) const;
  std::size_t register_room() const;
  block block_for(argument_kind kind, byte_source &input);
  std::vector<std::uint32_t> sound_handles() const;
  std::uint64_t number(argument_kind kind) const;
  bool run(std::span<const std::uint8_t> answers);
  void note_results() const;

  const exported_function &function_;
  calls::raw_call call_;
  std::vector<std::uint64_t> numbers_;
  std::vector<block> blocks_;
  std::vector<block> keys_and_data_;  // what driver records among the arguments point at
  register_shape shape_;
  std::uint64_t result_ = 0;
};

/// Where a thread's printing goes: nowhere, unless it is told otherwise.
int &print_descriptor();

/// One of the functions that pass a filter, which keeps their list.
template <typename Filter>
const exported_function &pick_function(byte_source &input, Filter filter)
{
  static const auto list = [&] {
    std::vector<const exported_function *> found;
    for (const exported_function &each : calls::functions)
      if (filter(each)) found.push_back(&each);
    return found;
  }();
  return *input.one_of(list);
}

}  // namespace tarvex::fuzz
