// Builds the driver's key record from a caller's key structure, and the structure from a record read back.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes.h"
#include "rows.h"
#include "tarvex_pd/driver_records.h"

namespace tarvex::pd {

/// Key record with its bytes, on the stack of one call.
template <const table_row &T>
struct key_record {
  drv_match_spec_t spec;
  std::uint8_t value[T.key_bytes];
  std::uint8_t mask[T.key_bytes];
};

/// Bits of a field of at most 32 bits that its first mask byte keeps in a ternary table; the rest of the field's bytes
/// are kept whole.
constexpr std::uint32_t width_mask(unsigned bits) { return bits >= 32 ? 0xffff'ffffu : (1u << bits) - 1; }

template <const table_row &T, std::size_t I>
[[gnu::always_inline]] inline void build_field(key_record<T> &key, const void *match_spec)
{
  constexpr field_row f = T.fields[I];
  constexpr bool cut = T.kind == table_kind::ternary && f.bits % 8 != 0;
  std::uint8_t *value = key.value + f.key_at;
  std::uint8_t *mask = key.mask + f.key_at;

  if constexpr (f.match == match_kind::partition) {
    std::memset(value, 0, f.key_size);
    std::memset(mask, 0xff, f.key_size);
    key.spec.partition_index = load_member<f.member_size>(match_spec, f.member);
  } else if constexpr (f.key_size == 16) {
    const auto *from = static_cast<const std::uint8_t *>(match_spec);
    std::memcpy(value, from + f.member, 16);
    if constexpr (f.match == match_kind::ternary) {
      std::memcpy(mask, from + f.companion, 16);
      for (unsigned b = 0; b < 16; ++b) value[b] &= mask[b];
    } else {
      std::memset(mask, 0xff, 16);
    }
  } else {
    const std::uint32_t v = load_member<f.member_size>(match_spec, f.member);
    if constexpr (f.match == match_kind::ternary) {
      // The value is cut by the mask as the caller gave it, before the mask is cut to the width.
      const std::uint32_t m = load_member<f.member_size>(match_spec, f.companion);
      put_big_endian<f.key_size>(value, v & m);
      put_big_endian<f.key_size>(mask, cut ? m & width_mask(f.bits) : m);
    } else {
      put_big_endian<f.key_size>(value, v);
      put_big_endian<f.key_size>(mask, cut ? width_mask(f.bits) : 0xffff'ffffu);
    }
  }
}

/// Bits of the first field byte's mask, as a 64-bit big-endian half of a 128-bit field, that a prefix keeps.
constexpr std::uint64_t prefix_mask(unsigned bits) { return bits == 0 ? 0 : ~std::uint64_t{0} << (64 - bits); }

[[gnu::always_inline]] inline void mask_half(std::uint8_t *value, std::uint8_t *mask, unsigned bits)
{
  std::uint64_t m = prefix_mask(bits);
  if constexpr (std::endian::native == std::endian::little) m = __builtin_bswap64(m);
  std::uint64_t v;
  std::memcpy(&v, value, sizeof v);
  v &= m;
  std::memcpy(value, &v, sizeof v);
  std::memcpy(mask, &m, sizeof m);
}

/// Applies the prefix of the lpm field: a longer prefix has the smaller priority number. A prefix beyond the field
/// masks nothing and stands behind every other.
template <const table_row &T>
[[gnu::always_inline]] inline void apply_prefix(key_record<T> &key, const void *match_spec)
{
  constexpr field_row f = T.fields[lpm_field<T>()];
  const std::uint32_t prefix = load_member<2>(match_spec, f.companion);
  if (prefix > f.bits) {
    key.spec.priority = T.key_bits + 1u;
    return;
  }
  key.spec.priority = f.bits - prefix;
  if constexpr (partition_field<T>() != T.field_count) {
    constexpr field_row p = T.fields[partition_field<T>()];
    std::memset(key.mask + p.key_at, 0, p.key_size);
  }
  std::uint8_t *value = key.value + f.key_at;
  std::uint8_t *mask = key.mask + f.key_at;
  if constexpr (f.bits == 32) {
    const std::uint32_t m = static_cast<std::uint32_t>(~std::uint64_t{0} << (32 - prefix));
    put_big_endian<4>(mask, m);
    put_big_endian<4>(value, get_big_endian<4>(value) & m);
  } else {
    static_assert(f.bits == 128);
    mask_half(value, mask, prefix < 64 ? prefix : 64);
    mask_half(value + 8, mask + 8, prefix < 64 ? 0 : prefix - 64);
  }
}

template <const table_row &T, std::size_t... I>
[[gnu::always_inline]] inline void build_fields(key_record<T> &key, const void *match_spec, std::index_sequence<I...>)
{
  (build_field<T, I>(key, match_spec), ...);
}

/// Fills every byte of a key record. `priority` is the caller's, in ternary tables.
template <const table_row &T>
[[gnu::always_inline]] inline void build_key(key_record<T> &key, const void *match_spec, std::uint32_t priority)
{
  key.spec = drv_match_spec_t{};
  key.spec.key_bits = T.key_bits;
  key.spec.key_bytes = T.key_bytes;
  key.spec.key_value = key.value;
  key.spec.key_mask = key.mask;
  build_fields<T>(key, match_spec, field_indices<T>{});
  if constexpr (T.kind == table_kind::ternary) key.spec.priority = priority;
  if constexpr (T.kind == table_kind::lpm) apply_prefix<T>(key, match_spec);
}

template <const field_row &F>
[[gnu::always_inline]] inline void unbuild_bytes(const std::uint8_t *bytes, void *record, std::size_t offset)
{
  if constexpr (F.key_size == 16)
    std::memcpy(static_cast<std::uint8_t *>(record) + offset, bytes + F.key_at, 16);
  else
    store_member<F.member_size>(record, offset, get_big_endian<F.key_size>(bytes + F.key_at));
}

template <const table_row &T, std::size_t I>
[[gnu::always_inline]] inline void unbuild_field(const std::uint8_t *value, std::uint32_t partition, void *match_spec)
{
  static constexpr field_row f = T.fields[I];
  if constexpr (f.match == match_kind::partition)
    store_member<f.member_size>(match_spec, f.member, partition);
  else
    unbuild_bytes<f>(value, match_spec, f.member);
}

/// Clears the caller's structure, room between members included, and fills its value members. What the record points at
/// is looked up once: a store to the structure might change it for all that the compiler knows.
template <const table_row &T>
[[gnu::always_inline]] inline void fill_key(const drv_match_spec_t *spec, void *match_spec)
{
  const std::uint8_t *const value = spec->key_value;
  const std::uint32_t partition = spec->partition_index;
  std::memset(match_spec, 0, T.record_size);
  [&]<std::size_t... I>(std::index_sequence<I...>) __attribute__((always_inline))
  {
    (unbuild_field<T, I>(value, partition, match_spec), ...);
  }
  (field_indices<T>{});
}

/// Prefix length that a mask implies: the field's width less the index of its lowest set bit.
template <std::size_t Bytes>
inline std::uint32_t prefix_length(const std::uint8_t *mask)
{
  for (std::size_t at = Bytes; at-- > 0;)
    if (mask[at] != 0)
      return static_cast<std::uint32_t>(8 * (at + 1)) - static_cast<std::uint32_t>(__builtin_ctz(mask[at]));
  return 0;
}

template <const table_row &T, std::size_t I>
[[gnu::always_inline]] inline void unbuild_companion(const std::uint8_t *mask, void *match_spec)
{
  static constexpr field_row f = T.fields[I];
  if constexpr (f.match == match_kind::ternary)
    unbuild_bytes<f>(mask, match_spec, f.companion);
  else if constexpr (f.match == match_kind::lpm)
    store_member<2>(match_spec, f.companion, prefix_length<f.key_size>(mask + f.key_at));
}

/// Fills the mask and prefix length members; the structure has its values already.
template <const table_row &T>
[[gnu::always_inline]] inline void fill_mask(const drv_match_spec_t *spec, void *match_spec)
{
  const std::uint8_t *const mask = spec->key_mask;
  [&]<std::size_t... I>(std::index_sequence<I...>) __attribute__((always_inline))
  {
    (unbuild_companion<T, I>(mask, match_spec), ...);
  }
  (field_indices<T>{});
}

// The same as one instance for all but the reads that have to be fast.

template <const table_row &T>
[[gnu::noinline]] void unbuild_key(const drv_match_spec_t *spec, void *match_spec)
{
  fill_key<T>(spec, match_spec);
}

template <const table_row &T>
[[gnu::noinline]] void unbuild_mask(const drv_match_spec_t *spec, void *match_spec)
{
  fill_mask<T>(spec, match_spec);
}

}  // namespace tarvex::pd
