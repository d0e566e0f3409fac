// Value text: keys, actions and whole entries as literals whose columns line up with the schema text.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text_rows.h"
#include "text_writer.h"

namespace tarvex::pd {

/// A member's value, cut to its live bits; for members of up to 4 bytes.
std::uint32_t live_value(const text_row &row, const void *record);

/// Key and action, or the member or group that an indirect entry points at; without a NUL.
void put_entry_value(text_writer &to, const table_text &table, const entry_contents &entry);

// Lengths without the NUL.
std::uint32_t match_spec_value(const table_text &table, const void *match_spec, char *buf);
std::uint32_t action_value(const action_text &action, const void *action_spec, char *buf);
/// 0 with the buffer untouched if the entry cannot be read.
std::uint32_t table_value(const table_text &table, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                          pd_flag8_t read_from_hw, char *buf);

}  // namespace tarvex::pd
