// Action data tables and member actions of the profiles, for whoever meets them by handle. Generated from the
// catalogue.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

namespace tarvex::pd {

struct restorable_profile {
  std::uint32_t action_data_table;
  std::span<const std::uint32_t> actions;
};

/// In the order of profile_states.
extern const std::span<const restorable_profile> restorable_profiles;

}  // namespace tarvex::pd
