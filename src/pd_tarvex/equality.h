// Whether two key structures are the same key, two parameter structures the same parameters: as far as the live bits
// go.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text_rows.h"

namespace tarvex::pd {

/// Both give 1 for equal, 0 for different.
std::uint8_t match_specs_are_equal(const table_text &table, const void *ms1, const void *ms2);
std::uint8_t action_specs_are_equal(const action_text &action, const void *spec1, const void *spec2);

}  // namespace tarvex::pd
