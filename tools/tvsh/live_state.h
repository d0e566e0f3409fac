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

/// Something refers to a member or group that came while the switch was read, behind the place of its reading.
struct changed_meanwhile : shell_error {
  explicit changed_meanwhile(std::uint32_t handle)
      : shell_error(exit_code::refused, "the switch changed while it was read: member or group " +
                                            std::to_string(handle) + " came meanwhile; try again")
  {
  }
};

/// Makes something of readings, each begun anew where the switch changed: a busy one holds still between two changes.
template <typename Reading>
auto read_until_unchanged(Reading reading)
{
  constexpr unsigned most_readings = 10;
  for (unsigned made = 1;; ++made) {
    try {
      return reading();
    } catch (const changed_meanwhile &) {
      if (made == most_readings) throw;
    }
  }
}

/// Hands the whole state to a visitor. Throws refused_error, and changed_meanwhile.
void read_live_state(const invocation &call, const live_reading &how, state_visitor &to);

/// The cells of it alone: what counters, meters and registers hold that no entry carries.
void read_live_cells(const invocation &call, const live_reading &how, state_visitor &to);

/// What a person should know of such a reading, one sentence each: what only the shell's own writes tell, and what is
/// no part of it.
void tell_what_was_remembered(const invocation &call);

}  // namespace tarvex::shell
