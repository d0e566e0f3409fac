// Prints whatever tables a switch has, out of what it says of them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "tally.h"

namespace tarvex::examples {

/// Prints all entries of all tables that have some, or of the one table of a name. Holds each value against the schema.
/// Gives the counts as one line.
std::string dump_switch(const std::optional<std::string> &only_table, tally &compared);

}  // namespace tarvex::examples
