// What the handles of driver calls mean: the rows of the catalogue by handle, and the states of the action profiles by
// their address.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "fields.h"
#include "tarvex_platform/driver.h"

namespace tarvex::trace {

/// A row that a handle stands for; what it is not of is null.
struct handle_meaning {
  std::string_view name;
  const rows::table_info *table = nullptr;      // of a match table or an action
  const rows::profile_info *profile = nullptr;  // of an action data or selector table, of an indirect table
  const rows::action_info *action = nullptr;
  const rows::resource_info *resource = nullptr;
};

/// Null for a handle that is none of the catalogue.
const handle_meaning *meaning_of(std::uint32_t handle);

/// As fields.h has them, made once.
std::span<const shell::shown_field> fields_of(const rows::table_info &table);
std::span<const shell::shown_field> fields_of(const rows::action_info &action);

/// The states that the library had made last, in the order of the profiles.
void remember_state(ms_state *state);
ms_state *state_of(std::size_t profile);
/// Null for an address that is no state's.
const rows::profile_info *profile_of(const void *state);

}  // namespace tarvex::trace
