// The routes that are there are read back from the tables and planned together with those of the file.
//
// SPDX-License-Identifier: Apache-2.0
#include "route_changes.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "session.h"

namespace tarvex::shell {

namespace {

namespace routes = route_load;

/// What of an entry is its key. An index is one in a final table alone; a partition table gives it.
auto key_of(const routes::fib_entry &entry) { return std::tuple(entry.table, entry.destination); }

const routes::partition_layout *layout_of_partition(routes::fib_table table)
{
  const auto found = std::ranges::find(routes::partition_layouts, table, &routes::partition_layout::partition);
  return found == routes::partition_layouts.end() ? nullptr : &*found;
}

class switch_routes {
 public:
  explicit switch_routes(const invocation &call)
  {
    // Partition tables first: a final table holds only what is behind the block of its index.
    for (std::size_t space = 0; space < routes::partition_space_count; ++space) {
      const routes::partition_layout &layout = routes::partition_layouts[space];
      std::map<std::uint16_t, routes::prefix> blocks;
      read(call, layout.partition, [&](switch_fib_entry &found) {
        if (found.entry.partition_index == 0) return;
        taken[space][found.entry.destination] = found.entry.partition_index;
        blocks[found.entry.partition_index] = found.entry.destination;
      });
      read(call, layout.final_resolve, [&](switch_fib_entry &found) {
        const auto block = blocks.find(found.entry.partition_index);
        if (block == blocks.end()) {
          unreached_.push_back(found);
          entries_.pop_back();
          return;
        }
        const routes::address &own = found.entry.destination.addr;
        const routes::address low = routes::top_bits(own, layout.block_bits);
        const routes::address &high = block->second.addr;
        found.entry.destination.addr = {high.hi | (own.hi & ~low.hi), high.lo | (own.lo & ~low.lo)};
        if (found.entry.destination.length < layout.block_bits) found.foreign = true;
      });
    }
    for (const routes::fib_table table :
         {routes::fib_table::ipv4_host, routes::fib_table::ipv6_host, routes::fib_table::ipv4_short_mask_lpm,
          routes::fib_table::ipv6_short_mask_lpm}) {
      read(call, table, [](switch_fib_entry &) {});
    }
    for (std::vector<switch_fib_entry> *const each : {&entries_, &unreached_})
      std::ranges::sort(*each, {}, [](const switch_fib_entry &entry) { return key_of(entry.entry); });
  }

  const switch_fib_entry *find(const routes::fib_entry &entry) const
  {
    const auto key = [](const switch_fib_entry &each) { return key_of(each.entry); };
    const auto found = std::ranges::lower_bound(entries_, key_of(entry), {}, key);
    return found == entries_.end() || key(*found) != key_of(entry) ? nullptr : &*found;
  }

  /// An entry of a final table with the same index, which no block leads to: what an interrupted load left.
  const switch_fib_entry *find_unreached(const routes::fib_entry &entry) const
  {
    const auto same_key = [&](const switch_fib_entry &each) {
      return key_of(each.entry) == key_of(entry) && each.entry.partition_index == entry.partition_index;
    };
    const auto [first, last] = std::ranges::equal_range(
        unreached_, key_of(entry), {}, [](const switch_fib_entry &each) { return key_of(each.entry); });
    const auto found = std::find_if(first, last, same_key);
    return found == last ? nullptr : &*found;
  }

  /// Together with those of a file, which go first; sorted by destination.
  std::vector<routes::route> with(const std::vector<routes::route> &of_file) const
  {
    std::vector<routes::route> own;
    for (const switch_fib_entry &each : entries_) {
      if (each.foreign || layout_of_partition(each.entry.table) != nullptr) continue;
      own.push_back({each.entry.destination, routes::origin_of(each.entry.result), 0});
    }
    std::ranges::sort(own, {}, &routes::route::destination);
    std::vector<routes::route> all;
    all.reserve(own.size() + of_file.size());
    std::ranges::set_union(of_file, own, std::back_inserter(all), {}, &routes::route::destination,
                           &routes::route::destination);
    return all;
  }

  bool empty() const { return entries_.empty(); }

  routes::taken_indices taken;
  routes::foreign_indices of_other_vrfs;

 private:
  template <typename Take>
  void read(const invocation &call, routes::fib_table table, Take take)
  {
    fib_table_access(table, call.where()).read([&](const switch_fib_entry &found) {
      call.shell.check_interrupt();
      if (found.other_vrf) {
        const routes::partition_layout *const layout = layout_of_partition(table);
        if (layout != nullptr)
          of_other_vrfs[static_cast<std::size_t>(layout - routes::partition_layouts.begin())].insert(
              found.entry.partition_index);
        return;
      }
      entries_.push_back(found);
      take(entries_.back());
    });
  }

  std::vector<switch_fib_entry> entries_;
  std::vector<switch_fib_entry> unreached_;
};

}  // namespace

route_changes find_route_changes(const invocation &call, const std::vector<routes::route> &of_file)
{
  const switch_routes there(call);
  const std::vector<routes::route> merged = there.empty() ? std::vector<routes::route>() : there.with(of_file);
  const std::vector<routes::route> &all = there.empty() ? of_file : merged;
  const routes::load_plan plan = routes::make_plan(all, routes::live_indices, there.taken, there.of_other_vrfs);
  route_changes found;
  found.not_loaded = plan.routes_not_loaded;
  for (const routes::fib_entry &entry : routes::make_entries(all, plan)) {
    const switch_fib_entry *const before = there.find(entry);
    const switch_fib_entry *const own_key = before != nullptr ? before : there.find_unreached(entry);
    const bool written = own_key != nullptr && !own_key->foreign && own_key->entry == entry;
    const bool same = before != nullptr && written;
    if (!written) found.changes.push_back({entry, own_key != nullptr});
    if (layout_of_partition(entry.table) != nullptr) continue;
    const auto route = std::ranges::lower_bound(of_file, entry.destination, {}, &routes::route::destination);
    if (route == of_file.end() || route->destination != entry.destination) continue;
    if (same) {
      ++found.unchanged;
    } else if (own_key == nullptr || written) {
      ++found.added;
    } else {
      found.replaced.push_back(*route);
    }
  }
  return found;
}

std::uint32_t line_of(const std::vector<routes::route> &of_file, const routes::fib_entry &entry)
{
  // The first route of a block stands for its partition entry.
  const auto found = std::ranges::lower_bound(of_file, entry.destination, {}, &routes::route::destination);
  return found != of_file.end() && entry.destination.covers(found->destination) ? found->line : 0;
}

}  // namespace tarvex::shell
