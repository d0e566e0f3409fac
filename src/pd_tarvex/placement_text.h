// Placement data as print text and value text, and held against what the hardware has.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text_rows.h"

namespace tarvex::pd {

/// 0, or the driver's status, which a line on `fd` tells too.
pd_status_t plcmt_data_print(const table_text &table, std::int32_t fd, std::int32_t indent, const void *plcmt_data);
pd_status_t adt_plcmt_data_print(const profile_text &profile, std::int32_t fd, std::int32_t indent,
                                 const void *plcmt_data);

/// Length without the NUL; 0 with the buffer untouched if the data cannot be decoded.
std::uint32_t plcmt_data_value(const table_text &table, const void *plcmt_data, char *buf);
std::uint32_t adt_plcmt_data_value(const profile_text &profile, const void *plcmt_data, char *buf);

/// 1 if the entry reads back as the data tells, else 0: also for data that cannot be decoded and for an entry that
/// cannot be read.
std::uint8_t plcmt_data_eq_to_hw(const table_text &table, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                 std::uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, const void *plcmt_data);

}  // namespace tarvex::pd
