// Works out the caller's structures and the sums of action data.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "diagnostics.h"
#include "model.h"

namespace catalogue {

/// Fills order, offsets and sizes of structures, and data_bits and data_bytes of actions.
void lay_out(model &m, diagnostics &diag);

}  // namespace catalogue
