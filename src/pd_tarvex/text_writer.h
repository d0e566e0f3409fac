// Writes text into a buffer that the caller has made large enough: digits, names and constant pieces, without formatted
// output.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tarvex::pd {

/// The two digits of every byte.
struct hex_digits {
  explicit constexpr hex_digits(const char *of_nibble)
  {
    for (unsigned byte = 0; byte < 256; ++byte) {
      of_byte[byte][0] = of_nibble[byte >> 4];
      of_byte[byte][1] = of_nibble[byte & 0xf];
    }
  }

  char of_byte[256][2]{};
};

class text_writer {
 public:
  explicit text_writer(char *to) : begin_(to), at_(to) {}

  text_writer &text(std::string_view piece)
  {
    std::memcpy(at_, piece.data(), piece.size());
    at_ += piece.size();
    return *this;
  }
  /// A piece whose length only the running program knows, a name or an action's schema: a call of memcpy takes longer
  /// than the copying.
  text_writer &short_text(std::string_view piece)
  {
    if (piece.size() >= 16)
      in_blocks<16>(piece);
    else if (piece.size() >= 8)
      in_blocks<8>(piece);
    else if (piece.size() >= 4)
      in_blocks<4>(piece);
    else
      for (const char c : piece) *at_++ = c;
    return *this;
  }
  text_writer &character(char c)
  {
    *at_++ = c;
    return *this;
  }
  /// The low `digits` hexadecimal digits, 1 to 8, in small letters.
  text_writer &hex(std::uint32_t value, unsigned digits)
  {
    char *to = at_ += digits;
    for (; digits >= 4; digits -= 4, value >>= 16) {
      std::memcpy(to -= 2, small_digits.of_byte[value & 0xff], 2);
      std::memcpy(to -= 2, small_digits.of_byte[value >> 8 & 0xff], 2);
    }
    if (digits >= 2) {
      std::memcpy(to -= 2, small_digits.of_byte[value & 0xff], 2);
      value >>= 8;
    }
    if (digits % 2 != 0) *--to = small_digits.of_byte[value & 0xf][1];
    return *this;
  }
  /// Hexadecimal without leading zeros.
  text_writer &natural_hex(std::uint32_t value)
  {
    unsigned digits = 1;
    while (digits < 8 && value >> (4 * digits) != 0) ++digits;
    return hex(value, digits);
  }
  /// Bytes as they stand, two digits each.
  text_writer &capital_bytes(const std::uint8_t *bytes, unsigned count)
  {
    return digits_of(bytes, count, capital_digits);
  }
  text_writer &small_bytes(const std::uint8_t *bytes, unsigned count) { return digits_of(bytes, count, small_digits); }
  /// Signed decimal, blanks ahead of it up to `width` characters.
  text_writer &decimal(std::int32_t value, unsigned width = 1);
  text_writer &blanks(std::size_t count)
  {
    std::memset(at_, ' ', count);
    at_ += count;
    return *this;
  }

  std::uint32_t length() const { return static_cast<std::uint32_t>(at_ - begin_); }
  /// Ends the text; the length does not count the NUL.
  std::uint32_t end()
  {
    *at_ = '\0';
    return length();
  }

 private:
  static constexpr hex_digits small_digits{"0123456789abcdef"};
  static constexpr hex_digits capital_digits{"0123456789ABCDEF"};

  /// Copies a piece of at least a block; the last block overlaps the one ahead of it.
  template <std::size_t Size>
  void in_blocks(std::string_view piece)
  {
    const std::size_t last = piece.size() - Size;
    for (std::size_t at = 0; at < last; at += Size) std::memcpy(at_ + at, piece.data() + at, Size);
    std::memcpy(at_ + last, piece.data() + last, Size);
    at_ += piece.size();
  }

  text_writer &digits_of(const std::uint8_t *bytes, unsigned count, const hex_digits &digits)
  {
    for (unsigned i = 0; i < count; ++i, at_ += 2) std::memcpy(at_, digits.of_byte[bytes[i]], 2);
    return *this;
  }

  char *begin_;
  char *at_;
};

inline text_writer &text_writer::decimal(std::int32_t value, unsigned width)
{
  char digits[11];
  unsigned count = 0;
  const bool negative = value < 0;
  std::uint32_t rest = negative ? 0u - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
  do {
    digits[count++] = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (negative) digits[count++] = '-';
  if (width > count) blanks(width - count);
  while (count > 0) *at_++ = digits[--count];
  return *this;
}

}  // namespace tarvex::pd
