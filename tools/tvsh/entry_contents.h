// Key and action of an entry, or action of a member, as words of a command and as JSON.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

#include "entry_reader.h"
#include "fields.h"
#include "json_text.h"

namespace tarvex::shell {

/// Fields of the tables and actions that were asked for, found once. Those of a table live until the next one's.
class known_fields {
 public:
  const std::vector<shown_field> &of(const table_info &table);
  const std::vector<shown_field> &of(const action_info &action);

 private:
  const table_info *table_ = nullptr;
  std::vector<shown_field> of_table_;
  std::map<const action_info *, std::vector<shown_field>> of_actions_;
};

class entry_texts {
 public:
  /// " FIELD=VALUE... [priority=N]"
  std::string key(const table_info &table, const record_memory &record, std::uint32_t priority);
  /// " ACTION PARAMETER=VALUE..."
  std::string action(const action_info &what, const record_memory &parameters);
  /// Both, or the member or group that the entry of an indirect table refers to; without a blank ahead.
  std::string entry(const table_info &table, const table_entry &what);

 private:
  known_fields fields_;
};

class entry_json {
 public:
  explicit entry_json(json_objects &to) : to_(to) {}

  /// "key" and "priority"
  void key(const table_info &table, const table_entry &entry);
  /// "action" and "parameters"
  void action(const action_info &what, const record_memory &parameters);

 private:
  json_objects &to_;
  known_fields fields_;
  std::string value_;
};

}  // namespace tarvex::shell
