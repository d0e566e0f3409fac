// Brings the rows of all files into one order, and links uses of actions to them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model.h"

namespace catalogue {

/// Tables, profiles, resources and hash calculations go by handle, groups by their first table, snapshot layouts by
/// direction.
void sort_all(model &m);

/// Brings actions into the order of the enumeration, links their uses to them, and marks index parameters. For a model
/// without errors.
void number_actions(model &m);

}  // namespace catalogue
