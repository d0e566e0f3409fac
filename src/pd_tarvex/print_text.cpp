// SPDX-License-Identifier: Apache-2.0
#include "print_text.h"

#include "line_writer.h"
#include "value_text.h"

namespace tarvex::pd {

namespace {

std::int32_t print_rows(const text_row *rows, std::size_t count, std::int32_t fd, std::int32_t indent,
                        const void *record)
{
  std::int32_t last = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const text_row &row = rows[i];
    line_writer line(fd);
    line.blank_column(indent).text(" ").text(name_of(row));
    if (row.member_size == wide_member) {
      line.text(": 0x").capital_bytes(static_cast<const std::uint8_t *>(record) + row.member, 16);
    } else {
      if (row.partial) {
        char mask[8];
        text_writer digits(mask);
        line.text(" mask 0x").text({mask, digits.natural_hex(row.live).length()});
      }
      line.text(": 0x").hex(live_value(row, record), row.digits);
    }
    last = line.end();
  }
  return last;
}

}  // namespace

std::int32_t match_spec_print(const table_text &table, std::int32_t fd, std::int32_t indent, const void *match_spec)
{
  line_writer(fd).indent(indent).text(exported_prefix).text(table.name).text("_match_spec_t:").end();
  return print_rows(table.rows, table.row_count, fd, indent, match_spec);
}

std::int32_t action_print(const action_text &action, std::int32_t fd, std::int32_t indent, const void *action_spec)
{
  return print_rows(action.rows, action.row_count, fd, indent, action_spec);
}

}  // namespace tarvex::pd
