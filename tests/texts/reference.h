// All texts once more, plainly, by formatted output: what the library's own digit writers are held against.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "caller.h"

namespace tarvex::test {

using record = std::vector<std::uint8_t>;

/// A line of a schema: a key field, its mask, its prefix length, or a parameter.
struct text_row {
  std::string name, short_name;
  const char *display;
  unsigned bits;
  std::array<std::uint8_t, 16> live;  // most significant byte first
  std::size_t member, size;

  std::uint32_t live_word() const;
  bool partial() const;
  std::string mask() const;
  /// A value of the record, cut and padded; without a comma.
  std::string value(const record &from) const;
};

std::string formatted(const char *format, ...) __attribute__((format(printf, 1, 2)));

const calls::table_info &table_named(const std::string &name);
/// The table with most key fields, and the key of fewest; each has one at least.
const calls::table_info &widest_key();
const calls::table_info &narrowest_key();
/// A profile's indirect table.
const calls::table_info &table_of(const calls::profile_info &profile);
bool keyed(const calls::table_info &table);
std::vector<text_row> rows_of(const calls::table_info &table);
std::vector<text_row> rows_of(const calls::action_info &action);

std::string key_schema(const calls::table_info &table);
std::string action_schema(const calls::action_info &action);
std::string table_schema(const calls::table_info &table);
std::string profile_schema(const calls::profile_info &profile);

std::string key_value(const calls::table_info &table, const record &key);
std::string action_value(const calls::action_info &action, const record &parameters);

std::string key_print(const calls::table_info &table, int indent, const record &key);
std::string action_print(const calls::action_info &action, int indent, const record &parameters);

/// Written with the field's value AND `cut`: always; as a flag, where the mask has the bit too; or for some values.
struct label_piece {
  const char *format;
  const char *field;
  std::uint32_t cut;
  enum { always, flag, some, address } when;
  bool (*wanted)(std::uint32_t value) = nullptr;
};
/// By table; the folder of a pipeline's own tests tells them by hand.
std::map<std::string, std::vector<label_piece>> &told_labels();
/// Label for the counter of an entry, of a table whose label is told.
std::string counter_label(const calls::table_info &table, const record &key);

}  // namespace tarvex::test
