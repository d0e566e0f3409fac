// Cells by index, and by the entries that they hang on.
//
// SPDX-License-Identifier: Apache-2.0
#include "cells.h"

#include <algorithm>

#include "entry_reader.h"
#include "entry_search.h"
#include "handle_walk.h"
#include "session.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

void require_likely(std::uint32_t index, const options &chosen)
{
  if (index < unlikely_index || chosen.force) return;
  throw usage_error("index " + std::to_string(index) + " is beyond what switches have cells for, 0 to " +
                    std::to_string(unlikely_index - 1) + "; add --force if this one has it");
}

}  // namespace

cell_range parse_cells(std::string_view text, const options &chosen)
{
  const std::size_t dash = text.find('-');
  cell_range cells;
  cells.first = static_cast<std::uint32_t>(parse_number(text.substr(0, dash), "index", 32));
  cells.last = dash == std::string_view::npos
                   ? cells.first
                   : static_cast<std::uint32_t>(parse_number(text.substr(dash + 1), "index", 32));
  if (cells.last < cells.first) throw usage_error("the range " + std::string(text) + " ends ahead of its beginning");
  require_likely(cells.last, chosen);
  return cells;
}

void list_resources(const invocation &call, std::string_view list, std::span<const resource_kind> kinds)
{
  report rows(call.out, call.chosen, list,
              {{"name", longest_name(names_of(calls::resources))}, {"handle", 9}, {"kind", 8}, {"form", 8}, {"table"}});
  for (const resource_info &resource : calls::resources) {
    if (std::ranges::count(kinds, resource.kind) == 0) continue;
    rows.cell(resource.name).handle(resource.handle).cell(word_of(resource.kind));
    rows.cell(resource.direct ? "direct" : "indirect");
    if (resource.table != 0) {
      rows.cell(table_of(resource.table).name);
    } else {
      rows.nothing();
    }
    rows.end_row();
  }
  rows.finish();
}

void for_each_cell(const invocation &command, const resource_info &resource, function_call &call,
                   const std::function<void(std::uint32_t)> &visit)
{
  if (takes(call.function(), argument_kind::entry_hdl)) {
    command.expect_at_most(1);
    handle_walk walk = handle_walk::entries(table_of(resource.table), command.where());
    while (const auto handle = walk.next()) {
      command.shell.check_interrupt();
      call.give(argument_kind::entry_hdl, *handle);
      visit(*handle);
    }
    return;
  }
  command.expect_at_most(2);
  const cell_range cells = parse_cells(command.word(1, "INDEX"), command.chosen);
  for (std::uint64_t index = cells.first; index <= cells.last; ++index) {
    command.shell.check_interrupt();
    call.give(argument_kind::cell_index, index);
    visit(static_cast<std::uint32_t>(index));
  }
}

std::uint32_t parse_index(const resource_info &resource, std::string_view word, const options &chosen)
{
  if (word.find('=') != std::string_view::npos) {
    throw usage_error(std::string(resource.name) + " is addressed by an index, not by '" + std::string(word) + '\'');
  }
  const auto index = static_cast<std::uint32_t>(parse_number(word, "index", 32));
  require_likely(index, chosen);
  return index;
}

carrying_entry carrying_entry_of(const invocation &call, const resource_info &resource,
                                 std::span<const std::string_view> allowed)
{
  const table_info &table = table_of(resource.table);
  if (call.word(1, "ENTRY") == "default") {
    const auto handle = default_entry(table, call.where());
    if (!handle) throw usage_error(std::string(table.name) + " has no default entry; set-default gives it one");
    return {*handle, parse_own_words(call.words.subspan(2), allowed)};
  }
  if (!assignment_of(call.words[1])) {
    throw usage_error(std::string(resource.name) + " hangs on the entries of " + table.name +
                      ": name one by handle=N or by its key, or 'default'");
  }
  const auto naming = entry_name_words(table);
  std::vector<std::string_view> all(naming.begin(), naming.end());
  all.insert(all.end(), allowed.begin(), allowed.end());
  entry_words words = parse_entry_words(table, call.words.subspan(1), {}, all, source_of(call.chosen));
  return {handle_of(table, words, call.where()), std::move(words.own)};
}

}  // namespace tarvex::shell
