// Stations of a bridged network: who they are and what they do while the example watches.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

namespace tarvex::l2_learning {

/// A MAC address in its two halves of 24 bits, as the pipeline holds it.
struct mac_address {
  std::uint32_t oui = 0;
  std::uint32_t station = 0;

  bool operator==(const mac_address &) const = default;
};

inline constexpr mac_address broadcast{0xffffff, 0xffffff};

/// The bit of an OUI that makes an address one of a group.
inline constexpr std::uint32_t group_bit = 0x010000;

/// An address counts within its L2 domain only.
struct station_id {
  mac_address address;
  std::uint16_t domain = 0;

  bool operator==(const station_id &) const = default;
};

struct station_hash {
  std::size_t operator()(const station_id &id) const
  {
    return std::hash<std::uint64_t>()(std::uint64_t{id.address.oui} << 36 | std::uint64_t{id.address.station} << 12 |
                                      id.domain);
  }
};

inline std::string to_text(const station_id &id)
{
  const auto byte = [](std::uint32_t half, unsigned shift) { return half >> shift & 0xff; };
  char text[40];
  std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x in domain %u", byte(id.address.oui, 16),
                byte(id.address.oui, 8), byte(id.address.oui, 0), byte(id.address.station, 16),
                byte(id.address.station, 8), byte(id.address.station, 0), unsigned{id.domain});
  return text;
}

/// What a station does once it has announced itself.
enum class role : std::uint8_t {
  quiet,      ///< nothing: it ages
  hasty,      ///< the same, but announces itself twice, the second time before the first was learned
  active,     ///< sends in every round, so that it stays
  moving,     ///< announces itself from another interface
  returning,  ///< ages, then announces itself again
  blocked     ///< stands behind the blocked interface: is never learned
};

struct station {
  station_id id;
  std::uint32_t interface = 0;
  role does = role::quiet;
};

}  // namespace tarvex::l2_learning
