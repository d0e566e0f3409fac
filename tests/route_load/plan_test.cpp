// How routes fall on the tables: the lengths at which one table ends, the blocks, and what happens when indices run
// out.
//
// SPDX-License-Identifier: Apache-2.0
#include "fib_entries.h"
#include "lookup_key.h"
#include "route_lists.h"

namespace tarvex::route_load {
namespace {

TEST(plan, each_length_has_its_table)
{
  const struct {
    const char *line;
    fib_table table;
  } cases[] = {
      {"0.0.0.0/0 1", fib_table::ipv4_short_mask_lpm},
      {"16.0.0.0/12 1", fib_table::ipv4_short_mask_lpm},
      {"32.0.0.0/13 1", fib_table::ipv4_final_resolve},
      {"48.0.0.0/31 1", fib_table::ipv4_final_resolve},
      {"64.0.0.0/32 1", fib_table::ipv4_host},
      {"::/0 1", fib_table::ipv6_short_mask_lpm},
      {"2001::/22 1", fib_table::ipv6_short_mask_lpm},
      {"2002::/23 1", fib_table::ipv6_final_resolve},
      {"2003::/64 1", fib_table::ipv6_final_resolve},
      {"2004::/65 1", fib_table::ipv6_lg_mask_final_resolve},
      {"2005::/127 1", fib_table::ipv6_lg_mask_final_resolve},
      {"2006::/128 1", fib_table::ipv6_host},
  };
  for (const auto &c : cases) {
    const auto plan = make_plan(routes_of({c.line}));
    EXPECT_EQ(plan.placements[0].table, c.table) << c.line;
    std::size_t blocks = 0;
    for (std::size_t space = 0; space < partition_space_count; ++space) {
      blocks += plan.partitions[space].size();
      EXPECT_EQ(plan.partitions[space].size(), partition_layouts[space].final_resolve == c.table ? 1U : 0U) << c.line;
    }
    EXPECT_EQ(plan.placements[0].partition_index, blocks) << c.line;
  }
}

TEST(plan, entries_of_blocks_carry_the_longest_route_over_them)
{
  const auto routes = routes_of({
      "10.0.0.0/8 8", "10.16.0.0/12 16", "10.16.0.0/13 24", "10.24.0.0/32 32", "10.31.255.254/31 5", "10.32.0.0/24 40",
      "99.0.0.0/24 6",  // IPv4
      "2001:c00::/22 48", "2001:db8::/32 56", "2001:db8::/64 64", "2001:db8:0:0:8000::/65 72", "2001:db8:0:1::/80 80",
      "3000::/80 88",  // IPv6
  });
  std::string text;
  for (const fib_entry &entry : make_entries(routes, make_plan(routes))) text += to_string(entry) + '\n';
  EXPECT_EQ(text,
            "ipv4ShortMaskLpm 10.0.0.0/8, setNextHop 8\n"
            "ipv4ShortMaskLpm 10.16.0.0/12, setNextHop 16\n"
            "ipv6ShortMaskLpm 2001:c00::/22, setNextHop 48\n"
            "ipv4FinalResolve 10.16.0.0/13, partition index 1, setNextHop 24\n"
            "ipv4FinalResolve 10.31.255.254/31, partition index 1, setNextHop2 5\n"
            "ipv4FinalResolve 10.32.0.0/24, partition index 2, setNextHop 40\n"
            "ipv4FinalResolve 99.0.0.0/24, partition index 3, setNextHop3 6\n"
            "ipv4Partition 10.16.0.0/12, partition index 1, setNextHop 16\n"
            "ipv4Partition 10.32.0.0/12, partition index 2, setNextHop 8\n"
            "ipv4Partition 99.0.0.0/12, partition index 3, no route\n"
            "ipv6FinalResolve 2001:db8::/32, partition index 1, setNextHop 56\n"
            "ipv6FinalResolve 2001:db8::/64, partition index 1, setNextHop 64\n"
            "ipv6Partition 2001:c00::/22, partition index 1, setNextHop 48\n"
            "ipv6LgMaskFinalResolve 2001:db8:0:0:8000::/65, partition index 1, setNextHop 72\n"
            "ipv6LgMaskFinalResolve 2001:db8:0:1::/80, partition index 2, setNextHop 80\n"
            "ipv6LgMaskFinalResolve 3000::/80, partition index 3, setNextHop 88\n"
            "ipv6LgMaskPartition 2001:db8::/64, partition index 1, setNextHop 64\n"
            "ipv6LgMaskPartition 2001:db8:0:1::/64, partition index 2, setNextHop 56\n"
            "ipv6LgMaskPartition 3000::/64, partition index 3, no route\n"
            "ipv4Host 10.24.0.0/32, setNextHop 32\n");
}

TEST(plan, blocks_without_an_index_are_told_and_cover_nothing)
{
  const auto routes = routes_of({"10.0.0.0/24 1", "11.0.0.0/24 2", "11.0.1.0/24 3", "11.16.0.0/32 4", "12.0.0.0/24 5",
                                 "2001::/40 6", "2001:400::/48 7", "2001:400:0:5::/70 8"});
  const auto plan = make_plan(routes, {1, 1, 1});
  EXPECT_EQ(plan.routes_not_loaded, 4U);
  const struct {
    const char *block;
    std::size_t routes;
  } refused[] = {{"11.0.0.0/12", 2}, {"12.0.0.0/12", 1}, {"2001:400::/22", 1}};
  ASSERT_EQ(plan.refused.size(), std::size(refused));
  for (std::size_t i = 0; i < std::size(refused); ++i) {
    EXPECT_EQ(to_string(plan.refused[i].block), refused[i].block);
    EXPECT_EQ(plan.refused[i].routes, refused[i].routes);
  }
  for (std::size_t i = 0; i < routes.size(); ++i) {
    const bool loaded = i == 0 || i == 3 || i == 5 || i == 7;
    EXPECT_EQ(plan.placements[i].loaded, loaded) << to_string(routes[i].destination);
  }
  EXPECT_EQ(plan.partitions[2][0].otherwise, no_route);  // 2001:400::/48 covers the block but is not loaded
  EXPECT_EQ(make_entries(routes, plan).size(), 4U + 3U);
}

TEST(lookup_key, bytes_of_a_packet)
{
  const auto bytes = [](fib_table table, const char *destination, std::uint16_t index) {
    const prefix p = prefix_of(destination);
    const auto key = key_of_packet(table, p.fam, p.addr, index);
    std::string text;
    for (std::size_t i = 0; i < key.size; ++i) {
      text += "0123456789abcdef"[key.bytes[i] >> 4];
      text += "0123456789abcdef"[key.bytes[i] & 15];
    }
    return text + ' ' + std::to_string(key.partition_index);
  };
  EXPECT_EQ(bytes(fib_table::ipv4_partition, "10.11.12.13/32", 7), "010a0b0c0d 0");
  EXPECT_EQ(bytes(fib_table::ipv4_final_resolve, "10.11.12.13/32", 7), "00000a0b0c0d 7");
  EXPECT_EQ(bytes(fib_table::ipv6_host, "2001:db8::1:2/128", 7), "0120010db8000000000000000000010002 0");
  EXPECT_EQ(bytes(fib_table::ipv6_lg_mask_final_resolve, "2001:db8::1:2/128", 7),
            "000020010db8000000000000000000010002 7");
}

}  // namespace
}  // namespace tarvex::route_load
