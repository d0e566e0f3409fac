// Properties and update callbacks of a table, and its handle.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"
#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t set_property(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                       std::uint32_t property, std::uint32_t value,
                                                       std::uint32_t argument)
{
  return pipe_mgr_tbl_set_property(sess_hdl, low_byte(dev_id), T.handle, property, value, argument);
}

/// The driver writes to words of its own; the caller's hold 0xffffffff after a failure.
pd_status_t read_property(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t property, std::uint32_t *value,
                          std::uint32_t *argument, std::uint32_t tbl_hdl);

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_property(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                       std::uint32_t property, std::uint32_t *value,
                                                       std::uint32_t *argument)
{
  return read_property(sess_hdl, dev_id, property, value, argument, T.handle);
}

/// The device goes through with all its 32 bits.
template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t register_mat_update_cb(pd_sess_hdl_t sess_hdl, std::uint32_t dev_id,
                                                                 pd_callback_t cb, void *cookie)
{
  return pipe_register_mat_update_cb(sess_hdl, dev_id, T.handle, cb, cookie);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_mat_table_handle(std::uint32_t *tbl_hdl)
{
  if (tbl_hdl != nullptr) *tbl_hdl = T.handle;
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
