// SPDX-License-Identifier: Apache-2.0
#include "value_writer.h"

#include "value_text.h"

#include <array>
#include <charconv>

namespace tarvex::trace {

namespace {

constexpr std::string_view hexadecimal_digits = "0123456789abcdef";

template <typename Number>
void append_number(std::string &to, Number value)
{
  std::array<char, 32> digits;
  to.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

}  // namespace

void value_writer::separate()
{
  if (!first_) to_ += json_ ? "," : depth_ == 0 ? ", " : " ";
  first_ = false;
}

value_writer &value_writer::member(std::string_view name)
{
  separate();
  if (json_) to_ += '"';
  to_ += name;
  to_ += json_ ? std::string_view("\":") : std::string_view("=");
  return *this;
}

value_writer &value_writer::element()
{
  separate();
  return *this;
}

value_writer &value_writer::open(char bracket)
{
  to_ += bracket;
  ++depth_;
  first_ = true;
  return *this;
}

value_writer &value_writer::close(char bracket)
{
  to_ += bracket;
  --depth_;
  first_ = false;
  return *this;
}

value_writer &value_writer::number(std::uint64_t value)
{
  shell::append_decimal(to_, value);
  return *this;
}

value_writer &value_writer::signed_number(std::int64_t value)
{
  append_number(to_, value);
  return *this;
}

value_writer &value_writer::real(float value)
{
  // JSON has no word for what is no number.
  if (json_ && (value - value) != 0) return name(value > 0 ? "inf" : value < 0 ? "-inf" : "nan");
  append_number(to_, value);
  return *this;
}

value_writer &value_writer::hexadecimal(std::uint64_t value)
{
  if (json_) return number(value);
  shell::append_hexadecimal(to_, value);
  return *this;
}

value_writer &value_writer::bytes(std::span<const std::uint8_t> value)
{
  if (json_) to_ += '"';
  for (const std::uint8_t byte : value) {
    to_ += hexadecimal_digits[byte >> 4];
    to_ += hexadecimal_digits[byte & 15];
  }
  if (json_) to_ += '"';
  return *this;
}

value_writer &value_writer::name(std::string_view value)
{
  if (json_) return quoted(value);
  to_ += value;
  return *this;
}

value_writer &value_writer::quoted(std::string_view value)
{
  to_ += '"';
  for (const char letter : value) {
    const auto code = static_cast<unsigned char>(letter);
    if (letter == '"' || letter == '\\') {
      to_ += '\\';
      to_ += letter;
    } else if (code < 0x20 || code >= 0x7f) {
      to_ += "\\u00";
      to_ += hexadecimal_digits[code >> 4];
      to_ += hexadecimal_digits[code & 15];
    } else {
      to_ += letter;
    }
  }
  to_ += '"';
  return *this;
}

}  // namespace tarvex::trace
