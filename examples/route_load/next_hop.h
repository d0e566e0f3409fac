// The next hop of a route, made from its origin AS since a routing table of this kind names none.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace tarvex::route_load {

enum class hop_kind : std::uint8_t { next_hop, next_hop2, next_hop3, ecmp };

struct hop {
  hop_kind kind = hop_kind::next_hop;
  std::uint16_t value = 0;  // next hop or ECMP group

  bool operator==(const hop &) const = default;
};

/// Stands in a partition entry where no shorter route covers the block; no route has it, as hop_of never gives 0.
inline constexpr hop no_route{};

/// The rule: the value is the AS number folded to 16 bits (upper half xor lower half), 0xffff where that gives 0.
/// The AS number modulo 8 picks the action: 5 setNextHop2, 6 setNextHop3, 7 setEcmp, all others setNextHop.
constexpr hop hop_of(std::uint32_t origin_as)
{
  const auto folded = static_cast<std::uint16_t>((origin_as >> 16) ^ origin_as);
  const auto kind = [&] {
    switch (origin_as % 8) {
      case 5: return hop_kind::next_hop2;
      case 6: return hop_kind::next_hop3;
      case 7: return hop_kind::ecmp;
      default: return hop_kind::next_hop;
    }
  }();
  return {kind, folded != 0 ? folded : std::uint16_t{0xffff}};
}

}  // namespace tarvex::route_load
