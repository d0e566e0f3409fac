// Values that rows write as words.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_values.h"

#include <charconv>

namespace catalogue {

namespace {

constexpr word<storage> storage_words[] = {
    {"u8", storage::u8}, {"u16", storage::u16}, {"u32", storage::u32}, {"u8[16]", storage::bytes16}};

constexpr word<std::string_view> display_words[] = {{"dec", "dec"},     {"mac", "mac"},       {"port", "port"},
                                                    {"vport", "vport"}, {"v4addr", "v4addr"}, {"v6addr", "v6addr"}};

/// Takes a decimal number off the front of `text`; false if there is none.
bool take_number(std::string_view &text, unsigned &number)
{
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failure != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool parse_byte_range(std::string_view text, byte_range &range)
{
  unsigned last = 0;
  if (!take_number(text, range.first)) return false;
  range.count = 1;
  if (text.empty()) return true;
  if (text.front() != '-') return false;
  text.remove_prefix(1);
  if (!take_number(text, last) || !text.empty() || last <= range.first) return false;
  range.count = last - range.first + 1;
  return true;
}

int hex_digit(char c)
{
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

/// "0x7f", without leading zeros.
bool parse_mask(std::string_view text, std::array<std::uint8_t, 16> &mask)
{
  if (!text.starts_with("0x")) return false;
  text.remove_prefix(2);
  if (text.empty() || text.size() > 2 * mask.size() || (text.size() > 1 && text.front() == '0')) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int digit = hex_digit(text[text.size() - 1 - i]);
    if (digit < 0) return false;
    mask[mask.size() - 1 - i / 2] |= static_cast<std::uint8_t>(digit << 4 * (i % 2));
  }
  return true;
}

std::array<std::uint8_t, 16> all_ones(unsigned bits)
{
  std::array<std::uint8_t, 16> mask{};
  for (unsigned i = 0; i < bits && i < 128; ++i) mask[15 - i / 8] |= static_cast<std::uint8_t>(1u << i % 8);
  return mask;
}

/// Whether `mask` has bits beyond `whole`.
bool exceeds(const std::array<std::uint8_t, 16> &mask, const std::array<std::uint8_t, 16> &whole)
{
  for (std::size_t i = 0; i < mask.size(); ++i) {
    if ((mask[i] & ~whole[i]) != 0) return true;
  }
  return false;
}

}  // namespace

storage read_storage(row &r) { return r.choice<storage>("type", storage_words); }

std::string read_display(row &r) { return std::string(r.extra_choice<std::string_view>("display", {}, display_words)); }

byte_range read_byte_range(row &r, std::string_view key, bool may_be_partition)
{
  byte_range range;
  const std::string text = r.text(key);
  if (text.empty()) return range;
  if (may_be_partition && text == "partition") return {0, 2, true};
  if (!parse_byte_range(text, range)) {
    r.error(key, "'" + text + "' is no byte range; write '4', '0-3'" + (may_be_partition ? " or 'partition'" : ""));
  }
  return range;
}

void read_live_mask(row &r, field &f)
{
  const auto whole = all_ones(f.bits);
  f.live = whole;
  f.live_all = !r.optional("live");
  const std::string text = f.live_all ? "" : r.text("live");
  if (text.empty()) return;
  f.live = {};
  if (!parse_mask(text, f.live)) {
    r.error("live", "'" + text + "' is no mask; write '0x' and hexadecimal digits in lower case");
  } else if (f.live == std::array<std::uint8_t, 16>{}) {
    r.error("live", "no bit of the field is live");
  } else if (f.bits != 0 && exceeds(f.live, whole)) {
    r.error("live", "live mask " + text + " is wider than the field's " + std::to_string(f.bits) + " bits");
  } else if (f.live == whole) {
    r.error("live", "live mask " + text + " is the whole field; leave it out");
  }
}

}  // namespace catalogue
