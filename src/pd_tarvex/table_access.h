// Reads and decodes an entry of one table into the form that all text functions share.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "entry_read.h"
#include "placement_data.h"
#include "profile_read_back.h"
#include "text_rows.h"

namespace tarvex::pd {

template <const table_row &T>
pd_status_t read_contents(const char *function, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                          pd_flag8_t read_from_hw, entry_contents &to)
{
  static_assert(T.record_size <= largest_key_record);
  return get_entry<T>(function, sess_hdl, dev_id, entry_hdl, read_from_hw, to.key, &to.priority, nullptr,
                      to.action.parameters, &to.action.action, &to.no_key);
}

template <const table_row &T>
pd_status_t read_indirect_contents(const char *function, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                   pd_entry_hdl_t entry_hdl, pd_flag8_t read_from_hw, entry_contents &to)
{
  return get_indirect_entry<T>(function, sess_hdl, dev_id, entry_hdl, read_from_hw, to.key, &to.priority, &to.is_member,
                               &to.is_group, &to.grp_hdl, &to.mbr_hdl, &to.no_key);
}

template <const table_row &T>
pd_status_t decode_contents(const char *function, const void *plcmt_data, entry_contents &to)
{
  return get_entry_from_placement<T>(function, plcmt_data, to.key, &to.priority, &to.action, &to.no_key);
}

template <const table_row &T>
pd_status_t decode_indirect_contents(const char *, const void *plcmt_data, entry_contents &to)
{
  return get_indirect_entry_from_placement<T>(plcmt_data, to.key, &to.priority, &to.mbr_hdl, &to.grp_hdl, &to.is_member,
                                              &to.is_group, &to.no_key);
}

}  // namespace tarvex::pd
