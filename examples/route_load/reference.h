// Longest-prefix search as plain as can be: for each prefix length a sorted list of the routes of that length, tried
// from the longest on. The programmed switch is compared with it, so it knows nothing of tables, blocks or indices.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "route.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace tarvex::route_load {

class reference_search {
 public:
  /// Over those of `routes`, which must outlive the search, that `wanted` picks by their place.
  template <typename Wanted>
  reference_search(const std::vector<route> &routes, Wanted wanted)
  {
    for (std::size_t i = 0; i < routes.size(); ++i) {
      if (wanted(i)) {
        const prefix &p = routes[i].destination;
        (p.fam == family::ipv4 ? ipv4_ : ipv6_)[p.length].push_back({p.addr, &routes[i]});
      }
    }
    for (auto *lists : {&ipv4_, &ipv6_}) {
      for (auto &list : *lists) {
        std::ranges::sort(list, {}, &item::network);
      }
    }
  }

  /// The longest route that covers the address; null if none does.
  const route *find(const address &a, family f) const
  {
    const auto &lists = f == family::ipv4 ? ipv4_ : ipv6_;
    address network = a;
    for (unsigned length = 128;; --length) {
      const auto at = std::ranges::lower_bound(lists[length], network, {}, &item::network);
      if (at != lists[length].end() && at->network == network) {
        return at->found;
      }
      if (length == 0) {
        return nullptr;
      }
      // One bit less for the next length.
      if (length > 64) {
        network.lo &= ~(std::uint64_t{1} << (128 - length));
      } else {
        network.hi &= ~(std::uint64_t{1} << (64 - length));
      }
    }
  }

 private:
  struct item {
    address network;
    const route *found;
  };

  std::array<std::vector<item>, 129> ipv4_;  // by prefix length
  std::array<std::vector<item>, 129> ipv6_;
};

}  // namespace tarvex::route_load
