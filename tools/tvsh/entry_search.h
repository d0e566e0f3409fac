// Which entry a command means: by its handle, or by its key.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "entry_words.h"
#include "function_call.h"

namespace tarvex::shell {

/// Words beside the key that name an entry of a table: handle, and priority where entries have one.
std::span<const std::string_view> entry_name_words(const table_info &table);

/// Throws argument_error where the table's entries have a priority and none is given.
void require_priority(const table_info &table, const entry_words &words);

/// Throws refused_error where no entry has the key; a handle is taken as it is.
std::uint32_t handle_of(const table_info &table, const entry_words &words, const target &where);

/// For the status of an add. Throws refused_error where it is not 0; one that has the entry in the way, and what makes
/// its key equal to the switch, where there is such an entry.
void require_added(pd_status_t status, const std::string &what, const table_info &table, const record_memory &key,
                   std::uint32_t priority, const target &where);

/// "entry 5 of nextHop", or "the entry of nextHop with this key".
std::string entry_name(const table_info &table, const entry_words &words);

}  // namespace tarvex::shell
