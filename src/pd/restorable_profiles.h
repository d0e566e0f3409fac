// Action data tables and member actions of the profiles, for whoever meets them by handle. Generated from the
// catalogue.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "profile_states.h"

namespace tarvex::pd {

struct restorable_profile {
  std::uint32_t action_data_table;
  const std::uint32_t *actions;
  std::size_t action_count;
};

/// In the order of profile_states.
extern const restorable_profile restorable_profiles[profile_count];

}  // namespace tarvex::pd
