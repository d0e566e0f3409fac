// What a tool calls that holds only a number: finds the table or profile of a handle and does there what was asked.
//
// SPDX-License-Identifier: Apache-2.0
#include "plain_functions.h"

#include "line_writer.h"
#include "placement_text.h"
#include "profile_read_back.h"
#include "schema_text.h"
#include "text_tables.h"
#include "value_text.h"

namespace tarvex::pd {

namespace {

constexpr std::uint32_t no_handle = 0xffff'ffffu;

/// An unknown handle is told as a line; the result is the number of its characters.
pd_status_t print_not_found(std::int32_t fd, std::uint32_t handle)
{
  return static_cast<pd_status_t>(line_writer(fd).text("0x").hex(handle, 8).text(" table not found").end());
}

}  // namespace

pd_status_t entry_hdl_first(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, pd_entry_hdl_t *entry_hdl)
{
  if (find_table_text(tbl_hdl) != nullptr)
    return pipe_mgr_get_first_entry_handle(sess_hdl, tbl_hdl, whole_target(dev_tgt), entry_hdl);
  *entry_hdl = no_handle;
  return BF_SUCCESS;
}

pd_status_t entry_hdl_next(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                           uint32_t n, pd_entry_hdl_t *next_entry_hdls)
{
  if (find_table_text(tbl_hdl) != nullptr)
    return pipe_mgr_get_next_entry_handles(sess_hdl, tbl_hdl, whole_target(dev_tgt), entry_hdl, n, next_entry_hdls);
  next_entry_hdls[0] = no_handle;
  return BF_SUCCESS;
}

pd_status_t entry_hdl_default(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, pd_entry_hdl_t *entry_hdl)
{
  if (find_table_text(tbl_hdl) != nullptr)
    return pipe_mgr_table_get_default_entry_handle(sess_hdl, whole_target(dev_tgt), tbl_hdl, entry_hdl);
  *entry_hdl = no_handle;
  return BF_SUCCESS;
}

/// The one handle dispatcher that has a status for an unknown handle.
pd_status_t member_hdl_next(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t adt_hdl, pd_mbr_hdl_t mbr_hdl,
                            uint32_t n, pd_mbr_hdl_t *next_mbr_hdls)
{
  if (find_profile_text(adt_hdl) != nullptr)
    return pipe_mgr_get_next_entry_handles(sess_hdl, adt_hdl, whole_target(dev_tgt), mbr_hdl, n, next_mbr_hdls);
  next_mbr_hdls[0] = no_handle;
  return no_handle;
}

uint32_t entry_value(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                     pd_flag8_t read_from_hw, char *buf)
{
  const table_text *table = find_table_text(tbl_hdl);
  return table == nullptr ? 0 : table_value(*table, sess_hdl, dev_id, entry_hdl, read_from_hw, buf);
}

int32_t cli_schema(uint32_t handle, char *buf)
{
  if (const table_text *table = find_table_text(handle)) return table_schema(*table, buf);
  if (const profile_text *profile = find_profile_text(handle)) return profile_schema(*profile, buf);
  return static_cast<std::int32_t>(text_writer(buf).text("()").end());
}

pd_status_t plcmt_data_print(int32_t fd, int32_t indent, uint32_t tbl_hdl, const void *plcmt_data)
{
  const table_text *table = find_table_text(tbl_hdl);
  return table == nullptr ? print_not_found(fd, tbl_hdl) : plcmt_data_print(*table, fd, indent, plcmt_data);
}

pd_status_t adt_plcmt_data_print(int32_t fd, int32_t indent, uint32_t adt_hdl, const void *plcmt_data)
{
  const profile_text *profile = find_profile_text(adt_hdl);
  return profile == nullptr ? print_not_found(fd, adt_hdl) : adt_plcmt_data_print(*profile, fd, indent, plcmt_data);
}

uint32_t plcmt_data_value(uint32_t tbl_hdl, const void *plcmt_data, char *buf)
{
  const table_text *table = find_table_text(tbl_hdl);
  return table == nullptr ? 0 : plcmt_data_value(*table, plcmt_data, buf);
}

uint32_t adt_plcmt_data_value(uint32_t adt_hdl, const void *plcmt_data, char *buf)
{
  const profile_text *profile = find_profile_text(adt_hdl);
  return profile == nullptr ? 0 : adt_plcmt_data_value(*profile, plcmt_data, buf);
}

uint8_t plcmt_data_eq_to_hw(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                            const void *plcmt_data)
{
  const table_text *table = find_table_text(tbl_hdl);
  return table == nullptr ? std::uint8_t{0}
                          : plcmt_data_eq_to_hw(*table, sess_hdl, dev_id, tbl_hdl, entry_hdl, plcmt_data);
}

uint32_t stringify_counter_matchspec(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t tbl_hdl,
                                     pd_entry_hdl_t entry_hdl, char *buf)
{
  for (const counter_label_row *label : counter_labels)
    if (label->table->handle == tbl_hdl) return entry_counter_label(*label, sess_hdl, dev_id, entry_hdl, buf);
  return 0;
}

}  // namespace tarvex::pd
