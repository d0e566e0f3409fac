// Bytes taken apart into numbers, choices and texts; behind their end everything is zero or empty.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarvex::fuzz {

using bytes = std::vector<std::uint8_t>;

class byte_source {
 public:
  explicit byte_source(std::span<const std::uint8_t> content) : rest_(content) {}

  bool empty() const { return rest_.empty(); }

  template <typename T>
  T number()
  {
    T taken = 0;
    fill({reinterpret_cast<std::uint8_t *>(&taken), sizeof taken});
    return taken;
  }
  /// A number from first to last; takes no more bytes than those need.
  template <typename T>
  T in_range(T first, T last)
  {
    const auto span = static_cast<std::uint64_t>(last) - static_cast<std::uint64_t>(first);
    const std::uint64_t taken = span < 0x100     ? number<std::uint8_t>()
                                : span < 0x10000 ? number<std::uint16_t>()
                                                 : number<std::uint64_t>();
    return static_cast<T>(static_cast<std::uint64_t>(first) + (span == ~std::uint64_t{0} ? taken : taken % (span + 1)));
  }
  template <typename List>
  const auto &one_of(const List &list)
  {
    return list[in_range<std::size_t>(0, std::size(list) - 1)];
  }
  bool yes() { return (number<std::uint8_t>() & 1) != 0; }
  /// True `in_256` times of 256; not behind the end.
  bool now_and_then(unsigned in_256) { return !empty() && number<std::uint8_t>() < in_256; }

  /// As many bytes as there are, up to a count.
  std::span<const std::uint8_t> take(std::size_t count)
  {
    const auto taken = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }
  bytes block(std::size_t size)
  {
    bytes filled(size);
    fill(filled);
    return filled;
  }
  void fill(std::span<std::uint8_t> to)
  {
    const auto from = take(to.size());
    std::copy(from.begin(), from.end(), to.begin());
  }
  std::string text(std::size_t longest)
  {
    const auto from = take(in_range<std::size_t>(0, longest));
    return {from.begin(), from.end()};
  }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace tarvex::fuzz
