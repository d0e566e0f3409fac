// Rows of a report that show entries and actions.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "entry_reader.h"
#include "fields.h"
#include "report.h"

namespace tarvex::shell {

/// Shows the parameters of actions as pairs.
class parameter_pairs {
 public:
  explicit parameter_pairs(bool raw) : raw_(raw) {}
  void show(report &rows, const action_info &action, const std::uint8_t *record);

 private:
  struct known_action {
    const action_info *action;
    std::vector<shown_field> fields;
  };

  const std::vector<shown_field> &fields_of(const action_info &action);

  bool raw_;
  std::vector<known_action> known_;
  std::string text_;
};

/// Shows the key of a table's entries as pairs; what matches anything is left out.
class key_pairs {
 public:
  key_pairs(const table_info &table, bool raw) : fields_(key_fields(table)), raw_(raw) {}

  /// Columns that the longest takes.
  std::size_t width() const;
  void show(report &rows, const table_entry &entry);

  std::span<const shown_field> fields() const { return fields_; }

 private:
  std::vector<shown_field> fields_;
  bool raw_;
  std::string text_;
};

/// The entries of a table. Each key field is a column, but in a table with very many they are pairs in one, and what
/// matches anything is left out.
class entry_rows {
 public:
  entry_rows(output &out, const options &chosen, const table_info &table);

  void show(const table_entry &entry);
  void finish(const std::optional<report::flag> &tail = {}) { rows_.finish(tail); }

 private:
  void show_key(const table_entry &entry);

  const table_info &table_;
  key_pairs key_;
  bool raw_;
  bool key_in_columns_;
  parameter_pairs parameters_;
  report rows_;
  std::string text_;
};

}  // namespace tarvex::shell
