// How routes fall on the tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "plan.h"

#include <algorithm>
#include <optional>
#include <set>

namespace tarvex::route_load {
namespace {

std::optional<partition_space> space_of(const prefix &p)
{
  const auto at = std::ranges::find_if(partition_layouts, [&](const partition_layout &layout) {
    return p.fam == layout.fam && p.length > layout.block_bits && p.length <= layout.longest;
  });
  if (at == partition_layouts.end()) {
    return std::nullopt;
  }
  return static_cast<partition_space>(at - partition_layouts.begin());
}

/// Of a prefix that needs no partition.
fib_table table_without_partition(const prefix &p)
{
  const bool host = p.length == address_bits(p.fam);
  if (p.fam == family::ipv4) {
    return host ? fib_table::ipv4_host : fib_table::ipv4_short_mask_lpm;
  }
  return host ? fib_table::ipv6_host : fib_table::ipv6_short_mask_lpm;
}

class planner {
 public:
  planner(std::span<const route> routes, const last_indices &last, const taken_indices &taken,
          const foreign_indices &foreign)
      : routes_(routes), last_(last), taken_(taken)
  {
    for (std::size_t space = 0; space < partition_space_count; ++space) {
      used_[space].insert(foreign[space].begin(), foreign[space].end());
      for (const auto &[block, index] : taken[space]) used_[space].insert(index);
    }
  }

  load_plan run()
  {
    plan_.placements.reserve(routes_.size());
    for (const route &r : routes_) {
      place(r);
    }
    return std::move(plan_);
  }

 private:
  void place(const route &r)
  {
    while (!covering_.empty() && !covering_.back()->destination.covers(r.destination)) {
      covering_.pop_back();
    }
    placement where;
    if (const auto space = space_of(r.destination)) {
      const auto &layout = partition_layouts[static_cast<std::size_t>(*space)];
      where.table = layout.final_resolve;
      where.partition_index = index_for(*space, r.destination);
      where.loaded = where.partition_index != 0;
    } else {
      where.table = table_without_partition(r.destination);
    }
    plan_.placements.push_back(where);
    if (where.loaded) {
      covering_.push_back(&r);
    } else {
      ++plan_.routes_not_loaded;
    }
  }

  /// Index of the block that the prefix falls in, a new one where the block is new; 0 when none is left.
  std::uint16_t index_for(partition_space space, const prefix &p)
  {
    const auto number = static_cast<std::size_t>(space);
    const auto &layout = partition_layouts[number];
    const prefix block{p.fam, top_bits(p.addr, layout.block_bits), layout.block_bits};
    auto &entries = plan_.partitions[number];
    // Routes come in the order of their addresses, so a block that is not the last one is new.
    if (!entries.empty() && entries.back().block == block) {
      return entries.back().index;
    }
    if (const std::uint16_t index = index_of(number, block); index != 0) {
      entries.push_back({block, index, longest_over(block)});
      return index;
    }
    auto &latest = latest_refused_[number];
    if (!latest || plan_.refused[*latest].block != block) {
      latest = plan_.refused.size();
      plan_.refused.push_back({space, block, 0});
    }
    ++plan_.refused[*latest].routes;
    return 0;
  }

  /// The one that the block has, or the next free one; 0 when none is left.
  std::uint16_t index_of(std::size_t number, const prefix &block)
  {
    const auto taken = taken_[number].find(block);
    if (taken != taken_[number].end()) return taken->second;
    std::uint16_t &latest = latest_index_[number];
    while (latest < last_[number]) {
      if (!used_[number].contains(++latest)) return latest;
    }
    return 0;
  }

  hop longest_over(const prefix &block) const
  {
    const auto at = std::ranges::find_if(covering_.rbegin(), covering_.rend(),
                                         [&](const route *r) { return r->destination.covers(block); });
    return at == covering_.rend() ? no_route : hop_of((*at)->origin_as);
  }

  std::span<const route> routes_;
  last_indices last_;
  const taken_indices &taken_;
  std::array<std::set<std::uint16_t>, partition_space_count> used_;  // by blocks that have an index
  last_indices latest_index_{};                                      // that was given
  load_plan plan_;
  std::array<std::optional<std::size_t>, partition_space_count> latest_refused_;  // place in plan_.refused
  std::vector<const route *> covering_;  // loaded routes that cover the one at hand, the shortest first
};

}  // namespace

const char *table_name(fib_table table)
{
  static constexpr std::array<const char *, fib_table_count> names{"ipv4Host",
                                                                   "ipv6Host",
                                                                   "ipv4Partition",
                                                                   "ipv6Partition",
                                                                   "ipv6LgMaskPartition",
                                                                   "ipv4FinalResolve",
                                                                   "ipv6LgMaskFinalResolve",
                                                                   "ipv6FinalResolve",
                                                                   "ipv4ShortMaskLpm",
                                                                   "ipv6ShortMaskLpm"};
  return names[static_cast<std::size_t>(table)];
}

load_plan make_plan(std::span<const route> routes, const last_indices &last, const taken_indices &taken,
                    const foreign_indices &foreign)
{
  return planner(routes, last, taken, foreign).run();
}

}  // namespace tarvex::route_load
