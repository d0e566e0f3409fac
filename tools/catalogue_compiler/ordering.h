// Brings the rows of all files into one order, and links uses of actions to them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model.h"

namespace catalogue {

/// Tables, profiles and resources go by handle, groups by their first table.
void sort_by_handle(model &m);

/// Brings actions into the order of the enumeration, links their uses to them, and marks index parameters. For a model
/// without errors.
void number_actions(model &m);

}  // namespace catalogue
