// A table's key as its bytes travel in the switch: the fields in the order of the key, each on whole bytes, the most
// significant first. Told here once more, and not by way of the library, so that a key that the library builds wrongly
// does not match.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

namespace tarvex::examples {

using key_bytes = std::vector<std::uint8_t>;

/// The low `bits` bits of a number, as a field of the key holds them.
inline key_bytes number_bytes(std::uint64_t number, unsigned bits)
{
  key_bytes bytes;
  number &= (std::uint64_t{1} << bits) - 1;
  for (unsigned byte = (bits + 7) / 8; byte-- != 0;) bytes.push_back(static_cast<std::uint8_t>(number >> (8 * byte)));
  return bytes;
}

/// One field of the key structure `Key`.
template <typename Key>
class key_field {
 public:
  static constexpr std::uint32_t all_live = 0xffffffff;

  /// A field that matches exactly. The table looks at its `live` bits only.
  template <typename T>
  key_field(T Key::*value, unsigned bits, std::uint32_t live = all_live)
      : value_(offset_of(value)), mask_(no_mask), bits_(bits), live_(number_bytes(live, bits))
  {
  }

  /// A ternary field.
  template <typename T>
  key_field(T Key::*value, T Key::*mask, unsigned bits, std::uint32_t live = all_live)
      : value_(offset_of(value)), mask_(offset_of(mask)), bits_(bits), live_(number_bytes(live, bits))
  {
  }

  /// A ternary address in network order, of whose bytes the first `live_bytes` are looked at.
  key_field(std::uint8_t (Key::*value)[16], std::uint8_t (Key::*mask)[16], unsigned bits, std::size_t live_bytes = 16)
      : value_(offset_of(value)), mask_(offset_of(mask)), bits_(bits), live_(live_bytes, 0xff)
  {
    live_.resize(16);
  }

  key_bytes value(const Key &key) const { return read(key, value_); }
  key_bytes mask(const Key &key) const { return mask_ == no_mask ? width() : read(key, mask_); }
  key_bytes width() const { return bits_ == 128 ? key_bytes(16, 0xff) : number_bytes(all_live, bits_); }
  const key_bytes &live() const { return live_; }

 private:
  static constexpr std::size_t no_mask = SIZE_MAX;

  template <typename T>
  static std::size_t offset_of(T Key::*member)
  {
    const Key key{};
    return static_cast<std::size_t>(reinterpret_cast<const std::uint8_t *>(&(key.*member)) -
                                    reinterpret_cast<const std::uint8_t *>(&key));
  }

  key_bytes read(const Key &key, std::size_t offset) const
  {
    std::array<std::uint8_t, sizeof(Key) + 16> bytes{};  // room to read an address behind any member
    std::memcpy(bytes.data(), &key, sizeof key);
    const std::uint8_t *const from = bytes.data() + offset;
    if (bits_ == 128) return {from, from + 16};
    static_assert(std::endian::native == std::endian::little);
    std::uint32_t number = 0;
    std::memcpy(&number, from, bits_ <= 8 ? 1 : bits_ <= 16 ? 2 : 4);
    return number_bytes(number, bits_);
  }

  std::size_t value_;
  std::size_t mask_;
  unsigned bits_;
  key_bytes live_;
};

/// The fields of a key in the order of its bytes.
template <typename Key>
class key_layout {
 public:
  key_layout(std::initializer_list<key_field<Key>> fields) : fields_(fields) {}

  /// What a packet has, and what a rule asks for where its mask says so.
  key_bytes value(const Key &key) const
  {
    return gather([&](const key_field<Key> &field) { return field.value(key); });
  }
  key_bytes mask(const Key &key) const
  {
    return gather([&](const key_field<Key> &field) { return field.mask(key); });
  }
  key_bytes width() const
  {
    return gather([](const key_field<Key> &field) { return field.width(); });
  }
  key_bytes live() const
  {
    return gather([](const key_field<Key> &field) { return field.live(); });
  }

 private:
  template <typename Bytes>
  key_bytes gather(Bytes bytes_of) const
  {
    key_bytes all;
    for (const auto &field : fields_) {
      const key_bytes bytes = bytes_of(field);
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
    return all;
  }

  std::vector<key_field<Key>> fields_;
};

}  // namespace tarvex::examples
