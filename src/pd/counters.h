// Counters: read, write and synchronisation with the hardware. A direct counter is addressed by match table and entry,
// an indirect one by its own handle and an index.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"
#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// The only flag of reads: synchronise, or read the hardware, first.
inline constexpr std::uint32_t from_hardware_flag = 1;

template <const counter_row &C>
inline pd_status_t sync_counter_cell(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t cell)
{
  if constexpr (C.direct)
    return pipe_mgr_direct_stat_ent_database_sync(sess_hdl, whole_target(dev_tgt), C.handle, cell);
  else
    return pipe_mgr_stat_ent_database_sync(sess_hdl, whole_target(dev_tgt), C.handle, cell);
}

template <const counter_row &C>
inline pd_status_t counter_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t cell, std::uint32_t flags,
                                pd_counter_value_t *value)
{
  if ((flags & from_hardware_flag) != 0) {
    const pd_status_t status = sync_counter_cell<C>(sess_hdl, dev_tgt, cell);
    if (status != BF_SUCCESS) return status;
  }
  drv_stat_data_t data{};
  pd_status_t status;
  if constexpr (C.direct)
    status = pipe_mgr_mat_ent_direct_stat_query(sess_hdl, device_of(dev_tgt), C.handle, cell, &data);
  else
    status = pipe_mgr_stat_ent_query(sess_hdl, whole_target(dev_tgt), C.handle, cell, &data);
  if (status != BF_SUCCESS) return status;
  value->packets = data.packets;
  value->bytes = data.bytes;
  return BF_SUCCESS;
}

template <const counter_row &C>
inline pd_status_t counter_write(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t cell,
                                 const pd_counter_value_t &value)
{
  drv_stat_data_t data{};
  data.packets = value.packets;
  data.bytes = value.bytes;
  if constexpr (C.direct)
    return pipe_mgr_mat_ent_direct_stat_set(sess_hdl, device_of(dev_tgt), C.handle, cell, &data);
  else
    return pipe_mgr_stat_ent_set(sess_hdl, whole_target(dev_tgt), C.handle, cell, &data);
}

template <const counter_row &C>
inline pd_status_t counter_hw_sync(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, pd_callback_t cb, void *cookie)
{
  if constexpr (C.direct)
    return pipe_mgr_direct_stat_database_sync(sess_hdl, whole_target(dev_tgt), C.handle, cb, cookie);
  else
    return pipe_mgr_stat_database_sync(sess_hdl, whole_target(dev_tgt), C.handle, cb, cookie);
}

}  // namespace tarvex::pd
