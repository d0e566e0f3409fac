// A double of the switch driver: it keeps every imported call with deep copies of its records, and answers as told.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "tarvex_platform/driver.h"

namespace tarvex::test {

using bytes = std::vector<std::uint8_t>;

/// An argument as the driver saw it: the word or address, and a copy of the record it points at. Pointers within a
/// record stand as 1, or 0 where they are null; what they point at follows the record.
struct recorded_argument {
  std::uint64_t word = 0;
  bytes record;
  std::size_t room = 0;  // bytes that the driver may write there: a number, or a record without pointers
};

struct recorded_call {
  std::string function;
  std::vector<recorded_argument> arguments;

  /// What an argument points at, for an answer to write to.
  template <typename T>
  T &at(std::size_t argument) const
  {
    return *reinterpret_cast<T *>(arguments[argument].word);
  }
};

bytes copy_of(const drv_match_spec_t *key);
bytes copy_of(const drv_action_spec_t *action);
bytes copy_of(const drv_act_data_t *data);
bytes copy_of(const char *text);

/// A block of bf_sys_calloc as it was asked for; the address is null where it was refused.
struct asked_block {
  std::size_t count, size;
  const void *address;
};

class recorder {
 public:
  using answer_function = std::function<std::uint64_t(const recorded_call &)>;

  std::vector<recorded_call> calls;
  answer_function answer;     // status of each call; 0 where there is none
  bool quiet = false;         // neither record nor answer: every call gives 0
  unsigned blocks_taken = 0;  // of bf_sys_calloc
  unsigned blocks_given_back = 0;
  std::vector<asked_block> asked_blocks;
  std::vector<const void *> returned_blocks;
  unsigned refused_block = 0;  // the n-th block from now on is refused, it alone; 0 for none
  unsigned inside = 0;         // calls under way: what is allocated then is not the library's

  /// Forgets calls and answers.
  void reset();
  std::uint64_t note(recorded_call call);
};

recorder &driver();

/// The states that p4_pd_ms_init_state gives out, in turn, as long as no answer is told.
ms_state *state_of_profile(std::size_t index);

/// Records that the driver fills through pointers within; a test that fills them knows them by name.
template <typename T>
constexpr bool holds_pointers = std::is_same_v<T, drv_stful_query_t> || std::is_same_v<T, drv_client_callbacks_t>;

template <typename T>
recorded_argument argument_of(const T &value)
{
  if constexpr (std::is_pointer_v<T>) {
    recorded_argument argument{reinterpret_cast<std::uint64_t>(value), {}};
    using pointee = std::remove_pointer_t<T>;
    if constexpr (std::is_arithmetic_v<pointee> && !std::is_const_v<pointee>) {
      if (value != nullptr) argument.room = sizeof(pointee);
    }
    if constexpr (requires { copy_of(value); }) {
      if (value != nullptr) argument.record = copy_of(value);
    } else if constexpr (requires { sizeof(*value); } && std::is_class_v<std::remove_pointer_t<T>>) {
      const auto *first = reinterpret_cast<const std::uint8_t *>(value);
      if (value != nullptr) argument.record.assign(first, first + sizeof(*value));
      if (value != nullptr && !std::is_const_v<pointee> && !holds_pointers<pointee>) argument.room = sizeof(*value);
    }
    return argument;
  } else if constexpr (std::is_class_v<T>) {
    const auto *first = reinterpret_cast<const std::uint8_t *>(&value);
    return {0, bytes(first, first + sizeof value)};
  } else {
    return {static_cast<std::uint64_t>(value), {}};
  }
}

/// Lives as long as the recorder is at work.
struct recording {
  recording() { ++driver().inside; }
  recording(const recording &) = delete;
  recording &operator=(const recording &) = delete;
  ~recording() { --driver().inside; }
};

/// What every imported function does here.
template <typename Result, typename... Arguments>
Result recorded(const char *function, const Arguments &...arguments)
{
  const recording inside;
  const std::uint64_t answer = driver().quiet ? 0 : driver().note({function, {argument_of(arguments)...}});
  if constexpr (std::is_pointer_v<Result>) {
    return reinterpret_cast<Result>(answer);
  } else {
    return static_cast<Result>(answer);
  }
}

}  // namespace tarvex::test
