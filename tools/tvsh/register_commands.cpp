// Commands on registers: registers, register.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "cells.h"
#include "commands.h"
#include "remembered_writes.h"
#include "value_text.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

constexpr std::array registers_only = {resource_kind::register_};

/// How many values a cell has is the driver's: this is far above what any switch keeps.
constexpr std::size_t most_values = 65536;

}  // namespace

exit_code show_registers(const invocation &call)
{
  if (!call.has(0)) {
    list_resources(call, "registers", registers_only);
    return exit_code::ok;
  }
  const resource_info &reg = resource_named(call.words[0], registers_only);
  call.word(1, "INDEX");
  std::vector<std::uint8_t> values(most_values);
  std::uint32_t count = 0;
  function_call read(function_for(family_id::register_read, reg), call.where());
  read.give(read_flags, std::uint64_t{call.chosen.hardware});
  read.give(register_values_out, values.data()).give(register_value_count_out, &count);
  report rows(call.out, call.chosen, "cells", {{"index", 10}, {"values"}}, {{"register", reg.name}});
  std::string text;
  std::string json;
  for_each_cell(call, reg, read, [&](std::uint32_t cell) {
    read.must(std::string("reading ") + reg.name);
    text.clear();
    json = "[";
    for (std::size_t i = 0; i < count; ++i) {
      if (i != 0) text += ' ', json += ',';
      append_decimal(text, values[i]);
      append_decimal(json, values[i]);
    }
    rows.number(cell).cell_as(text, json += ']').end_row();
  });
  rows.finish();
  return exit_code::ok;
}

exit_code write_register(const invocation &call)
{
  call.expect_at_most(3);
  const resource_info &reg = resource_named(call.word(0, "REGISTER"), registers_only);
  const std::string &cells = call.word(1, "INDEX");
  const std::string &value_word = call.word(2, "VALUE");
  const bool all = cells == "all";
  const std::string what = "writing " + std::string(reg.name);
  if (value_word == "reset") {
    const auto range = all ? std::nullopt : std::optional(parse_cells(cells, call.chosen));
    if (!call.only_checked(what)) reset_register(call, reg, range);
    return exit_code::ok;
  }
  cell_state cell;
  cell.value = static_cast<std::uint8_t>(parse_number(value_word, "value (0, 1 or reset)", 1));
  if (!all) cell.index = parse_index(reg, cells, call.chosen);
  if (!call.only_checked(what)) write_cell(call, reg, cell);
  return exit_code::ok;
}

}  // namespace tarvex::shell
