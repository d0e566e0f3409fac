// SPDX-License-Identifier: Apache-2.0
#include "placement_text.h"

#include "equality.h"
#include "line_writer.h"
#include "print_text.h"
#include "value_text.h"

namespace tarvex::pd {

namespace {

constexpr std::string_view cannot_decode = "cannot decode plcmt_data for ";

void print_action(const action_text &action, std::int32_t fd, std::int32_t indent, const void *parameters)
{
  line_writer(fd).indent(indent).text(action.full_name).text(":").end();
  if (action.row_count > 0) action_print(action, fd, indent, parameters);
}

/// Whether an indirect entry points where the data says. Any group is as good as another.
bool same_pointee(const entry_contents &placed, const entry_contents &hardware)
{
  if (placed.is_member != 0) return hardware.is_member != 0 && placed.mbr_hdl == hardware.mbr_hdl;
  if (placed.is_group != 0) return hardware.is_group != 0;
  return hardware.is_group == 0 && hardware.is_member == 0;
}

bool same_action(const entry_contents &placed, const entry_contents &hardware)
{
  if (placed.action.action != hardware.action.action) return false;
  const action_text &action = text_of(placed.action);
  return action_specs_are_equal(action, placed.action.parameters, hardware.action.parameters) != 0;
}

/// Priorities may differ.
bool same_key(const table_text &table, const entry_contents &placed, const entry_contents &hardware)
{
  if (!table.keyed) return true;
  if (placed.no_key != 0 || hardware.no_key != 0) return placed.no_key != 0 && hardware.no_key != 0;
  return match_specs_are_equal(table, placed.key, hardware.key) != 0;
}

}  // namespace

pd_status_t plcmt_data_print(const table_text &table, std::int32_t fd, std::int32_t indent, const void *plcmt_data)
{
  entry_contents entry;
  const pd_status_t status = table.decode(plcmt_data, entry);
  if (status != BF_SUCCESS) {
    line_writer(fd).text(cannot_decode).text(exported_prefix).text(table.name).end();
    return status;
  }
  if (!table.keyed)
    line_writer(fd).indent(indent).text(exported_prefix).text(table.name).text(":").end();
  else if (entry.no_key == 0)
    match_spec_print(table, fd, indent, entry.key);
  if (!table.indirect) print_action(text_of(entry.action), fd, indent, entry.action.parameters);
  return BF_SUCCESS;
}

pd_status_t adt_plcmt_data_print(const profile_text &profile, std::int32_t fd, std::int32_t indent,
                                 const void *plcmt_data)
{
  plcmt_action_t member;
  const pd_status_t status = profile.decode(plcmt_data, &member);
  if (status != BF_SUCCESS) {
    line_writer(fd).text(cannot_decode).text(exported_prefix).text(profile.name).text("_adt_plcmt_data_print").end();
    return status;
  }
  print_action(text_of(member), fd, indent, member.parameters);
  return BF_SUCCESS;
}

std::uint32_t plcmt_data_value(const table_text &table, const void *plcmt_data, char *buf)
{
  entry_contents entry;
  if (table.decode(plcmt_data, entry) != BF_SUCCESS) return 0;
  text_writer to(buf);
  to.character('(');
  put_entry_value(to, table, entry);
  to.character(')');
  return to.end();
}

std::uint32_t adt_plcmt_data_value(const profile_text &profile, const void *plcmt_data, char *buf)
{
  plcmt_action_t member;
  if (profile.decode(plcmt_data, &member) != BF_SUCCESS) return 0;
  return action_value(text_of(member), member.parameters, buf);
}

std::uint8_t plcmt_data_eq_to_hw(const table_text &table, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t,
                                 pd_entry_hdl_t entry_hdl, const void *plcmt_data)
{
  entry_contents placed;
  if (table.decode(plcmt_data, placed) != BF_SUCCESS) return 0;
  entry_contents hardware;
  if (table.read(sess_hdl, dev_id, entry_hdl, 1, hardware) != BF_SUCCESS) return 0;
  if (!same_key(table, placed, hardware)) return 0;
  const bool same = table.indirect ? same_pointee(placed, hardware) : same_action(placed, hardware);
  return same ? 1 : 0;
}

}  // namespace tarvex::pd
