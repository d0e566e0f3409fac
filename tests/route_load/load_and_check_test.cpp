// Loading, reading back and resolving on a small switch made of a list: what is right passes, and each kind of fault
// shows.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <set>

#include "address_sampler.h"
#include "resolver.h"
#include "route_lists.h"

namespace tarvex::route_load {
namespace {

/// Bits of the address that a final table or a short-mask table does not see are not compared.
class list_switch final : public fib_switch {
 public:
  entry_handle add(const fib_entry &entry) override
  {
    if (entries.size() == room) throw driver_refused("full");
    entries.push_back(entry);
    return static_cast<entry_handle>(entries.size() - 1) ^ 0xff;  // not in the order of the entries
  }

  std::vector<entry_handle> walk(fib_table table) override
  {
    std::vector<entry_handle> handles;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (entries[i].table == table && !hidden.contains(i)) handles.push_back(static_cast<entry_handle>(i) ^ 0xff);
    }
    if (walk_twice) handles.insert(handles.end(), handles.begin(), handles.end());
    return handles;
  }

  fib_entry read(fib_table, entry_handle handle) override { return entries.at(handle ^ 0xff); }
  bool reads_back_as(const fib_entry &expected, entry_handle handle) override { return read({}, handle) == expected; }

  std::optional<entry_handle> lookup(fib_table table, const lookup_key &key) override
  {
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const fib_entry &entry = entries[i];
      if (entry.table != table || hidden.contains(i)) continue;
      const bool final_resolve = key.bytes[0] == 0;
      if (final_resolve && entry.partition_index != key.partition_index) continue;
      const auto wanted = address_bytes(entry.destination.addr);
      const unsigned from = !final_resolve                           ? 0
                            : table == fib_table::ipv4_final_resolve ? 12
                            : table == fib_table::ipv6_final_resolve ? 22
                                                                     : 64;
      bool equal = true;
      for (unsigned bit = from; bit < entry.destination.length; ++bit) {
        const unsigned at = bit / 8 + (final_resolve ? 2 : 1);
        equal = equal && ((wanted[bit / 8] ^ key.bytes[at]) >> (7 - bit % 8) & 1) == 0;
      }
      if (equal && (!best || entries[*best].destination.length < entry.destination.length)) best = i;
    }
    if (!best) return std::nullopt;
    return static_cast<entry_handle>(*best) ^ 0xff;
  }

  std::vector<fib_entry> entries;
  std::set<std::size_t> hidden;
  bool walk_twice = false;
  std::size_t room = 1000;
};

class load_and_check : public testing::Test {
 protected:
  const std::vector<route> routes = routes_of({
      "0.0.0.0/0 9",          "10.0.0.0/8 10",        "10.16.0.0/12 11",  "10.16.0.0/13 12",  "10.16.5.0/24 13",
      "10.16.5.7/32 14",      "10.16.5.8/31 15",      "10.32.0.0/24 16",  "11.0.0.0/16 17",   "11.255.255.255/32 18",
      "2001:c00::/22 20",     "2001:db8::/32 21",     "2001:db8::/64 22", "2001:db8::/65 23", "2001:db8::7/128 24",
      "2001:db8::80/127 25",  "2001:db8:1:1::/80 26", "2002::/16 27",     "2002:400::/40 28", "3000:0:0:1::/127 29",
      "3000:0:0:2::1/128 30", "2001:db8:0:1::/64 31",
  });
  load_plan plan = make_plan(routes);
  std::vector<fib_entry> entries = make_entries(routes, plan);
  list_switch device;
  std::vector<entry_handle> handles = program(device, entries);

  std::uint64_t read_back_differences()
  {
    differences found;
    read_back(device, entries, handles, found);
    return found.count();
  }

  std::uint64_t resolution_differences(std::uint64_t count = 4000)
  {
    differences found;
    const reference_search reference(routes, [&](std::size_t i) { return plan.placements[i].loaded; });
    compare_resolution(device, routes, reference, 1, count, found);
    return found.count();
  }
};

TEST_F(load_and_check, what_is_right_passes_and_stays_right_when_indices_run_out)
{
  EXPECT_EQ(read_back_differences(), 0U);
  EXPECT_EQ(resolution_differences(), 0U);
  device.room = device.entries.size() + 3;
  EXPECT_THROW(program(device, entries), driver_refused);

  device.entries.clear();
  plan = make_plan(routes, {1, 1, 2});
  ASSERT_EQ(plan.routes_not_loaded, 4U);
  entries = make_entries(routes, plan);
  handles = program(device, entries);
  EXPECT_EQ(read_back_differences(), 0U);
  EXPECT_EQ(resolution_differences(), 0U);
}

TEST_F(load_and_check, faults_of_each_table_show)
{
  for (std::size_t number = 0; number < fib_table_count; ++number) {
    const auto table = static_cast<fib_table>(number);
    SCOPED_TRACE(table_name(table));
    fib_entry &entry = *std::ranges::find(device.entries, table, &fib_entry::table);
    const fib_entry kept = entry;
    const auto shows = [&](bool resolves_otherwise) {
      EXPECT_EQ(read_back_differences(), 1U);
      EXPECT_TRUE(!resolves_otherwise || resolution_differences() > 0);
      entry = kept;
    };
    entry.result = {hop_kind::ecmp, 999};
    shows(true);
    ++entry.partition_index;
    shows(kept.partition_index != 0);
    device.hidden = {static_cast<std::size_t>(&entry - device.entries.data())};
    shows(true);
    device.hidden.clear();
  }
}

TEST_F(load_and_check, entries_that_nobody_added_or_that_come_twice_show)
{
  device.walk_twice = true;
  EXPECT_EQ(read_back_differences(), entries.size());
  device.walk_twice = false;
  device.add({fib_table::ipv4_final_resolve, prefix_of("77.0.0.0/24"), 7, hop_of(1)});
  EXPECT_EQ(read_back_differences(), 1U);
}

TEST_F(load_and_check, a_block_that_carries_another_result_than_the_tables_behind_it_shows)
{
  const prefix block = prefix_of("10.32.0.0/12");
  auto &carrier = *std::ranges::find_if(device.entries, [&](const fib_entry &entry) {
    return entry.table == fib_table::ipv4_partition && entry.destination == block;
  });
  resolver chain(device);
  const address inside = prefix_of("10.33.0.1/32").addr;
  EXPECT_EQ(chain.resolve(family::ipv4, inside), hop_of(10));
  EXPECT_EQ(chain.contradiction(), "");
  // The packet's result is right, and the copy of it in the short-mask table is not.
  std::ranges::find(device.entries, prefix_of("10.0.0.0/8"), &fib_entry::destination)->result = hop_of(11);
  EXPECT_EQ(chain.resolve(family::ipv4, inside), hop_of(10));
  EXPECT_NE(chain.contradiction().find(to_string(carrier)), std::string::npos);
}

TEST(address_sampler, gives_the_same_addresses_for_a_seed_and_all_kinds_of_them)
{
  const auto routes = routes_of({"10.0.0.0/24 1", "2001:db8:0:1::/64 2"});
  const auto addresses = [&](std::uint64_t seed) {
    address_sampler sampler(routes, seed);
    std::vector<std::string> texts;
    for (int i = 0; i < 120; ++i) {
      const auto a = sampler.next();
      texts.push_back(to_string(a.addr, a.fam));
    }
    return texts;
  };
  const auto got = addresses(5);
  EXPECT_EQ(got, addresses(5));
  EXPECT_NE(got, addresses(6));
  for (const char *wanted : {"10.0.0.0", "10.0.0.255", "9.255.255.255", "10.0.1.0", "2001:db8:0:1::",
                             "2001:db8:0:1:ffff:ffff:ffff:ffff", "2001:db8::ffff:ffff:ffff:ffff", "2001:db8:0:2::"}) {
    EXPECT_NE(std::ranges::find(got, wanted), got.end()) << wanted;
  }
}

}  // namespace
}  // namespace tarvex::route_load
