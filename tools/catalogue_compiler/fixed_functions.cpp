// Functions that exist once, whatever the rows: declared and written by hand, listed here for the symbol map and the
// call table.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

void add_fixed_functions(std::vector<exported_function> &to)
{
  const auto fixed = [&to](const std::string &name, result_kind result, std::initializer_list<slot> slots) {
    to.push_back(function_builder("lifecycle", export_prefix + name).result(result, {}).takes(slots));
  };
  fixed("init", result_kind::status, {});
  fixed("cleanup", result_kind::status, {});
  fixed("device_state_cleanup", result_kind::none, {});
  fixed("dev_remove", result_kind::status, {{"whole_dev_id"}});
  fixed("dev_log", result_kind::status, {{"whole_dev_id"}, {"log"}});
  fixed("dev_restore", result_kind::status, {{"whole_dev_id"}, {"log"}});
  fixed("restore_virtual_dev_state", result_kind::status, {{"word"}, {"word"}, {"word"}, {"word"}, {"word"}});
  fixed("action_enum_to_string", result_kind::text, {{"action_enum"}});
  fixed("action_string_to_enum", result_kind::number, {{"action_name"}});
}

}  // namespace catalogue
