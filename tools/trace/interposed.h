// The definitions that the interposer exports are calls of a template over the function; each goes to the driver by a
// pointer of its own, which a trace that begins turns to the road past the listener.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>

#include "traced_call.h"

namespace tarvex::trace {

/// The definition behind the interposer's; ends the program, saying so, where there is none.
void *require_next(std::string_view name);
/// Keeps a state that the library had made.
void remember_state(ms_state *state);

template <auto Function, typename = decltype(Function)>
struct interposed;

template <auto Function, typename Result, typename... Arguments>
struct interposed<Function, Result (*)(Arguments...)> {
  using function = Result (*)(Arguments...);

  static function next()
  {
    function found = next_.load(std::memory_order_relaxed);
    if (found == nullptr) {
      found = reinterpret_cast<function>(require_next(row_of<Function>.name));
      next_.store(found, std::memory_order_relaxed);
    }
    return found;
  }

  /// The road of a function that has not been called yet.
  static Result first_call(Arguments... arguments)
  {
    const function found = next();
    function self = &first_call;
    target.compare_exchange_strong(self, found, std::memory_order_relaxed);
    return found(arguments...);
  }

  static Result traced(Arguments... arguments)
  {
    const std::array<word, sizeof...(Arguments)> words = {to_word(arguments)...};
    traced_call told(row_of<Function>, words);
    if constexpr (std::is_void_v<Result>) {
      next()(arguments...);
      told.left(0);
    } else {
      const Result result = next()(arguments...);
      told.left(to_word(result));
      return result;
    }
  }

  static void turn(bool on)
  {
    const function found = next_.load(std::memory_order_relaxed);
    target.store(on ? &traced : found == nullptr ? &first_call : found, std::memory_order_relaxed);
  }

  static inline constinit std::atomic<function> target = &first_call;

 private:
  static inline constinit std::atomic<function> next_ = nullptr;
};

/// What each exported definition does.
template <auto Function, typename... Arguments>
[[gnu::always_inline]] inline auto driver_call(Arguments... arguments)
{
  const auto to = interposed<Function>::target.load(std::memory_order_relaxed);
  if constexpr (row_of<Function>.result == result_kind::state) {
    ms_state *const made = to();
    remember_state(made);
    return made;
  } else {
    return to(arguments...);
  }
}

}  // namespace tarvex::trace
