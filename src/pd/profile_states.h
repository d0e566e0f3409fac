// The library's only state: the member-selector states of the five action profiles.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

inline constexpr std::size_t profile_count = 5;

/// Names in the order in which the states are created, logged and dropped. Generated from the catalogue.
extern const char *const profile_names[profile_count];

/// Null until p4_pd_tarvex_switch_init has run; written once.
extern ms_state *profile_states[profile_count];

template <const profile_row &P>
[[gnu::always_inline]] inline ms_state *state_of()
{
  return profile_states[P.state];
}

}  // namespace tarvex::pd
