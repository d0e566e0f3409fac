// Register values between the caller's flat byte array and the driver's rows of slots.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// A slot with the value 0 or 1.
inline drv_stful_spec_t register_slot(std::uint8_t value)
{
  drv_stful_spec_t spec{};
  spec.bytes[0] = value != 0 ? 1 : 0;
  return spec;
}

/// Reads one index. On success `values` holds the first value of every row, then the second of every row, and so on.
pd_status_t read_register_cell(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t reg_hdl, std::uint32_t index,
                               std::uint32_t from_hardware, std::uint8_t *values, std::uint32_t *value_count);

/// Reads `count` indices in one driver call, each packed like one index, behind one another.
pd_status_t read_register_range(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t reg_hdl,
                                std::uint32_t first_index, std::int32_t count, std::uint32_t from_hardware,
                                std::uint32_t *count_read, std::uint8_t *values, std::uint32_t *value_count);

}  // namespace tarvex::pd
