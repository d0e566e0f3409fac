// What placement data says of an entry or a member.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>

#include "switch_state.h"

namespace tarvex::shell {

/// The entry of a table. Throws refused_error.
table_entry placed_entry_of(const table_info &table, std::span<const std::byte> placement, const target &where);

/// The member of a profile. Throws refused_error.
profile_member placed_member_of(const profile_info &profile, std::span<const std::byte> placement, const target &where);

}  // namespace tarvex::shell
