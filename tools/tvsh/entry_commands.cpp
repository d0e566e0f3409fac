// Commands that read entries: dump, show, count, default.
//
// SPDX-License-Identifier: Apache-2.0
#include "commands.h"
#include "entry_rows.h"
#include "entry_search.h"
#include "handle_walk.h"
#include "session.h"
#include "status_text.h"

namespace tarvex::shell {

exit_code dump_entries(const invocation &call)
{
  call.expect_at_most(1);
  const table_info &table = table_named(call.word(0, "TABLE"));
  handle_walk walk = handle_walk::entries(table, call.where());
  entry_reader reader(table, call.where(), call.chosen.hardware);
  std::optional<std::uint32_t> handle = walk.next();  // ahead of the first line: a device may be missing
  entry_rows rows(call.out, call.chosen, table);
  for (; handle; handle = walk.next()) {
    call.shell.check_interrupt();
    const table_entry *const entry = reader.read_if_there(*handle);  // others write to a living switch
    if (entry != nullptr) rows.show(*entry);
  }
  rows.finish();
  return exit_code::ok;
}

exit_code show_entry(const invocation &call)
{
  const table_info &table = table_named(call.word(0, "TABLE"));
  // Whatever key an entry has, looking at it does no harm.
  const entry_words words =
      parse_entry_words(table, call.words.subspan(1), {}, entry_name_words(table), value_source::read_back);
  entry_reader reader(table, call.where(), call.chosen.hardware);
  const table_entry &entry = reader.read(handle_of(table, words, call.where()));
  entry_rows rows(call.out, call.chosen, table);
  rows.show(entry);
  rows.finish();
  return exit_code::ok;
}

exit_code count_entries(const invocation &call)
{
  call.expect_at_most(1);
  report rows(call.out, call.chosen, "counts", {{"table", longest_name(names_of(calls::tables))}, {"entries"}});
  if (call.has(0)) {
    const table_info &table = table_named(call.words[0]);
    rows.cell(table.name).number(entry_count(table, call.where())).end_row();
  } else {
    for (const table_info &table : calls::tables) {
      const std::uint32_t count = entry_count(table, call.where());
      if (count != 0) rows.cell(table.name).number(count).end_row();
    }
  }
  rows.finish();
  return exit_code::ok;
}

exit_code show_default(const invocation &call)
{
  call.expect_at_most(1);
  const table_info &table = table_named(call.word(0, "TABLE"));
  const std::optional<std::uint32_t> handle = default_entry(table, call.where());
  entry_reader reader(table, call.where(), call.chosen.hardware);
  entry_rows rows(call.out, call.chosen, table);
  if (handle) {
    rows.show(reader.read(*handle));
  } else {
    call.out.note(std::string(table.name) + " has no default entry; set-default gives it one");
  }
  rows.finish();
  return exit_code::ok;
}

}  // namespace tarvex::shell
