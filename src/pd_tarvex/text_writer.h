// Writes text into a buffer that the caller has made large enough: digits, names and constant pieces, without formatted
// output.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tarvex::pd {

class text_writer {
 public:
  explicit text_writer(char *to) : begin_(to), at_(to) {}

  text_writer &text(std::string_view piece)
  {
    std::memcpy(at_, piece.data(), piece.size());
    at_ += piece.size();
    return *this;
  }
  text_writer &character(char c)
  {
    *at_++ = c;
    return *this;
  }
  /// The low `digits` hexadecimal digits, in small letters.
  text_writer &hex(std::uint32_t value, unsigned digits)
  {
    for (unsigned i = digits; i > 0; --i, value >>= 4) at_[i - 1] = small_digits[value & 0xf];
    at_ += digits;
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
  static constexpr char small_digits[] = "0123456789abcdef";
  static constexpr char capital_digits[] = "0123456789ABCDEF";

  text_writer &digits_of(const std::uint8_t *bytes, unsigned count, const char *digits)
  {
    for (unsigned i = 0; i < count; ++i) {
      *at_++ = digits[bytes[i] >> 4];
      *at_++ = digits[bytes[i] & 0xf];
    }
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
