// The library's only state: the member-selector states of the action profiles.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// Names in the order in which the states are created, logged and dropped. Generated from the catalogue.
extern const std::span<const char *const> profile_names;

/// Null until the library is started; written once. At least as many as there are names.
extern ms_state *profile_states[];

template <const profile_row &P>
[[gnu::always_inline]] inline ms_state *state_of()
{
  return profile_states[P.state];
}

}  // namespace tarvex::pd
