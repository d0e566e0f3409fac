// Scalars between host order and the big-endian bytes of keys and action data.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarvex::pd {

constexpr std::uint16_t big_endian(std::uint16_t v)
{
  return std::endian::native == std::endian::little ? __builtin_bswap16(v) : v;
}
constexpr std::uint32_t big_endian(std::uint32_t v)
{
  return std::endian::native == std::endian::little ? __builtin_bswap32(v) : v;
}

/// The low `Size` bytes of `v`, most significant first.
template <std::size_t Size>
[[gnu::always_inline]] inline void put_big_endian(std::uint8_t *to, std::uint32_t v)
{
  static_assert(Size >= 1 && Size <= 4);
  if constexpr (Size == 1) {
    to[0] = static_cast<std::uint8_t>(v);
  } else if constexpr (Size == 2) {
    const std::uint16_t bytes = big_endian(static_cast<std::uint16_t>(v));
    std::memcpy(to, &bytes, sizeof bytes);
  } else if constexpr (Size == 3) {
    to[0] = static_cast<std::uint8_t>(v >> 16);
    put_big_endian<2>(to + 1, v);
  } else {
    const std::uint32_t bytes = big_endian(v);
    std::memcpy(to, &bytes, sizeof bytes);
  }
}

template <std::size_t Size>
[[gnu::always_inline]] inline std::uint32_t get_big_endian(const std::uint8_t *from)
{
  static_assert(Size >= 1 && Size <= 4);
  if constexpr (Size == 1) {
    return from[0];
  } else if constexpr (Size == 2) {
    std::uint16_t bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return big_endian(bytes);
  } else if constexpr (Size == 3) {
    return static_cast<std::uint32_t>(from[0]) << 16 | get_big_endian<2>(from + 1);
  } else {
    std::uint32_t bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return big_endian(bytes);
  }
}

/// A member of a caller's structure, `Size` bytes at `offset`, widened to 32 bits.
template <std::size_t Size>
[[gnu::always_inline]] inline std::uint32_t load_member(const void *record, std::size_t offset)
{
  static_assert(Size == 1 || Size == 2 || Size == 4);
  const auto *from = static_cast<const std::uint8_t *>(record) + offset;
  if constexpr (Size == 1) {
    return *from;
  } else if constexpr (Size == 2) {
    std::uint16_t v;
    std::memcpy(&v, from, sizeof v);
    return v;
  } else {
    std::uint32_t v;
    std::memcpy(&v, from, sizeof v);
    return v;
  }
}

template <std::size_t Size>
[[gnu::always_inline]] inline void store_member(void *record, std::size_t offset, std::uint32_t v)
{
  static_assert(Size == 1 || Size == 2 || Size == 4);
  auto *to = static_cast<std::uint8_t *>(record) + offset;
  if constexpr (Size == 1) {
    *to = static_cast<std::uint8_t>(v);
  } else if constexpr (Size == 2) {
    const auto half = static_cast<std::uint16_t>(v);
    std::memcpy(to, &half, sizeof half);
  } else {
    std::memcpy(to, &v, sizeof v);
  }
}

}  // namespace tarvex::pd
