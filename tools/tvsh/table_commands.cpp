// The commands on the tables themselves: tables, schema.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "catalogue.h"
#include "commands.h"
#include "fields.h"
#include "report.h"
#include "text_pattern.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

std::string_view display_name(display_kind display)
{
  static constexpr std::array<std::string_view, 4> names = {"number", "MAC address", "IPv4 address", "IPv6 address"};
  return names[static_cast<std::size_t>(display)];
}

/// The bits that the pipeline matches on; "all" where it is all of them.
std::string live_bits(const shown_field &field)
{
  const wide_number live = field.live & all_ones(field.bits);
  return live == all_ones(field.bits) ? "all" : hexadecimal(live);
}

}  // namespace

exit_code show_tables(const invocation &call)
{
  call.expect_at_most(1);
  const std::vector<const table_info *> tables =
      matching(std::span(calls::tables), call.has(0) ? call.words[0] : "", "table", "'tables' lists all");
  report rows(call.out, call.chosen, "tables",
              {{"table", longest_name(names_of(calls::tables))},
               {"handle", 9},
               {"kind", 7},
               {"fields"},
               {"actions"},
               {"idle"},
               {"profile"}});
  for (const table_info *const each : tables) {
    const table_info &table = *each;
    rows.cell(table.name).handle(table.handle).cell(word_of(table.kind));
    rows.number(key_fields(table).size()).number(table.uses().size()).boolean(table.idle_time);
    if (table.profile != nullptr) {
      rows.cell(table.profile->name);
    } else {
      rows.nothing();
    }
    rows.end_row();
  }
  rows.finish();
  return exit_code::ok;
}

exit_code show_schema(const invocation &call)
{
  call.expect_at_most(1);
  const table_info &table = table_named(call.word(0, "TABLE"));
  const std::vector<shown_field> fields = key_fields(table);
  std::size_t longest_name = std::string_view(table.name).size();
  std::size_t longest_live = 0;
  for (const shown_field &field : fields) {
    longest_name = std::max({longest_name, field.name.size(), field.full_name.size()});
    longest_live = std::max(longest_live, live_bits(field).size());
  }
  std::size_t longest_parameters = 0;
  for (const use_info &use : table.uses()) {
    longest_name = std::max(longest_name, std::string_view(use.action->name).size());
    std::size_t length = 0;
    for (const shown_field &field : parameter_fields(*use.action)) {
      length += (length == 0 ? 0 : 1) + field.name.size() + 1 + std::to_string(field.bits).size();
    }
    longest_parameters = std::max(longest_parameters, length);
  }
  report rows(call.out, call.chosen, "schema",
              {{"row", 6},
               {"name", longest_name},
               {"full_name", longest_name},
               {"match", 9},
               {"bits", 4},
               {"shown_as", 12},
               {"live", longest_live},
               {"default"},
               {"parameters", longest_parameters},
               {"about"}},
              {{"table", table.name}, {"kind", word_of(table.kind)}});
  rows.cell("table").cell(table.name).nothing().nothing().nothing().nothing().nothing().nothing().nothing();
  rows.cell(table.about).end_row();
  for (const shown_field &field : fields) {
    rows.cell("field").cell(field.name).cell(field.full_name).cell(word_of(field.match)).number(field.bits);
    rows.cell(display_name(field.display)).cell(live_bits(field)).end_row();
  }
  for (const use_info &use : table.uses()) {
    rows.cell("action").cell(use.action->name).nothing().nothing().nothing().nothing().nothing();
    rows.boolean(use.is_default).begin_pairs();
    for (const shown_field &field : parameter_fields(*use.action)) {
      rows.pair(field.name, std::to_string(field.bits), true);
    }
    rows.end_pairs().cell(use.action->about).end_row();
  }
  rows.finish();
  return exit_code::ok;
}

}  // namespace tarvex::shell
