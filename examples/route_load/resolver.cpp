// Takes addresses through the chain of tables in a switch, as the switch would a packet.
//
// SPDX-License-Identifier: Apache-2.0
#include "resolver.h"

#include "address_sampler.h"

namespace tarvex::route_load {

hop resolver::resolve(family f, const address &destination)
{
  static constexpr std::array ipv4_spaces{partition_space::ipv4};
  static constexpr std::array ipv6_spaces{partition_space::ipv6_lg_mask, partition_space::ipv6};
  contradiction_.clear();
  hits_.clear();
  const prefix packet{f, destination, static_cast<std::uint8_t>(address_bits(f))};
  const bool ipv4 = f == family::ipv4;
  if (const auto host = hit(ipv4 ? fib_table::ipv4_host : fib_table::ipv6_host, packet)) return host->result;
  return ipv4 ? from(ipv4_spaces, fib_table::ipv4_short_mask_lpm, packet)
              : from(ipv6_spaces, fib_table::ipv6_short_mask_lpm, packet);
}

std::optional<fib_entry> resolver::hit(fib_table table, const prefix &packet, std::uint16_t partition_index)
{
  const auto handle = device_.lookup(table, key_of_packet(table, packet.fam, packet.addr, partition_index));
  if (!handle) return std::nullopt;
  hits_.push_back(device_.read(table, *handle));
  return hits_.back();
}

hop resolver::from(std::span<const partition_space> spaces, fib_table short_mask, const prefix &packet)
{
  if (spaces.empty()) {
    const auto found = hit(short_mask, packet);
    return found ? found->result : no_route;
  }
  const auto &layout = partition_layouts[static_cast<std::size_t>(spaces.front())];
  const auto block = hit(layout.partition, packet);
  // A packet without a block carries index 0.
  if (const auto found = hit(layout.final_resolve, packet, block ? block->partition_index : std::uint16_t{0})) {
    return found->result;
  }
  // What the block carries is a copy of what the tables behind it give: they are asked to see whether it is a true one.
  const hop behind = from(spaces.subspan(1), short_mask, packet);
  if (!block) return behind;
  if (block->result != behind && contradiction_.empty()) {
    contradiction_ = to_string(*block) + " where the tables behind it give " + to_string(behind);
  }
  return block->result;
}

void compare_resolution(fib_switch &device, std::span<const route> routes, const reference_search &reference,
                        std::uint64_t seed, std::uint64_t count, differences &found, const progress_report &progress)
{
  address_sampler sampler(routes, seed);
  resolver chain(device);
  for (std::uint64_t i = 0; i < count; ++i) {
    const auto [fam, addr] = sampler.next();
    const route *longest = reference.find(addr, fam);
    const hop wanted = longest != nullptr ? hop_of(longest->origin_as) : no_route;
    const hop got = chain.resolve(fam, addr);
    if (got != wanted) {
      found.add(to_string(addr, fam) + ": the switch gives " + to_string(got) + ", the file says " + to_string(wanted) +
                (longest != nullptr ? " by " + to_string(longest->destination) : ""));
    } else if (!chain.contradiction().empty()) {
      found.add(to_string(addr, fam) + ": " + chain.contradiction());
    }
    report_step(progress, i + 1, count);
  }
}

}  // namespace tarvex::route_load
