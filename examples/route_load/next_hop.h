// The next hop of a route, made from its origin AS since a routing table of this kind names none.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tarvex::route_load {

enum class hop_kind : std::uint8_t { next_hop, next_hop2, next_hop3, ecmp };

struct hop {
  hop_kind kind = hop_kind::next_hop;
  std::uint16_t value = 0;  // next hop or ECMP group

  bool operator==(const hop &) const = default;
};

/// What a packet gets that no route covers. No route has it, as hop_of never gives 0.
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

/// An AS number that the rule makes a hop of; the hop's value is not 0.
constexpr std::uint32_t origin_of(const hop &h)
{
  constexpr std::uint32_t remainders[] = {0, 5, 6, 7};
  const std::uint32_t upper = (h.value ^ remainders[static_cast<std::size_t>(h.kind)]) & 7;
  return upper << 16 | (h.value ^ upper);
}

inline std::string to_string(const hop &h)
{
  static constexpr const char *actions[] = {"setNextHop ", "setNextHop2 ", "setNextHop3 ", "setEcmp "};
  return h == no_route ? "no route" : actions[static_cast<std::size_t>(h.kind)] + std::to_string(h.value);
}

}  // namespace tarvex::route_load
