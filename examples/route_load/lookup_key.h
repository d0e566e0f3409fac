// Keys as a switch makes them from a packet: the bytes stand here once more, on purpose, and not by way of the library,
// so that a key that the library builds wrongly is not found.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fib_entries.h"

#include <algorithm>

namespace tarvex::route_load {

struct lookup_key {
  std::array<std::uint8_t, 18> bytes{};
  std::size_t size = 0;
  std::uint32_t partition_index = 0;
};

/// VRF byte and address; in a final table two bytes of 0 and the address, as the partition index travels beside the
/// key.
inline lookup_key key_of_packet(fib_table table, family f, const address &destination, std::uint16_t partition_index)
{
  const bool final_resolve = table == fib_table::ipv4_final_resolve || table == fib_table::ipv6_final_resolve ||
                             table == fib_table::ipv6_lg_mask_final_resolve;
  lookup_key key;
  if (final_resolve) {
    key.partition_index = partition_index;
    key.size = 2;
  } else {
    key.bytes[0] = load_vrf;
    key.size = 1;
  }
  const auto address_part = address_bytes(destination);
  std::copy_n(address_part.begin(), address_bits(f) / 8, key.bytes.begin() + static_cast<std::ptrdiff_t>(key.size));
  key.size += address_bits(f) / 8;
  return key;
}

}  // namespace tarvex::route_load
