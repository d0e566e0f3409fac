// What turns one state into another: the fewest commands, in an order in which the switch takes them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "state_model.h"

namespace tarvex::shell {

struct operation {
  std::string command;
  std::uint64_t line = 0;  // of the file that holds the wanted state; 0 where the command takes off what it lacks
};

/// Commands of the shell that turn `there` into `wanted`. Entries that go are deleted first, so that a full table has
/// room; then members, groups, entries and settings are written; groups and members that go are last, when nothing
/// refers to them. What changes is modified in place. There is no command where the states differ only in the numbers
/// of members and groups, and once all commands have been run there is none.
///
/// `live`: the numbers of members and groups in `there` are handles. Otherwise 'let' commands before the others find
/// the handles, on a switch that holds `there`.
std::vector<operation> difference(const state_model &there, const state_model &wanted, bool live);

}  // namespace tarvex::shell
