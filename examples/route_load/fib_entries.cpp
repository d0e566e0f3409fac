// The entries of the ten tables that a plan comes to.
//
// SPDX-License-Identifier: Apache-2.0
#include "fib_entries.h"

namespace tarvex::route_load {
namespace {

constexpr std::array programming_order{fib_table::ipv4_short_mask_lpm,
                                       fib_table::ipv6_short_mask_lpm,
                                       fib_table::ipv4_final_resolve,
                                       fib_table::ipv4_partition,
                                       fib_table::ipv6_final_resolve,
                                       fib_table::ipv6_partition,
                                       fib_table::ipv6_lg_mask_final_resolve,
                                       fib_table::ipv6_lg_mask_partition,
                                       fib_table::ipv4_host,
                                       fib_table::ipv6_host};
static_assert(programming_order.size() == fib_table_count);

}  // namespace

std::string to_string(const fib_entry &entry)
{
  const auto index = entry.partition_index == 0 ? "" : ", partition index " + std::to_string(entry.partition_index);
  return std::string(table_name(entry.table)) + ' ' + to_string(entry.destination) + index + ", " +
         to_string(entry.result);
}

std::vector<fib_entry> make_entries(std::span<const route> routes, const load_plan &plan)
{
  std::array<std::vector<fib_entry>, fib_table_count> by_table;
  const auto add = [&](const fib_entry &entry) { by_table[static_cast<std::size_t>(entry.table)].push_back(entry); };
  for (std::size_t i = 0; i < routes.size(); ++i) {
    const placement &where = plan.placements[i];
    if (where.loaded) {
      add({where.table, routes[i].destination, where.partition_index, hop_of(routes[i].origin_as)});
    }
  }
  for (std::size_t space = 0; space < partition_space_count; ++space) {
    for (const partition_entry &p : plan.partitions[space]) {
      add({partition_layouts[space].partition, p.block, p.index, p.otherwise});
    }
  }

  std::vector<fib_entry> entries;
  for (const fib_table table : programming_order) {
    auto &of_table = by_table[static_cast<std::size_t>(table)];
    entries.insert(entries.end(), of_table.begin(), of_table.end());
    of_table = {};  // the next may need its memory
  }
  return entries;
}

}  // namespace tarvex::route_load
