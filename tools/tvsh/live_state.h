// The state of the live switch.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "invocation.h"
#include "switch_state.h"

namespace tarvex::shell {

struct live_reading {
  /// How many cells of each counter, meter and register that no entry carries are looked at, from the first on; and
  /// beyond them those that the shell wrote. The switch does not tell which ones there are.
  std::uint32_t cells = 4096;
};

/// Hands the whole state to a visitor. Throws refused_error.
void read_live_state(const invocation &call, const live_reading &how, state_visitor &to);

/// The cells of it alone: what counters, meters and registers hold that no entry carries.
void read_live_cells(const invocation &call, const live_reading &how, state_visitor &to);

/// What a person should know of such a reading, one sentence each: what only the shell's own writes tell, and what is
/// no part of it.
void tell_what_was_remembered(const invocation &call);

}  // namespace tarvex::shell
