// The text rows of the action profiles, in the order of their states. Generated from the catalogue.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "profile_states.h"
#include "text_rows.h"

namespace tarvex::pd {

extern const profile_text *const profile_texts[profile_count];

}  // namespace tarvex::pd
