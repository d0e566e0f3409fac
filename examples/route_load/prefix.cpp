// Addresses and prefixes as bytes and as text.
//
// SPDX-License-Identifier: Apache-2.0
#include "prefix.h"

#include <arpa/inet.h>

namespace tarvex::route_load {

address ipv6_address(const std::uint8_t (&bytes)[16])
{
  address a;
  for (unsigned i = 0; i < 8; ++i) {
    a.hi = a.hi << 8 | bytes[i];
    a.lo = a.lo << 8 | bytes[i + 8];
  }
  return a;
}

std::array<std::uint8_t, 16> address_bytes(const address &a)
{
  std::array<std::uint8_t, 16> bytes{};
  for (unsigned i = 0; i < 8; ++i) {
    bytes[i] = static_cast<std::uint8_t>(a.hi >> (56 - 8 * i));
    bytes[i + 8] = static_cast<std::uint8_t>(a.lo >> (56 - 8 * i));
  }
  return bytes;
}

std::optional<address> parse_address(const char *text, family f)
{
  std::uint8_t bytes[16] = {};
  if (inet_pton(f == family::ipv4 ? AF_INET : AF_INET6, text, bytes) != 1) {
    return std::nullopt;
  }
  return ipv6_address(bytes);  // an IPv4 address fills the first four bytes: left-aligned as it should be
}

std::string to_string(const address &a, family f)
{
  const auto bytes = address_bytes(a);
  char text[INET6_ADDRSTRLEN] = {};
  inet_ntop(f == family::ipv4 ? AF_INET : AF_INET6, bytes.data(), text, sizeof text);
  return text;
}

std::string to_string(const prefix &p) { return to_string(p.addr, p.fam) + '/' + std::to_string(p.length); }

}  // namespace tarvex::route_load
