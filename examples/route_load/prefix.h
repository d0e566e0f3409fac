// Addresses and prefixes of both families in one form: the bits stand left-aligned in 128 bits, so that a prefix is
// always "the top bits", whatever the family.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace tarvex::route_load {

enum class family : std::uint8_t { ipv4, ipv6 };

constexpr unsigned address_bits(family f) { return f == family::ipv4 ? 32 : 128; }

struct address {
  std::uint64_t hi = 0;
  std::uint64_t lo = 0;

  auto operator<=>(const address &) const = default;
};

constexpr address ipv4_address(std::uint32_t value) { return {std::uint64_t{value} << 32, 0}; }
constexpr std::uint32_t ipv4_value(const address &a) { return static_cast<std::uint32_t>(a.hi >> 32); }

address ipv6_address(const std::uint8_t (&bytes)[16]);
std::array<std::uint8_t, 16> address_bytes(const address &a);

/// The top `bits` bits of `a`, the rest 0.
constexpr address top_bits(const address &a, unsigned bits)
{
  const auto mask = [](unsigned n) { return n == 0 ? 0 : ~std::uint64_t{0} << (64 - n); };
  return bits <= 64 ? address{a.hi & mask(bits), 0} : address{a.hi, a.lo & mask(bits - 64)};
}

/// `a` with every bit behind the top `bits` set, within the width of the family.
constexpr address fill_behind(const address &a, unsigned bits, family f)
{
  const address kept = top_bits({~std::uint64_t{0}, ~std::uint64_t{0}}, bits);
  const address width = top_bits({~std::uint64_t{0}, ~std::uint64_t{0}}, address_bits(f));
  return {a.hi | (width.hi & ~kept.hi), a.lo | (width.lo & ~kept.lo)};
}

/// The neighbours of an address in the numbers of its family, round the end.
constexpr address before(const address &a, family f)
{
  if (f == family::ipv4) return {a.hi - (std::uint64_t{1} << 32), 0};
  return {a.hi - (a.lo == 0 ? 1 : 0), a.lo - 1};
}
constexpr address after(const address &a, family f)
{
  if (f == family::ipv4) return {a.hi + (std::uint64_t{1} << 32), 0};
  return {a.hi + (a.lo == ~std::uint64_t{0} ? 1 : 0), a.lo + 1};
}

struct prefix {
  family fam = family::ipv4;
  address addr;
  std::uint8_t length = 0;

  /// By family, then address, then length: a prefix stands ahead of all that it covers.
  auto operator<=>(const prefix &) const = default;

  constexpr bool covers(const prefix &other) const
  {
    return fam == other.fam && length <= other.length && top_bits(other.addr, length) == addr;
  }
};

constexpr address last_address(const prefix &p) { return fill_behind(p.addr, p.length, p.fam); }

/// Address text as inet_pton takes it; nothing if it is none.
std::optional<address> parse_address(const char *text, family f);

std::string to_string(const address &a, family f);
std::string to_string(const prefix &p);

}  // namespace tarvex::route_load
