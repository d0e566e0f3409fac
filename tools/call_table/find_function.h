// Exported functions by what they do, and for which row.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <span>

#include "call_table.h"

namespace tarvex::calls {

/// All functions of a family.
std::span<const exported_function *const> functions_of(family_id family);

bool takes(const exported_function &function, argument_kind kind);

/// The function of a family for a row, which is known by its address: a table, a profile, an action or its use, a
/// resource or a hash calculation. `with` is one of its arguments, where a family has functions for members and
/// functions for groups. Null where there is none.
const exported_function *find_function(family_id family, const void *row, std::optional<argument_kind> with = {});

/// Throws std::logic_error.
[[noreturn]] void lacks_function(family_id family);

/// Of a family with one function at most. Throws std::logic_error where there is none.
const exported_function &function_for(family_id family);

/// The same where it must exist: throws std::logic_error where it does not.
template <typename Row>
const exported_function &function_for(family_id family, const Row &row, std::optional<argument_kind> with = {})
{
  const exported_function *const found = find_function(family, &row, with);
  if (found == nullptr) lacks_function(family);
  return *found;
}

}  // namespace tarvex::calls
