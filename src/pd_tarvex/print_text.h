// Print text: keys and actions in lines that a person reads, straight to a descriptor.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text_rows.h"

namespace tarvex::pd {

/// Both give what the last write gave: the characters of the last line, or a negative number.
std::int32_t match_spec_print(const table_text &table, std::int32_t fd, std::int32_t indent, const void *match_spec);
std::int32_t action_print(const action_text &action, std::int32_t fd, std::int32_t indent, const void *action_spec);

}  // namespace tarvex::pd
