// What loading routes changes on a switch that may hold routes already.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "fib_table_access.h"
#include "invocation.h"
#include "route.h"

namespace tarvex::shell {

struct route_change {
  route_load::fib_entry entry;
  bool modifies = false;  // an entry that is there
};

struct route_changes {
  std::vector<route_change> changes;  // in an order in which no address loses a result that it has
  // Of the routes of the file:
  std::uint64_t added = 0;
  std::uint64_t unchanged = 0;
  std::uint64_t not_loaded = 0;             // no partition index is left for them
  std::vector<route_load::route> replaced;  // the switch has another next hop for them
};

/// `routes` as read_route_file gives them. Routes that the switch has stay, their blocks keep their partition indices,
/// and what a packet of a block gets that no longer prefix covers follows from all routes together.
route_changes find_route_changes(const invocation &call, const std::vector<route_load::route> &routes);

/// The line that an entry comes from; 0 where none is known.
std::uint32_t line_of(const std::vector<route_load::route> &routes, const route_load::fib_entry &entry);

}  // namespace tarvex::shell
