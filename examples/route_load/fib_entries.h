// The entries of the ten tables that a plan comes to.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plan.h"

#include <string>

namespace tarvex::route_load {

/// VRF of all routes.
inline constexpr std::uint8_t load_vrf = 1;

struct fib_entry {
  fib_table table = fib_table::ipv4_host;
  prefix destination;
  std::uint16_t partition_index = 0;  // matched by a final table, given by a partition table
  hop result = no_route;

  bool operator==(const fib_entry &) const = default;
};

std::string to_string(const fib_entry &entry);

/// Table by table, in the order to program them: shorter prefixes first, and a block's partition entry behind what
/// stands in the block, so that at no time an address loses a result that it has.
std::vector<fib_entry> make_entries(std::span<const route> routes, const load_plan &plan);

}  // namespace tarvex::route_load
