// Entries by handle and by key.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_search.h"

#include <array>
#include <optional>

#include "entry_contents.h"
#include "entry_reader.h"
#include "match_fault.h"
#include "status_text.h"

namespace tarvex::shell {

using enum argument_kind;

std::span<const std::string_view> entry_name_words(const table_info &table)
{
  static constexpr std::array<std::string_view, 2> names = {"handle", "priority"};
  return std::span(names).first(table.kind == table_kind::ternary ? 2 : 1);
}

void require_priority(const table_info &table, const entry_words &words)
{
  if (table.kind == table_kind::ternary) words.own.required_number("priority", 32);
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

namespace {

/// The entry that the switch finds by a key; nothing where it finds none, or cannot tell.
std::optional<std::uint32_t> entry_with(const table_info &table, const record_memory &key, std::uint32_t of_priority,
                                        const target &where)
{
  std::uint32_t handle = 0;
  function_call find(function_for(family_id::match_spec_to_entry_hdl, table), where);
  find.give(match_spec, key.data()).give(priority, of_priority).give(entry_hdl_out, &handle);
  return find.status() == BF_SUCCESS ? std::optional(handle) : std::nullopt;
}

/// Behind a refusal: the entry that has the key already.
std::string entry_in_the_way(const table_info &table, const record_memory &key, std::uint32_t of_priority,
                             const target &where)
try {
  const auto handle = entry_with(table, key, of_priority, where);
  if (!handle) return {};
  entry_reader reader(table, where, false);
  const table_entry &there = reader.read(*handle);
  std::string text = "; in the way is entry " + std::to_string(*handle) + ": " + entry_texts().entry(table, there);
  for (const shown_field &field : key_fields(table)) {
    const std::string why = why_equal(field, key.data(), there.key.data());
    if (!why.empty()) text += "; " + why;
  }
  return text;
} catch (const shell_error &) {
  return {};  // it has gone meanwhile
}

}  // namespace

void require_added(pd_status_t status, const std::string &what, const table_info &table, const record_memory &key,
                   std::uint32_t priority, const target &where)
{
  if (status == BF_SUCCESS) return;
  throw refused_error(status, what, entry_in_the_way(table, key, priority, where));
}

std::string entry_name(const table_info &table, const entry_words &words)
{
  const auto handle = words.own.number("handle", 32);
  return handle ? "entry " + std::to_string(*handle) + " of " + table.name
                : std::string("the entry of ") + table.name + " with this key";
}

}  // namespace tarvex::shell
