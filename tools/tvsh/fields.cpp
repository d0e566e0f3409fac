// Fields from rows, and their values in structures.
//
// SPDX-License-Identifier: Apache-2.0
#include "fields.h"

#include <algorithm>
#include <cstring>

#include "counted.h"

namespace tarvex::shell {

namespace {

constexpr std::string_view oui = "Oui";
constexpr std::string_view station = "Station";

bool same_letters(char left, char right) { return (left | 0x20) == (right | 0x20); }

/// What is left of a name ahead of the name of a half ("oui" and "Oui" are the same); nothing where it is none.
std::string_view before_half(std::string_view name, std::string_view half)
{
  if (name.size() < half.size()) return {};
  const std::string_view end = name.substr(name.size() - half.size());
  return std::equal(end.begin(), end.end(), half.begin(), same_letters) ? name.substr(0, name.size() - half.size())
                                                                        : std::string_view{};
}

bool is_half(std::string_view name, std::string_view half)
{
  return name.size() >= half.size() && before_half(name, half).size() + half.size() == name.size();
}

/// The upper half ends in "Oui", the lower one in "Station", and what stands ahead is the same.
bool are_halves(const shown_field &high, const shown_field &low)
{
  return high.display == display_kind::mac && low.display == display_kind::mac && high.match == low.match &&
         is_half(high.full_name, oui) && is_half(low.full_name, station) &&
         before_half(high.full_name, oui) == before_half(low.full_name, station);
}

std::string joined_name(std::string_view name)
{
  const std::string_view left = before_half(name, oui);
  return left.empty() ? "mac" : std::string(left);
}

void join_halves(std::vector<shown_field> &fields)
{
  for (std::size_t i = 0; i < fields.size(); ++i) {
    for (std::size_t j = i + 1; j < fields.size(); ++j) {
      if (!are_halves(fields[i], fields[j])) continue;
      fields[i].parts[1] = fields[j].parts[0];
      fields[i].live = fields[i].live << fields[j].bits | fields[j].live;
      fields[i].bits += fields[j].bits;
      fields[i].name = joined_name(fields[i].name);
      fields[i].full_name = joined_name(fields[i].full_name);
      fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(j));
      break;
    }
  }
  // Half an address on its own is a number.
  for (shown_field &field : fields) {
    if (field.display == display_kind::mac && field.parts[1].size == 0) field.display = display_kind::number;
  }
}

display_kind display_of(const char *name, unsigned bits, calls::match_kind match)
{
  const std::string_view display = name == nullptr ? "" : name;
  // What is matched by its prefix is an address, whatever the rows say of its display.
  if (match == calls::match_kind::lpm && bits == 32) return display_kind::ipv4;
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
  for (const calls::field_info &row : table.fields) {
    const std::string_view short_name = row.short_name;
    // Words of the shell's own, and names that two fields have, give way to the full name.
    const bool taken =
        (short_name == "priority" && table.kind == calls::table_kind::ternary) ||
        (short_name == "ttl" && table.idle_time) ||
        std::ranges::count_if(table.fields, [&](const auto &other) { return short_name == other.short_name; }) > 1;
    fields.push_back({std::string(taken ? row.name : row.short_name),
                      row.name,
                      display_of(row.display, row.bits, row.match),
                      row.match,
                      row.bits,
                      {record_member{row.member, row.member_size, row.companion, row.bits}, record_member{}},
                      number_of(row.live)});
  }
  join_halves(fields);
  return fields;
}

std::vector<shown_field> parameter_fields(const action_info &action)
{
  std::vector<shown_field> fields;
  for (const calls::param_info &row : action.params) {
    fields.push_back({row.name,
                      row.name,
                      display_of(row.display, row.bits, calls::match_kind::exact),
                      calls::match_kind::exact,
                      row.bits,
                      {record_member{row.member, row.member_size, 0, row.bits}, record_member{}}});
  }
  join_halves(fields);
  return fields;
}

const shown_field *find_field(std::span<const shown_field> fields, std::string_view name)
{
  const auto found =
      std::ranges::find_if(fields, [&](const auto &field) { return field.name == name || field.full_name == name; });
  return found == fields.end() ? nullptr : &*found;
}

std::vector<std::string_view> field_names(std::span<const shown_field> fields) { return names_of(fields); }

std::string described(const shown_field &field)
{
  static constexpr std::array<std::string_view, 4> displays = {"", ", MAC address", ", IPv4 address", ", IPv6 address"};
  return field.name + " (" + counted(field.bits, "bit") +
         std::string(displays[static_cast<std::size_t>(field.display)]) + ')';
}

std::string_view kind_name(calls::match_kind match)
{
  static constexpr std::array<std::string_view, 4> names = {"exact", "ternary", "lpm", "partition"};
  return names[static_cast<std::size_t>(match)];
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
