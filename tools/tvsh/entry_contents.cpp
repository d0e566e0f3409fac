// A field that matches anything is left out, as it may be in a command.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_contents.h"

#include "value_text.h"

namespace tarvex::shell {

const std::vector<shown_field> &known_fields::of(const table_info &table)
{
  if (table_ != &table) {
    table_ = &table;
    of_table_ = key_fields(table);
  }
  return of_table_;
}

const std::vector<shown_field> &known_fields::of(const action_info &action)
{
  const auto found = of_actions_.find(&action);
  return found != of_actions_.end() ? found->second
                                    : of_actions_.emplace(&action, parameter_fields(action)).first->second;
}

std::string entry_texts::key(const table_info &table, const record_memory &record, std::uint32_t priority)
{
  std::string text;
  std::string value;
  for (const shown_field &field : fields_.of(table)) {
    value.clear();
    append_match(value, field, record.data(), false);
    if (value == "*") continue;
    text += ' ';
    text += field.name;
    text += '=';
    text += value;
  }
  if (table.kind == table_kind::ternary) text += " priority=" + std::to_string(priority);
  return text;
}

std::string entry_texts::action(const action_info &what, const record_memory &parameters)
{
  std::string text(1, ' ');
  text += what.name;
  for (const shown_field &field : fields_.of(what)) {
    text += ' ';
    text += field.name;
    text += '=';
    append_value(text, field, read_value(field, parameters.data()), false);
  }
  return text;
}

std::string entry_texts::entry(const table_info &table, const table_entry &what)
{
  std::string text = what.has_key ? key(table, what.key, what.priority) : std::string(" default");
  if (what.action != nullptr) {
    text += action(*what.action, what.parameters);
  } else {
    text += what.is_group ? " group=" + std::to_string(what.group) : " member=" + std::to_string(what.member);
  }
  return text.substr(1);
}

void entry_json::key(const table_info &table, const table_entry &entry)
{
  to_.open("key");
  for (const shown_field &field : fields_.of(table)) {
    value_.clear();
    const bool plain = append_match(value_, field, entry.key.data(), false);
    if (value_ == "*") continue;
    if (plain) {
      to_.plain(field.name, value_);
    } else {
      to_.text(field.name, value_);
    }
  }
  to_.close();
  if (table.kind == table_kind::ternary) to_.number("priority", entry.priority);
}

void entry_json::action(const action_info &what, const record_memory &parameters)
{
  to_.text("action", what.name);
  if (what.params.empty()) return;
  to_.open("parameters");
  for (const shown_field &field : fields_.of(what)) {
    value_.clear();
    append_value(value_, field, read_value(field, parameters.data()), false);
    if (field.display == display_kind::number) {
      to_.plain(field.name, value_);
    } else {
      to_.text(field.name, value_);
    }
  }
  to_.close();
}

}  // namespace tarvex::shell
