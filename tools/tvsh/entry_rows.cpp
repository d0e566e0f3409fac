// Columns of a table's entries, and how an entry fills them.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_rows.h"

#include <algorithm>

#include "value_text.h"

namespace tarvex::shell {

namespace {

/// Key columns that take more than this are no longer read as columns.
constexpr std::size_t widest_key = 100;
constexpr std::size_t handle_width = 10;

bool fits_columns(std::span<const shown_field> fields, bool raw)
{
  std::size_t width = 0;
  for (const shown_field &field : fields) width += std::max(field.name.size(), longest_text(field, raw)) + 2;
  return width <= widest_key;
}

/// Columns that fields take as pairs, one behind the other.
std::size_t longest_pairs(std::span<const shown_field> fields, bool raw)
{
  std::size_t width = 0;
  for (const shown_field &field : fields) width += field.name.size() + longest_text(field, raw) + 2;
  return width == 0 ? 0 : width - 1;
}

std::size_t longest_parameters(const table_info &table, bool raw)
{
  std::size_t longest = 0;
  for (const use_info &use : table.actions)
    longest = std::max(longest, longest_pairs(parameter_fields(*use.action), raw));
  return longest;
}

std::vector<column> columns_of(const table_info &table, std::span<const shown_field> fields, bool raw, bool in_columns)
{
  std::vector<column> columns = {{"handle", handle_width}};
  if (table.kind == table_kind::ternary) columns.push_back({"priority", handle_width});
  if (table.profile == nullptr) {
    std::size_t longest = 0;
    for (const use_info &use : table.actions) longest = std::max(longest, std::string_view(use.action->name).size());
    if (in_columns) {
      for (const shown_field &field : fields) columns.push_back({field.name, longest_text(field, raw)});
    }
    columns.push_back({"action", longest});
    columns.push_back({"parameters", longest_parameters(table, raw)});
  } else {
    for (const shown_field &field : fields) {
      if (in_columns) columns.push_back({field.name, longest_text(field, raw)});
    }
    columns.push_back({"member", handle_width});
    columns.push_back({"group", handle_width});
  }
  if (!in_columns) columns.push_back({"key", 0});
  return columns;
}

}  // namespace

const std::vector<shown_field> &parameter_pairs::fields_of(const action_info &action)
{
  for (const known_action &known : known_) {
    if (known.action == &action) return known.fields;
  }
  known_.push_back({&action, parameter_fields(action)});
  return known_.back().fields;
}

void parameter_pairs::show(report &rows, const action_info &action, const std::uint8_t *record)
{
  rows.begin_pairs();
  for (const shown_field &field : fields_of(action)) {
    text_.clear();
    append_value(text_, field, read_value(field, record), raw_);
    rows.pair(field.name, text_, !raw_ && field.display == display_kind::number);
  }
  rows.end_pairs();
}

std::size_t key_pairs::width() const { return longest_pairs(fields_, raw_); }

void key_pairs::show(report &rows, const table_entry &entry)
{
  rows.begin_pairs();
  for (const shown_field &field : fields_) {
    if (!entry.has_key) break;
    text_.clear();
    const bool number = append_match(text_, field, entry.key.data(), raw_);
    if (text_ != "*") rows.pair(field.name, text_, number);
  }
  rows.end_pairs();
}

entry_rows::entry_rows(output &out, const options &chosen, const table_info &table)
    : table_(table),
      key_(table, chosen.raw),
      raw_(chosen.raw),
      key_in_columns_(fits_columns(key_.fields(), raw_)),
      parameters_(chosen.raw),
      rows_(out, chosen, "entries", columns_of(table, key_.fields(), raw_, key_in_columns_), {{"table", table.name}})
{
}

void entry_rows::show_key(const table_entry &entry)
{
  if (!key_in_columns_) return key_.show(rows_, entry);
  for (const shown_field &field : key_.fields()) {
    if (!entry.has_key) {
      rows_.nothing();
      continue;
    }
    text_.clear();
    const bool number = append_match(text_, field, entry.key.data(), raw_);
    rows_.cell(text_, number);
  }
}

void entry_rows::show(const table_entry &entry)
{
  rows_.number(entry.handle);
  if (table_.kind == table_kind::ternary) rows_.number(entry.priority);
  if (key_in_columns_) show_key(entry);
  if (entry.action != nullptr) {
    rows_.cell(entry.action->name);
    parameters_.show(rows_, *entry.action, entry.parameters.data());
  } else if (entry.is_group) {
    rows_.nothing().number(entry.group);
  } else {
    rows_.number(entry.member).nothing();
  }
  if (!key_in_columns_) show_key(entry);
  rows_.end_row();
}

}  // namespace tarvex::shell
