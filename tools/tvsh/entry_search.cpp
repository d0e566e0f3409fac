// Entries by handle and by key.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_search.h"

#include <array>

#include "shell_error.h"

namespace tarvex::shell {

using enum argument_kind;

std::span<const std::string_view> entry_name_words(const table_info &table)
{
  static constexpr std::array<std::string_view, 2> names = {"handle", "priority"};
  return std::span(names).first(table.kind == calls::table_kind::ternary ? 2 : 1);
}

void require_priority(const table_info &table, const entry_words &words)
{
  if (table.kind == calls::table_kind::ternary) words.own.required_number("priority", 32);
}

std::uint32_t handle_of(const table_info &table, const entry_words &words, const target &where)
{
  if (const auto handle = words.own.number("handle", 32)) return static_cast<std::uint32_t>(*handle);
  if (!words.has_key) throw argument_error(std::string(table.name) + " has no key: name the entry by handle=");
  require_priority(table, words);
  std::uint32_t handle = 0;
  function_call(function_for(family_id::match_spec_to_entry_hdl, table), where)
      .give(match_spec, words.key.data())
      .give(priority, words.priority())
      .give(entry_hdl_out, &handle)
      .must("looking for " + entry_name(table, words));
  return handle;
}

std::string entry_name(const table_info &table, const entry_words &words)
{
  const auto handle = words.own.number("handle", 32);
  return handle ? "entry " + std::to_string(*handle) + " of " + table.name
                : std::string("the entry of ") + table.name + " with this key";
}

}  // namespace tarvex::shell
