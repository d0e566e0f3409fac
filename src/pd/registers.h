// The pipeline's registers by name. Their values are 0 or 1, one byte each on the caller's side.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"
#include "counters.h"
#include "register_values.h"
#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

template <const register_row &R>
inline pd_status_t register_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t index, std::uint32_t flags,
                                 std::uint8_t *values, std::uint32_t *value_count)
{
  return read_register_cell(sess_hdl, dev_tgt, R.handle, index, flags & from_hardware_flag, values, value_count);
}

template <const register_row &R>
inline pd_status_t register_range_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t first_index,
                                       std::int32_t count, std::uint32_t flags, std::uint32_t *count_read,
                                       std::uint8_t *values, std::uint32_t *value_count)
{
  return read_register_range(sess_hdl, dev_tgt, R.handle, first_index, count, flags & from_hardware_flag, count_read,
                             values, value_count);
}

template <const register_row &R>
inline pd_status_t register_write(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t index,
                                  const std::uint8_t *value)
{
  drv_stful_spec_t spec = register_slot(*value);
  return pipe_stful_ent_set(sess_hdl, whole_target(dev_tgt), R.handle, index, &spec, 0);
}

template <const register_row &R>
inline pd_status_t register_write_all(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, const std::uint8_t *value)
{
  drv_stful_spec_t spec = register_slot(*value);
  return pipe_stful_table_reset(sess_hdl, whole_target(dev_tgt), R.handle, &spec);
}

template <const register_row &R>
inline pd_status_t register_hw_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, pd_callback_t cb, void *cookie)
{
  return pipe_stful_database_sync(sess_hdl, whole_target(dev_tgt), R.handle, cb, cookie);
}

template <const register_row &R>
inline pd_status_t register_reset_all(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt)
{
  return pipe_stful_table_reset(sess_hdl, whole_target(dev_tgt), R.handle, nullptr);
}

template <const register_row &R>
inline pd_status_t register_range_reset(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t first_index,
                                        std::uint32_t count)
{
  return pipe_stful_table_reset_range(sess_hdl, whole_target(dev_tgt), R.handle, first_index, count, nullptr);
}

}  // namespace tarvex::pd
