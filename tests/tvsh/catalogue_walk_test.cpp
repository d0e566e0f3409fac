// Every table with every action through the shell: what is added comes back as it was typed, each field with a value of
// its own.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_words.h"
#include "fields.h"
#include "shell_fixture.h"
#include "value_text.h"

namespace tarvex::shell {
namespace {

/// A value that hardly any other field of the row has, as wide as the field.
std::string own_value(const shown_field &field, unsigned number)
{
  std::string text;
  const wide_number spread = wide_number{0x9e3779b97f4a7c15} << 64 | 0xf39cc0605cedc835;
  append_value(text, field, (spread * (number + 1) >> (128 - field.bits)) & all_ones(field.bits), false);
  return text;
}

std::string words_of(std::span<const shown_field> fields, unsigned number)
{
  std::string text;
  for (const shown_field &field : fields) {
    text += ' ' + field.name + '=' + own_value(field, number);
    ++number;
    if (field.has_prefix()) text += '/' + std::to_string(field.bits);
  }
  return text;
}

class catalogue_walk : public shell_test {};

TEST_F(catalogue_walk, entries_come_back_as_they_were_typed)
{
  unsigned number = 0;
  for (const table_info &table : calls::tables) {
    if (table.fields.empty() || table.profile != nullptr) continue;
    for (const use_info &use : table.actions) {
      ++number;
      const std::string key = words_of(key_fields(table), number) +
                              (table.kind == calls::table_kind::ternary ? " priority=" + std::to_string(number) : "");
      const std::string parameters = words_of(parameter_fields(*use.action), number + 100);
      const bool meter = use.resources.size() == 1 && use.resources[0].form == calls::resource_form::direct_meter;
      const std::string action = ' ' + std::string(use.action->name) + parameters;
      const std::string rest = meter ? " cir=1 cburst=2 pir=3 pburst=4" : "";
      const std::string name(table.name);
      handle_of_new("add " + name + key + action + rest);
      const std::string shown = lines_of("show " + name + key);
      EXPECT_NE(shown.find(use.action->name), std::string::npos) << name << ' ' << shown;
      EXPECT_NE(shown.find(parameters.empty() ? "" : parameters.substr(1)), std::string::npos) << name << shown;
      for (const shown_field &field : key_fields(table)) {
        const std::size_t at = key.find(' ' + field.name + '=') + field.name.size() + 2;
        EXPECT_NE(shown.find(key.substr(at, key.find(' ', at) - at)), std::string::npos) << name << ' ' << field.name;
      }
      lines_of("modify " + name + key + action + rest);
      lines_of("delete " + name + key);
    }
    EXPECT_EQ(lines_of("dump " + std::string(table.name)), "");
  }
}

TEST_F(catalogue_walk, every_default_action_can_be_set)
{
  for (const table_info &table : calls::tables) {
    for (const use_info &use : table.actions) {
      if (!use.is_default) continue;
      const bool meter = use.resources.size() == 1 && use.resources[0].form == calls::resource_form::direct_meter;
      lines_of("set-default " + std::string(table.name) + ' ' + use.action->name +
               words_of(parameter_fields(*use.action), 7) + (meter ? " cir=1 cburst=2 pir=3 pburst=4" : ""));
      EXPECT_NE(lines_of("default " + std::string(table.name)).find(use.action->name), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace tarvex::shell
