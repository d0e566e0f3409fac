// How routes fall on the ten tables of the forwarding information base.
//
//   hosts              IPv4 /32                  ipv4Host
//                      IPv6 /128                 ipv6Host
//   under a partition  IPv4 /13 to /31           ipv4FinalResolve, block of 12 bits in ipv4Partition
//                      IPv6 /23 to /64           ipv6FinalResolve, block of 22 bits in ipv6Partition
//                      IPv6 /65 to /127          ipv6LgMaskFinalResolve, block of 64 bits in ipv6LgMaskPartition
//   short              IPv4 up to /12            ipv4ShortMaskLpm
//                      IPv6 up to /22            ipv6ShortMaskLpm
//
// A final table does not see the bits of the block: its entries stand under the partition index that the block's entry
// in the partition table gives. Index 0 is what a packet carries that no partition entry matched, so no block gets it.
//
// Beside the index a partition entry carries the result of the longest loaded route that covers the whole block: it is
// what a packet takes that the final table has nothing for. Where no route covers the block it carries none, and the
// packet goes on to the tables of shorter prefixes (which have nothing for it either): in IPv4 the entry is of
// setIpv4PartIdx, index alone; IPv6 has no such action, so the entry carries next hop 0, which no route has.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "next_hop.h"
#include "route.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <vector>

namespace tarvex::route_load {

/// In the order of their handles.
enum class fib_table : std::uint8_t {
  ipv4_host,
  ipv6_host,
  ipv4_partition,
  ipv6_partition,
  ipv6_lg_mask_partition,
  ipv4_final_resolve,
  ipv6_lg_mask_final_resolve,
  ipv6_final_resolve,
  ipv4_short_mask_lpm,
  ipv6_short_mask_lpm,
};
inline constexpr std::size_t fib_table_count = 10;

const char *table_name(fib_table table);

/// A pair of partition and final table, with the prefixes that go there.
enum class partition_space : std::uint8_t { ipv4, ipv6, ipv6_lg_mask };
inline constexpr std::size_t partition_space_count = 3;

struct partition_layout {
  fib_table partition;
  fib_table final_resolve;
  family fam;
  std::uint8_t block_bits;   // prefixes longer than this go here,
  std::uint8_t longest;      // up to this length
  std::uint16_t last_index;  // what the live bits of the final table's partition index hold
};

inline constexpr std::array<partition_layout, partition_space_count> partition_layouts{{
    {fib_table::ipv4_partition, fib_table::ipv4_final_resolve, family::ipv4, 12, 31, 0x7fff},
    {fib_table::ipv6_partition, fib_table::ipv6_final_resolve, family::ipv6, 22, 64, 0x1fff},
    {fib_table::ipv6_lg_mask_partition, fib_table::ipv6_lg_mask_final_resolve, family::ipv6, 64, 127, 0x7ff},
}};

/// Where a route goes. Not loaded: its block got no index.
struct placement {
  fib_table table = fib_table::ipv4_host;
  std::uint16_t partition_index = 0;
  bool loaded = true;
};

struct partition_entry {
  prefix block;
  std::uint16_t index = 0;
  hop otherwise = no_route;  // result of a packet that the final table has nothing for
};

/// A block for which no index was left, with the routes that it keeps out.
struct refused_block {
  partition_space space = partition_space::ipv4;
  prefix block;
  std::size_t routes = 0;
};

struct load_plan {
  std::vector<placement> placements;  // one for each route, in the order of the routes
  std::array<std::vector<partition_entry>, partition_space_count> partitions;  // in the order of the blocks
  std::vector<refused_block> refused;
  std::size_t routes_not_loaded = 0;
};

using last_indices = std::array<std::uint16_t, partition_space_count>;
inline constexpr last_indices live_indices{partition_layouts[0].last_index, partition_layouts[1].last_index,
                                           partition_layouts[2].last_index};

/// Indices that blocks have already.
using taken_indices = std::array<std::map<prefix, std::uint16_t>, partition_space_count>;

/// Indices that are in use otherwise, such as by blocks of another VRF.
using foreign_indices = std::array<std::set<std::uint16_t>, partition_space_count>;

/// `routes` as read_route_file gives them: sorted by destination, each once. Blocks that have no index get one that is
/// free, 1 to the last one, in the order of their addresses.
load_plan make_plan(std::span<const route> routes, const last_indices &last = live_indices,
                    const taken_indices &taken = {}, const foreign_indices &foreign = {});

}  // namespace tarvex::route_load
