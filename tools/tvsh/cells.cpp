// Cells by index, and by the entries that they hang on.
//
// SPDX-License-Identifier: Apache-2.0
#include "cells.h"

#include <algorithm>

#include "entry_words.h"
#include "handle_walk.h"
#include "session.h"
#include "value_text.h"

namespace tarvex::shell {

cell_range parse_cells(std::string_view text)
{
  const std::size_t dash = text.find('-');
  cell_range cells;
  cells.first = static_cast<std::uint32_t>(parse_number(text.substr(0, dash), "index", 32));
  cells.last = dash == std::string_view::npos
                   ? cells.first
                   : static_cast<std::uint32_t>(parse_number(text.substr(dash + 1), "index", 32));
  if (cells.last < cells.first) throw usage_error("the range " + std::string(text) + " ends ahead of its beginning");
  return cells;
}

void list_resources(const invocation &call, std::string_view list, std::span<const resource_kind> kinds)
{
  report rows(call.out, call.chosen, list, {{"name", 22}, {"handle", 9}, {"kind", 8}, {"form", 8}, {"table"}});
  for (const resource_info &resource : calls::resources) {
    if (std::ranges::count(kinds, resource.kind) == 0) continue;
    rows.cell(resource.name).hexadecimal(resource.handle).cell(kind_name(resource.kind));
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
  const cell_range cells = parse_cells(command.word(1, "INDEX"));
  for (std::uint64_t index = cells.first; index <= cells.last; ++index) {
    command.shell.check_interrupt();
    call.give(argument_kind::cell_index, index);
    visit(static_cast<std::uint32_t>(index));
  }
}

std::string give_cell(function_call &call, const resource_info &resource, std::string_view word)
{
  const auto assignment = assignment_of(word);
  const bool by_entry = takes(call.function(), argument_kind::entry_hdl);
  if (by_entry != (assignment && assignment->first == "handle")) {
    throw usage_error(
        std::string(resource.name) +
        (by_entry ? std::string(" hangs on the entries of ") + table_of(resource.table).name + ": name one by handle=N"
                  : std::string(" is addressed by an index, not by '") + std::string(word) + '\''));
  }
  const std::string_view number = by_entry ? assignment->second : word;
  const std::uint64_t value = parse_number(number, by_entry ? "handle" : "index", 32);
  call.give(by_entry ? argument_kind::entry_hdl : argument_kind::cell_index, value);
  return std::string(resource.name) + (by_entry ? ", entry " : ", cell ") + std::to_string(value);
}

}  // namespace tarvex::shell
