// Texts are appended to one string, so that a dump allocates nothing for its lines.
//
// SPDX-License-Identifier: Apache-2.0
#include "value_text.h"

#include <arpa/inet.h>

#include <array>
#include <cctype>
#include <charconv>
#include <optional>

#include "counted.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

void append_mac(std::string &text, std::uint64_t value)
{
  constexpr std::string_view digits = "0123456789abcdef";
  for (int shift = 44; shift >= 0; shift -= 4) {
    text += digits[value >> shift & 15];
    if (shift % 8 == 0 && shift != 0) text += ':';
  }
}

void append_ipv4(std::string &text, std::uint32_t value)
{
  for (int shift = 24; shift >= 0; shift -= 8) {
    append_decimal(text, value >> shift & 0xff);
    if (shift != 0) text += '.';
  }
}

void append_ipv6(std::string &text, wide_number value)
{
  std::array<std::uint8_t, 16> bytes{};
  for (std::size_t i = bytes.size(); i-- > 0; value >>= 8) bytes[i] = static_cast<std::uint8_t>(value);
  std::array<char, INET6_ADDRSTRLEN> shown{};
  text += inet_ntop(AF_INET6, bytes.data(), shown.data(), shown.size());
}

/// Six bytes with ':' or '-' between them, three groups of four digits with '.' between them, or twelve digits alone.
std::optional<wide_number> mac_of(std::string_view text)
{
  std::string digits;
  for (const char letter : text) {
    if (std::isxdigit(static_cast<unsigned char>(letter)) != 0) digits += letter;
  }
  if (digits.size() != 12) return std::nullopt;
  const auto apart = [&digits](std::size_t group, char between) {
    std::string whole = digits.substr(0, group);
    for (std::size_t at = group; at < digits.size(); at += group) (whole += between) += digits.substr(at, group);
    return whole;
  };
  if (text != apart(2, ':') && text != apart(2, '-') && text != apart(4, '.') && text != digits) return std::nullopt;
  std::uint64_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  return value;
}

std::optional<wide_number> address_of(std::string_view text, int family)
{
  std::array<std::uint8_t, 16> bytes{};
  if (inet_pton(family, std::string(text).c_str(), bytes.data()) != 1) return std::nullopt;
  wide_number value = 0;
  for (std::size_t i = 0; i < (family == AF_INET ? 4u : 16u); ++i) value = value << 8 | bytes[i];
  return value;
}

/// Digits in their base; nothing for what is no number or has more than 128 bits.
std::optional<wide_number> number_of(std::string_view text)
{
  unsigned base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    base = 16;
    text.remove_prefix(2);
  }
  if (text.empty()) return std::nullopt;
  wide_number value = 0;
  for (const char &letter : text) {
    unsigned digit = 0;
    if (std::from_chars(&letter, &letter + 1, digit, static_cast<int>(base)).ec != std::errc{}) return std::nullopt;
    if (value > (all_ones(128) - digit) / base) return std::nullopt;
    value = value * base + digit;
  }
  return value;
}

std::string_view example_of(display_kind display)
{
  static constexpr std::array<std::string_view, 4> examples = {"17 or 0x11", "00:1c:73:00:00:01", "10.0.0.1",
                                                               "2001:db8::1"};
  return examples[static_cast<std::size_t>(display)];
}

/// Length of the prefix that a mask is; nothing where it is none.
std::optional<unsigned> prefix_of_mask(wide_number mask, unsigned bits)
{
  unsigned length = 0;
  while (length < bits && (mask >> (bits - 1 - length) & 1) != 0) ++length;
  const wide_number rest = all_ones(bits - length);
  return (mask & rest) == 0 ? std::optional(length) : std::nullopt;
}

bool is_address(const shown_field &field)
{
  return field.display == display_kind::ipv4 || field.display == display_kind::ipv6;
}

unsigned parse_length(const shown_field &field, std::string_view text)
{
  const std::optional<wide_number> length = number_of(text);
  if (!length || *length > field.bits) {
    throw usage_error("field " + described(field) + ": '/" + std::string(text) + "' is no prefix length from 0 to " +
                      std::to_string(field.bits));
  }
  return static_cast<unsigned>(*length);
}

}  // namespace

void append_decimal(std::string &text, std::uint64_t number)
{
  std::array<char, 20> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text.append(digits.data(), end);
}

void append_hexadecimal(std::string &text, wide_number number)
{
  constexpr std::string_view digits = "0123456789abcdef";
  int shift = 124;
  while (shift > 0 && number >> shift == 0) shift -= 4;
  text += "0x";
  for (; shift >= 0; shift -= 4) text += digits[static_cast<std::size_t>(number >> shift & 15)];
}

std::string hexadecimal(wide_number number)
{
  std::string text;
  append_hexadecimal(text, number);
  return text;
}

std::string real_text(float number)
{
  std::array<char, 32> digits;
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

void append_value(std::string &text, const shown_field &field, wide_number value, bool raw)
{
  if (raw) {
    append_hexadecimal(text, value);
    return;
  }
  switch (field.display) {
    case display_kind::number: append_decimal(text, static_cast<std::uint64_t>(value)); break;
    case display_kind::mac: append_mac(text, static_cast<std::uint64_t>(value)); break;
    case display_kind::ipv4: append_ipv4(text, static_cast<std::uint32_t>(value)); break;
    case display_kind::ipv6: append_ipv6(text, value); break;
  }
}

bool append_match(std::string &text, const shown_field &field, const std::uint8_t *record, bool raw)
{
  const bool number = !raw && field.display == display_kind::number;
  if (!field.has_mask()) {
    append_value(text, field, read_value(field, record), raw);
    if (!field.has_prefix()) return number;
    text += '/';
    append_decimal(text, read_prefix_length(field, record));
    return false;
  }
  const wide_number mask = read_mask(field, record);
  const wide_number value = read_value(field, record);
  if (mask == 0 && value == 0) {
    text += '*';
    return false;
  }
  append_value(text, field, value, raw);
  if (mask == all_ones(field.bits)) return number;
  text += '/';
  const auto length = !raw && is_address(field) ? prefix_of_mask(mask, field.bits) : std::nullopt;
  if (length) {
    append_decimal(text, *length);
  } else {
    append_value(text, field, mask, raw || field.display == display_kind::number);
  }
  return false;
}

std::size_t longest_text(const shown_field &field, bool raw)
{
  const std::size_t hexadecimal_digits = 2 + (field.bits + 3) / 4;
  std::size_t value = hexadecimal_digits;
  if (!raw) {
    switch (field.display) {
      case display_kind::number: value = std::to_string(static_cast<std::uint64_t>(all_ones(field.bits))).size(); break;
      case display_kind::mac: value = 17; break;
      case display_kind::ipv4: value = 15; break;
      case display_kind::ipv6: value = 39; break;
    }
  }
  if (field.has_prefix()) return value + 1 + std::to_string(field.bits).size();
  if (!field.has_mask()) return value;
  return value + 1 + (field.display == display_kind::number ? hexadecimal_digits : value);
}

wide_number parse_value(const shown_field &field, std::string_view text, value_source from)
{
  const unsigned bits = from == value_source::typed ? field.bits : field.held_bits();
  std::optional<wide_number> value;
  switch (field.display) {
    case display_kind::number: break;
    case display_kind::mac: value = mac_of(text); break;
    case display_kind::ipv4: value = address_of(text, AF_INET); break;
    case display_kind::ipv6: value = address_of(text, AF_INET6); break;
  }
  // A bare number is no MAC address: 001122334455 would be read as decimal.
  const bool bare = !text.starts_with("0x") && !text.starts_with("0X");
  if (!value && !(field.display == display_kind::mac && bare)) value = number_of(text);
  if (!value) {
    throw usage_error("field " + described(field) + ": '" + std::string(text) + "' is no value of it, such as " +
                      std::string(example_of(field.display)));
  }
  if (*value > all_ones(bits)) {
    throw usage_error(
        "field " + described(field) + ": " + std::string(text) + " is too wide; the largest value is " +
        (bits > 64 ? hexadecimal(all_ones(bits)) : std::to_string(static_cast<std::uint64_t>(all_ones(bits)))));
  }
  return *value;
}

void parse_match(const shown_field &field, std::string_view text, std::uint8_t *record, value_source from)
{
  if (field.has_mask() && text == "*") {
    write_value(field, 0, record);
    write_mask(field, 0, record);
    return;
  }
  const std::size_t slash = text.find('/');
  const wide_number value = parse_value(field, text.substr(0, slash), from);
  if (slash == std::string_view::npos) {
    write_value(field, value, record);
    if (field.has_mask()) write_mask(field, all_ones(field.bits), record);
    if (field.has_prefix()) write_prefix_length(field, field.bits, record);
    return;
  }
  const std::string_view behind = text.substr(slash + 1);
  if (field.has_prefix()) {
    write_prefix_length(field, parse_length(field, behind), record);
  } else if (field.has_mask()) {
    // The mask of a MAC address is shown as one; a length is taken here as behind the others.
    const bool mac_mask = field.display == display_kind::mac && mac_of(behind);
    const bool digits_alone = behind.find_first_not_of("0123456789") == std::string_view::npos;
    const bool length = field.display != display_kind::number && digits_alone && !mac_mask;
    write_mask(field,
               length ? all_ones(field.bits) & ~all_ones(field.bits - parse_length(field, behind))
                      : parse_value(field, behind, from),
               record);
  } else {
    throw usage_error("field " + described(field) + " is matched as a whole: leave out '/" + std::string(behind) +
                      '\'');
  }
  write_value(field, value, record);
}

std::uint64_t parse_number(std::string_view text, std::string_view what, unsigned bits)
{
  const std::optional<wide_number> value = number_of(text);
  if (!value) throw usage_error("'" + std::string(text) + "' is no " + std::string(what) + ", such as 17 or 0x11");
  if (*value > all_ones(bits)) {
    throw usage_error(std::string(what) + ' ' + std::string(text) + " is too wide for " + counted(bits, "bit"));
  }
  return static_cast<std::uint64_t>(*value);
}

}  // namespace tarvex::shell
