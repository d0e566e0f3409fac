// Schema text: the shape of a table or profile as a literal that a tool reads.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text_rows.h"

namespace tarvex::pd {

/// Both give the length without the NUL.
std::int32_t table_schema(const table_text &table, char *buf);
std::int32_t profile_schema(const profile_text &profile, char *buf);

}  // namespace tarvex::pd
