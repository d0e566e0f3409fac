// What turns one state into another: the fewest commands, in an order in which the switch takes them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "state_model.h"

namespace tarvex::shell {

/// Commands of the shell that turn `there` into `wanted`. Entries that go are deleted first, so that a full table has
/// room; then members, groups, entries and settings are written; groups and members that go are last, when nothing
/// refers to them. What changes is modified in place.
///
/// `live`: the numbers of members and groups in `there` are handles. Otherwise 'let' commands ahead of the others find
/// the handles, on a switch that holds `there`.
std::vector<std::string> difference(const state_model &there, const state_model &wanted, bool live);

}  // namespace tarvex::shell
