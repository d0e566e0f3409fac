// Addresses to try a routing table with, the same ones for the same seed on every machine.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "route.h"

#include <algorithm>
#include <random>
#include <span>
#include <vector>

namespace tarvex::route_load {

struct sampled_address {
  family fam = family::ipv4;
  address addr;
};

/// In equal parts: any address; any address under a route; the first and the last of a route; their neighbours outside
/// the route. The families come alternately where the table has both.
class address_sampler {
 public:
  /// `routes` sorted by destination and not empty; they must outlive the sampler.
  address_sampler(std::span<const route> routes, std::uint64_t seed) : engine_(seed)
  {
    const auto ipv6_begin =
        std::ranges::find_if(routes, [](const route &r) { return r.destination.fam == family::ipv6; });
    const auto ipv4_count = static_cast<std::size_t>(ipv6_begin - routes.begin());
    for (const auto part : {routes.first(ipv4_count), routes.subspan(ipv4_count)}) {
      if (!part.empty()) parts_.push_back(part);
    }
  }

  sampled_address next()
  {
    const auto part = parts_[count_ % parts_.size()];
    const auto kind = count_ / parts_.size() % 6;
    ++count_;
    const prefix &p = part[engine_() % part.size()].destination;
    const address last = last_address(p);
    switch (kind) {
      case 0: return {p.fam, random_under({p.fam, {}, 0})};
      case 1: return {p.fam, random_under(p)};
      case 2: return {p.fam, p.addr};
      case 3: return {p.fam, last};
      case 4: return {p.fam, before(p.addr, p.fam)};
      default: return {p.fam, after(last, p.fam)};
    }
  }

 private:
  address random_under(const prefix &p)
  {
    const address all_ones_behind = fill_behind({}, p.length, p.fam);
    return {p.addr.hi | (engine_() & all_ones_behind.hi), p.addr.lo | (engine_() & all_ones_behind.lo)};
  }

  std::mt19937_64 engine_;
  std::vector<std::span<const route>> parts_;  // by family
  std::uint64_t count_ = 0;
};

}  // namespace tarvex::route_load
