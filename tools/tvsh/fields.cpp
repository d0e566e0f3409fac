// Fields from rows, and their values in structures.
//
// SPDX-License-Identifier: Apache-2.0
#include "fields.h"

#include <algorithm>
#include <cstring>

#include "counted.h"

namespace tarvex::shell {

namespace {

/// A joined field is called what the names of both halves begin with, or "mac".
std::string joined_name(std::string_view high, std::string_view low)
{
  const auto end = std::ranges::mismatch(high, low).in1;
  return end == high.begin() ? "mac" : std::string(high.begin(), end);
}

/// Joins the halves of MAC addresses, and leaves a joined field where the first of them stands. `low_half_of` gives the
/// place of the lower half that belongs to a place, or -1.
template <typename LowHalfOf>
void join_halves(std::vector<shown_field> &fields, LowHalfOf low_half_of)
{
  std::vector<bool> joined(fields.size());
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const int low_place = low_half_of(i);
    if (low_place < 0) continue;
    const shown_field high = fields[i];
    const shown_field low = fields[static_cast<std::size_t>(low_place)];
    const std::size_t first = std::min(i, static_cast<std::size_t>(low_place));
    fields[first] = high;
    fields[first].parts[1] = low.parts[0];
    fields[first].live = high.live << low.bits | low.live;
    fields[first].bits += low.bits;
    fields[first].name = joined_name(high.name, low.name);
    fields[first].full_name = joined_name(high.full_name, low.full_name);
    joined[std::max(i, static_cast<std::size_t>(low_place))] = true;
  }
  std::size_t place = 0;
  std::erase_if(fields, [&](const shown_field &) { return joined[place++]; });
  // Half an address on its own is a number.
  for (shown_field &field : fields) {
    if (field.display == display_kind::mac && field.parts[1].size == 0) field.display = display_kind::number;
  }
}

display_kind display_of(const char *name, unsigned bits, match_kind match)
{
  const std::string_view display = name == nullptr ? "" : name;
  // What is matched by its prefix is an address, whatever the rows say of its display.
  if (match == match_kind::lpm && bits == 32) return display_kind::ipv4;
  if (display == "mac") return display_kind::mac;
  if (display == "v4addr" && bits == 32) return display_kind::ipv4;
  return bits == 128 ? display_kind::ipv6 : display_kind::number;
}

wide_number number_of(const std::uint8_t (&bytes)[16])
{
  wide_number number = 0;
  for (const std::uint8_t byte : bytes) number = number << 8 | byte;
  return number;
}

wide_number read_member(const record_member &member, std::uint16_t at, const std::uint8_t *record)
{
  if (member.size > 8) {  // an address, in network order
    wide_number value = 0;
    for (unsigned i = 0; i < member.size; ++i) value = value << 8 | record[at + i];
    return value;
  }
  switch (member.size) {
    case 1: return record[at];
    case 2: {
      std::uint16_t value = 0;
      std::memcpy(&value, record + at, sizeof value);
      return value;
    }
    default: {
      std::uint32_t value = 0;
      std::memcpy(&value, record + at, sizeof value);
      return value;
    }
  }
}

void write_member(const record_member &member, std::uint16_t at, wide_number value, std::uint8_t *record)
{
  if (member.size > 8) {
    for (unsigned i = member.size; i-- > 0; value >>= 8) record[at + i] = static_cast<std::uint8_t>(value);
  } else if (member.size == 1) {
    record[at] = static_cast<std::uint8_t>(value);
  } else if (member.size == 2) {
    const auto narrow = static_cast<std::uint16_t>(value);
    std::memcpy(record + at, &narrow, sizeof narrow);
  } else {
    const auto narrow = static_cast<std::uint32_t>(value);
    std::memcpy(record + at, &narrow, sizeof narrow);
  }
}

/// Values and masks alike: where the parts stand is all that differs.
wide_number read_parts(const shown_field &field, std::uint16_t record_member::*place, const std::uint8_t *record)
{
  wide_number value = read_member(field.parts[0], field.parts[0].*place, record);
  if (field.parts[1].size != 0) {
    value = value << field.parts[1].bits | read_member(field.parts[1], field.parts[1].*place, record);
  }
  return value;
}

void write_parts(const shown_field &field, std::uint16_t record_member::*place, wide_number value, std::uint8_t *record)
{
  if (field.parts[1].size != 0) {
    write_member(field.parts[1], field.parts[1].*place, value & all_ones(field.parts[1].bits), record);
    value >>= field.parts[1].bits;
  }
  write_member(field.parts[0], field.parts[0].*place, value, record);
}

}  // namespace

std::vector<shown_field> key_fields(const table_info &table)
{
  std::vector<shown_field> fields;
  for (const rows::field_info &row : table.fields) {
    fields.push_back({row.short_name,
                      row.name,
                      display_of(row.display, row.bits, row.match),
                      row.match,
                      row.bits,
                      {record_member{row.member, row.member_size, row.companion, row.bits}, record_member{}},
                      number_of(row.live)});
  }
  join_halves(fields, [&](std::size_t i) { return table.fields[i].low_half; });
  // Words of the shell's own, and short names that two fields have, give way to the full name.
  std::vector<bool> taken;
  for (const shown_field &field : fields) {
    taken.push_back((field.name == "priority" && table.kind == table_kind::ternary) ||
                    (field.name == "ttl" && table.idle_time) ||
                    std::ranges::count(fields, field.name, &shown_field::name) > 1);
  }
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (taken[i]) fields[i].name = fields[i].full_name;
  return fields;
}

std::vector<shown_field> parameter_fields(const action_info &action)
{
  std::vector<shown_field> fields;
  for (const rows::param_info &row : action.params) {
    fields.push_back({row.name,
                      row.name,
                      display_of(row.display, row.bits, match_kind::exact),
                      match_kind::exact,
                      row.bits,
                      {record_member{row.member, row.member_size, 0, row.bits}, record_member{}}});
  }
  join_halves(fields, [&](std::size_t i) { return action.params[i].low_half; });
  return fields;
}

std::vector<shown_field> digest_fields(const rows::digest_info &digest)
{
  std::vector<shown_field> fields;
  for (const rows::digest_field_info &row : digest.fields) {
    fields.push_back({row.short_name,
                      row.name,
                      display_kind::number,
                      match_kind::exact,
                      row.bits,
                      {record_member{row.offset, row.size, 0, row.bits}, record_member{}}});
    if (row.low_half >= 0) fields.back().display = display_kind::mac;
  }
  join_halves(fields, [&](std::size_t i) { return digest.fields[i].low_half; });
  return fields;
}

const shown_field *find_field(std::span<const shown_field> fields, std::string_view name)
{
  const auto found =
      std::ranges::find_if(fields, [&](const auto &field) { return field.name == name || field.full_name == name; });
  return found == fields.end() ? nullptr : &*found;
}

std::vector<std::string_view> field_names(std::span<const shown_field> fields)
{
  std::vector<std::string_view> names;
  for (const shown_field &field : fields) names.emplace_back(field.name);
  return names;
}

std::string described(const shown_field &field)
{
  static constexpr std::array<std::string_view, 4> displays = {"", ", MAC address", ", IPv4 address", ", IPv6 address"};
  return field.name + " (" + counted(field.bits, "bit") +
         std::string(displays[static_cast<std::size_t>(field.display)]) + ')';
}

wide_number read_value(const shown_field &field, const std::uint8_t *record)
{
  return read_parts(field, &record_member::at, record);
}

void write_value(const shown_field &field, wide_number value, std::uint8_t *record)
{
  write_parts(field, &record_member::at, value, record);
}

wide_number read_mask(const shown_field &field, const std::uint8_t *record)
{
  return read_parts(field, &record_member::companion, record);
}

void write_mask(const shown_field &field, wide_number mask, std::uint8_t *record)
{
  write_parts(field, &record_member::companion, mask, record);
}

unsigned read_prefix_length(const shown_field &field, const std::uint8_t *record)
{
  std::uint16_t length = 0;
  std::memcpy(&length, record + field.parts[0].companion, sizeof length);
  return length;
}

void write_prefix_length(const shown_field &field, unsigned length, std::uint8_t *record)
{
  const auto narrow = static_cast<std::uint16_t>(length);
  std::memcpy(record + field.parts[0].companion, &narrow, sizeof narrow);
}

}  // namespace tarvex::shell
