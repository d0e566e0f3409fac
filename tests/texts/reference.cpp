// SPDX-License-Identifier: Apache-2.0
#include "reference.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace tarvex::test {

namespace {

std::array<std::uint8_t, 16> all_ones(unsigned bits)
{
  std::array<std::uint8_t, 16> live{};
  for (unsigned bit = 0; bit < bits; ++bit) live[15 - bit / 8] |= static_cast<std::uint8_t>(1U << bit % 8);
  return live;
}

std::string column(const char *word) { return word == nullptr ? "None" : formatted("'%s'", word); }

std::string action_list(std::span<const calls::use_info> uses)
{
  std::vector<const calls::action_info *> sorted;
  for (const auto &use : uses) sorted.push_back(use.action);
  std::ranges::sort(sorted, [](auto *a, auto *b) { return std::strcmp(a->name, b->name) < 0; });
  std::string list = "(";
  for (const auto *action : sorted) list += action_schema(*action) + ",";
  return list + ")";
}

}  // namespace

std::string formatted(const char *format, ...)
{
  std::va_list arguments;
  va_start(arguments, format);
  std::array<char, 8192> text;
  const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return {text.data(), static_cast<std::size_t>(length)};
}

std::uint32_t text_row::live_word() const
{
  return static_cast<std::uint32_t>(live[12] << 24 | live[13] << 16 | live[14] << 8 | live[15]);
}

bool text_row::partial() const { return live != all_ones(bits); }

std::string text_row::mask() const
{
  if (bits < 128) return formatted("0x%x", live_word());
  std::string digits;
  for (const std::uint8_t byte : live) digits += formatted("%02x", byte);
  return "0x" + digits.substr(digits.find_first_not_of('0')) + "L";
}

std::string text_row::value(const record &from) const
{
  if (bits == 128) {
    std::string digits = "0x";
    for (std::size_t i = 0; i < 16; ++i) digits += formatted("%02X", from.at(member + i));
    return digits;
  }
  std::uint32_t word = 0;
  std::memcpy(&word, from.data() + member, size);
  return formatted("0x%0*x", static_cast<int>((bits + 3) / 4), word & live_word());
}

const calls::table_info &table_named(const std::string &name)
{
  return *std::ranges::find(calls::tables, name, &calls::table_info::name);
}

const calls::table_info &widest_key()
{
  return *std::ranges::max_element(calls::tables, {}, [](const auto &table) { return table.fields.size(); });
}

const calls::table_info &narrowest_key()
{
  // A keyless table counts as the widest.
  return *std::ranges::min_element(calls::tables, {}, [](const auto &table) { return table.fields.size() - 1; });
}

const calls::table_info &table_of(const calls::profile_info &profile)
{
  return *std::ranges::find(calls::tables, profile.table, &calls::table_info::handle);
}

bool keyed(const calls::table_info &table) { return table.kind != calls::table_kind::keyless; }

std::vector<text_row> rows_of(const calls::table_info &table)
{
  std::vector<text_row> rows;
  for (const auto &field : table.fields) {
    text_row row{field.name,   field.short_name, field.display, field.bits, std::to_array(field.live),
                 field.member, field.member_size};
    rows.push_back(row);
    if (field.match == calls::match_kind::lpm) {
      rows.push_back({row.name + "_prefix_length", row.short_name + "PrefixLength", nullptr, 16, all_ones(16),
                      field.companion, 2});
    } else if (field.match == calls::match_kind::ternary) {
      rows.push_back(
          {row.name + "_mask", row.short_name + "Mask", nullptr, row.bits, row.live, field.companion, row.size});
    }
  }
  return rows;
}

std::vector<text_row> rows_of(const calls::action_info &action)
{
  std::vector<text_row> rows;
  for (const auto &param : action.params)
    rows.push_back({param.name, "", param.display, param.bits, all_ones(param.bits), param.member, param.member_size});
  return rows;
}

std::string key_schema(const calls::table_info &table)
{
  if (!keyed(table)) return "()";
  std::string text = "(";
  for (const text_row &row : rows_of(table)) {
    text += "( '" + row.short_name + "','" + row.name + "'," + std::to_string(row.bits) + "," + row.mask() + "," +
            column(row.display) + ",None,None),";
  }
  return text + ")";
}

std::string action_schema(const calls::action_info &action)
{
  std::string text = formatted("( ('%s'),(", action.name);
  for (const text_row &row : rows_of(action))
    text += "('" + row.name + "'," + column(row.display) + "," + std::to_string(row.bits) + ",None),";
  return text + "))";
}

std::string table_schema(const calls::table_info &table)
{
  const bool indirect = table.profile != nullptr;
  const std::string head = formatted("( ('%s','mat',(%s,)),", table.name, indirect ? "True" : "False");
  if (!indirect) return head + key_schema(table) + "," + action_list(table.actions) + ")";
  return head + key_schema(table) +
         ",( ('setMbrHdl',(('mbrHdl',None,32,None),)),( 'setGrpHdl', ( ( 'grpHdl', None, 32, None ), ) ) ))";
}

std::string profile_schema(const calls::profile_info &profile) { return action_list(profile.actions); }

std::string key_value(const calls::table_info &table, const record &key)
{
  std::string text = "( ";
  for (const text_row &row : rows_of(table)) text += row.value(key) + ",";
  return text + "),";
}

std::string action_value(const calls::action_info &action, const record &parameters)
{
  std::string text = formatted("('%s',(", action.name);
  for (const text_row &row : rows_of(action)) text += row.value(parameters) + ",";
  return text + ")),";
}

std::string key_print(const calls::table_info &table, int indent, const record &key)
{
  std::string text = formatted("%*s%s%s_match_spec_t:\n", indent, "", prefix().c_str(), table.name);
  for (const text_row &row : rows_of(table)) {
    text += formatted("%*c %s", indent, ' ', row.name.c_str());
    if (row.partial() && row.bits < 128) text += " mask " + row.mask();
    text += ": " + row.value(key) + "\n";
  }
  return text;
}

std::string action_print(const calls::action_info &action, int indent, const record &parameters)
{
  std::string text;
  for (const text_row &row : rows_of(action))
    text += formatted("%*c action_%s: %s\n", indent, ' ', row.name.c_str(), row.value(parameters).c_str());
  return text;
}

}  // namespace tarvex::test
