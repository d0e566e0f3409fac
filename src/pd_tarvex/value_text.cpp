// SPDX-License-Identifier: Apache-2.0
#include "value_text.h"

#include "bytes.h"

namespace tarvex::pd {

namespace {

[[gnu::always_inline]] inline std::uint32_t live_word(const text_row &row, const void *record)
{
  switch (row.member_size) {
    case 1: return load_member<1>(record, row.member) & row.live;
    case 2: return load_member<2>(record, row.member) & row.live;
    default: return load_member<4>(record, row.member) & row.live;
  }
}

// The writer goes in and out by value here, so that its position stays in a register from piece to piece.

[[gnu::always_inline]] inline text_writer rows_behind(text_writer to, const text_row *rows, std::size_t count,
                                                      const void *record)
{
  for (std::size_t i = 0; i < count; ++i) {
    const text_row &row = rows[i];
    to.text("0x");
    if (row.member_size == wide_member)
      to.capital_bytes(static_cast<const std::uint8_t *>(record) + row.member, 16);
    else
      to.hex(live_word(row, record), row.digits);
    to.character(',');
  }
  return to;
}

[[gnu::always_inline]] inline text_writer key_behind(text_writer to, const table_text &table, const void *match_spec)
{
  to.text("( ");
  return rows_behind(to, table.rows, table.row_count, match_spec).text("),");
}

[[gnu::always_inline]] inline text_writer action_behind(text_writer to, const action_text &action,
                                                        const void *action_spec)
{
  to.text("('").short_text(action.name()).text("',(");
  return rows_behind(to, action.rows, action.row_count, action_spec).text(")),");
}

/// Nothing for neither a member nor a group.
text_writer pointee_behind(text_writer to, const entry_contents &entry)
{
  if (entry.is_member != 0)
    to.text("('setMbrHdl',(0x").natural_hex(entry.mbr_hdl).text(",))");
  else if (entry.is_group != 0)
    to.text("('setGrpHdl',(0x").natural_hex(entry.grp_hdl).text(",))");
  return to;
}

[[gnu::always_inline]] inline text_writer entry_behind(text_writer to, const table_text &table,
                                                       const entry_contents &entry)
{
  if (!table.keyed || entry.no_key != 0)
    to.text("(),");
  else
    to = key_behind(to, table, entry.key);
  return table.indirect ? pointee_behind(to, entry) : action_behind(to, text_of(entry.action), entry.action.parameters);
}

}  // namespace

std::uint32_t live_value(const text_row &row, const void *record) { return live_word(row, record); }

void put_entry_value(text_writer &to, const table_text &table, const entry_contents &entry)
{
  to = entry_behind(to, table, entry);
}

std::uint32_t match_spec_value(const table_text &table, const void *match_spec, char *buf)
{
  return key_behind(text_writer(buf), table, match_spec).end();
}

std::uint32_t action_value(const action_text &action, const void *action_spec, char *buf)
{
  return action_behind(text_writer(buf), action, action_spec).end();
}

std::uint32_t table_value(const table_text &table, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                          pd_flag8_t read_from_hw, char *buf)
{
  entry_contents entry;
  if (table.read(sess_hdl, dev_id, entry_hdl, read_from_hw, entry) != BF_SUCCESS) return 0;
  text_writer to(buf);
  to.text("((");
  to = entry_behind(to, table, entry);
  if (table.priority)
    to.text("),(").decimal(static_cast<std::int32_t>(entry.priority)).text(",True))");
  else
    to.text("),(0,True))");
  return to.end();
}

}  // namespace tarvex::pd
