// A table's key as its bytes travel in the switch: the fields in the order of the key, each on whole bytes, the most
// significant first. Told here once more, and not by way of the library, so that a key that the library builds wrongly
// does not match.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

namespace tarvex::examples {

using key_bytes = std::vector<std::uint8_t>;

/// One field of the key structure `Key`.
template <typename Key>
class key_field {
 public:
  static constexpr std::uint32_t all_live = 0xffffffff;

  /// A field that matches exactly. The table looks at its `live` bits only.
  template <typename T>
  key_field(T Key::*value, unsigned bits, std::uint32_t live = all_live)
      : value_(offset_of(value)), mask_(no_mask), size_(sizeof(T)), bits_(bits), live_(live)
  {
  }

  /// A ternary field.
  template <typename T>
  key_field(T Key::*value, T Key::*mask, unsigned bits, std::uint32_t live = all_live)
      : value_(offset_of(value)), mask_(offset_of(mask)), size_(sizeof(T)), bits_(bits), live_(live)
  {
  }

  /// An address in network order, of whose bytes the first `live_bytes` are looked at.
  key_field(std::uint8_t (Key::*value)[16], std::uint8_t (Key::*mask)[16], unsigned bits, std::uint32_t live_bytes = 16)
      : value_(offset_of(value)), mask_(offset_of(mask)), size_(16), bits_(bits), live_(live_bytes)
  {
  }

  void append_value(const Key &key, key_bytes &to) const { append(key, value_, to); }

  /// As far as the field is wide; all ones where it has no mask.
  void append_mask(const Key &key, key_bytes &to) const
  {
    const std::size_t begin = to.size();
    append_ones(to);
    if (mask_ == no_mask) return;
    key_bytes mask;
    append(key, mask_, mask);
    for (std::size_t i = 0; i < mask.size(); ++i) to[begin + i] &= mask[i];
  }

  void append_ones(key_bytes &to) const
  {
    if (size_ == 16) {
      to.insert(to.end(), 16, 0xff);
    } else {
      append_number(static_cast<std::uint32_t>((std::uint64_t{1} << bits_) - 1), to);
    }
  }

  void append_live(key_bytes &to) const
  {
    if (size_ == 16) {
      for (std::uint32_t i = 0; i < 16; ++i) to.push_back(i < live_ ? 0xff : 0);
    } else {
      append_number(static_cast<std::uint32_t>((std::uint64_t{1} << bits_) - 1) & live_, to);
    }
  }

 private:
  static constexpr std::size_t no_mask = SIZE_MAX;

  template <typename T>
  static std::size_t offset_of(T Key::*member)
  {
    const Key key{};
    return static_cast<std::size_t>(reinterpret_cast<const std::uint8_t *>(&(key.*member)) -
                                    reinterpret_cast<const std::uint8_t *>(&key));
  }

  void append(const Key &key, std::size_t offset, key_bytes &to) const
  {
    const auto *const from = reinterpret_cast<const std::uint8_t *>(&key) + offset;
    if (size_ == 16) {
      to.insert(to.end(), from, from + 16);
      return;
    }
    static_assert(std::endian::native == std::endian::little);
    std::uint32_t number = 0;
    std::memcpy(&number, from, size_);
    append_number(number, to);
  }

  void append_number(std::uint32_t number, key_bytes &to) const
  {
    for (unsigned byte = (bits_ + 7) / 8; byte-- != 0;) to.push_back(static_cast<std::uint8_t>(number >> (8 * byte)));
  }

  std::size_t value_;
  std::size_t mask_;
  std::size_t size_;
  unsigned bits_;
  std::uint32_t live_;
};

/// The fields of a key in the order of its bytes.
template <typename Key>
struct key_layout {
  std::vector<key_field<Key>> fields;

  /// Of a packet: the values as they are.
  key_bytes packet(const Key &key) const
  {
    return gather([&](const auto &field, key_bytes &to) { field.append_value(key, to); });
  }
  key_bytes mask(const Key &key) const
  {
    return gather([&](const auto &field, key_bytes &to) { field.append_mask(key, to); });
  }
  /// Of a rule: what is not under the mask does not count and is 0.
  key_bytes value(const Key &key) const
  {
    key_bytes value = packet(key);
    const key_bytes under = mask(key);
    for (std::size_t i = 0; i < value.size(); ++i) value[i] &= under[i];
    return value;
  }
  key_bytes ones() const
  {
    return gather([](const auto &field, key_bytes &to) { field.append_ones(to); });
  }
  key_bytes live() const
  {
    return gather([](const auto &field, key_bytes &to) { field.append_live(to); });
  }

 private:
  template <typename Append>
  key_bytes gather(Append append) const
  {
    key_bytes bytes;
    for (const auto &field : fields) append(field, bytes);
    return bytes;
  }
};

}  // namespace tarvex::examples
