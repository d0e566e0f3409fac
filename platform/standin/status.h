// Statuses in expressions.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tarvex_platform/driver.h"

namespace tarvex::standin {

inline constexpr pd_status_t success = BF_SUCCESS;

/// Success where the condition holds, else the other status.
constexpr pd_status_t require(bool condition, pd_status_t otherwise) { return condition ? success : otherwise; }

}  // namespace tarvex::standin
