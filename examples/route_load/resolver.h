// Takes addresses through the chain of tables in a switch, as the switch would a packet.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fib_switch.h"
#include "loader.h"
#include "reference.h"

namespace tarvex::route_load {

/// The chain: host table, partition and final table for each length of block from the longest on, short-mask table. The
/// first result counts. A final table that has nothing leaves the packet with what the partition entry carries.
class resolver {
 public:
  explicit resolver(fib_switch &device) : device_(device) {}

  /// The result of a packet to this address, no_route if the chain gives none.
  hop resolve(family f, const address &destination);

  /// Set by the latest resolve if a partition entry carries something else than the tables behind it give, empty if
  /// not.
  const std::string &contradiction() const { return contradiction_; }

  /// The entries that the latest resolve hit, in order.
  const std::vector<fib_entry> &hits() const { return hits_; }

 private:
  std::optional<fib_entry> hit(fib_table table, const prefix &packet, std::uint16_t partition_index = 0);
  hop from(std::span<const partition_space> spaces, fib_table short_mask, const prefix &packet);

  fib_switch &device_;
  std::string contradiction_;
  std::vector<fib_entry> hits_;
};

/// Resolves `count` addresses sampled from `routes` and compares each with the plain search.
void compare_resolution(fib_switch &device, std::span<const route> routes, const reference_search &reference,
                        std::uint64_t seed, std::uint64_t count, differences &found,
                        const progress_report &progress = {});

}  // namespace tarvex::route_load
