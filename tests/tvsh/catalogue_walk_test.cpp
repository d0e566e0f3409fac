// Every table with every action through the shell: what is added comes back as it was typed, each field with a value of
// its own.
//
// SPDX-License-Identifier: Apache-2.0
#include "made_up_words.h"
#include "shell_fixture.h"

namespace tarvex::shell {
namespace {

class catalogue_walk : public shell_test {};

TEST_F(catalogue_walk, entries_come_back_as_they_were_typed)
{
  unsigned number = 0;
  for (const table_info &table : calls::tables) {
    if (table.fields.empty() || table.profile != nullptr) continue;
    for (const use_info &use : table.actions) {
      ++number;
      const std::string key = key_words_of(table, number);
      const std::string parameters = words_of(parameter_fields(*use.action), number + 100);
      const std::string action = ' ' + std::string(use.action->name) + parameters;
      const std::string rest = meter_words_of(use);
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
      lines_of("set-default " + std::string(table.name) + ' ' + use.action->name +
               words_of(parameter_fields(*use.action), 7) + meter_words_of(use));
      EXPECT_NE(lines_of("default " + std::string(table.name)).find(use.action->name), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace tarvex::shell
