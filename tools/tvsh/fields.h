// Key fields and action parameters as a person sees them: the two halves of a MAC address are one field, and a field
// has its short name where that is clear.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pipeline_rows.h"

namespace tarvex::shell {

using rows::action_info;
using rows::table_info;

__extension__ using wide_number = unsigned __int128;

/// The largest number of so many bits.
constexpr wide_number all_ones(unsigned bits) { return bits >= 128 ? ~wide_number{0} : (wide_number{1} << bits) - 1; }

enum class display_kind : std::uint8_t { number, mac, ipv4, ipv6 };

/// A member of the caller's structure.
struct record_member {
  std::uint16_t at = 0;
  std::uint16_t size = 0;
  std::uint16_t companion = 0;  // mask or prefix length
  std::uint16_t bits = 0;
};

struct shown_field {
  std::string name;
  std::string full_name;
  display_kind display = display_kind::number;
  match_kind match = match_kind::exact;
  unsigned bits = 0;
  std::array<record_member, 2> parts{};  // high part first; the second has size 0 where there is one alone
  wide_number live = all_ones(128);      // bits that the switch matches on; a parameter has no such limit

  bool has_mask() const { return match == match_kind::ternary; }
  bool has_prefix() const { return match == match_kind::lpm; }
  /// Bits that a key or action data has room for. What is above the field's width is kept there, too.
  unsigned held_bits() const { return (bits + 7) / 8 * 8; }
};

std::vector<shown_field> key_fields(const table_info &table);
std::vector<shown_field> parameter_fields(const action_info &action);
/// Fields of a digest's entries; values go through read_value and write_value.
std::vector<shown_field> digest_fields(const rows::digest_info &digest);

/// By short or full name; null where there is none.
const shown_field *find_field(std::span<const shown_field> fields, std::string_view name);
std::vector<std::string_view> field_names(std::span<const shown_field> fields);

/// "dip (32 bits, IPv4 address)"
std::string described(const shown_field &field);

/// Values in the caller's structure. A value above a field's width is for the caller to prevent.
wide_number read_value(const shown_field &field, const std::uint8_t *record);
void write_value(const shown_field &field, wide_number value, std::uint8_t *record);
wide_number read_mask(const shown_field &field, const std::uint8_t *record);
void write_mask(const shown_field &field, wide_number mask, std::uint8_t *record);
unsigned read_prefix_length(const shown_field &field, const std::uint8_t *record);
void write_prefix_length(const shown_field &field, unsigned length, std::uint8_t *record);

}  // namespace tarvex::shell
