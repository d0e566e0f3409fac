// Meters and the WRED block of the pipeline, by name; and any meter or WRED block by handle.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>

#include "call_conventions.h"
#include "meter_records.h"
#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// Fills the caller's record after a successful read; a rate keeps its low 32 bits.
inline void deliver_meter(const drv_meter_spec_t &from, pd_meter_spec_t *to)
{
  to->cir = static_cast<std::uint32_t>(from.first_rate);
  to->cburst = static_cast<std::uint32_t>(from.first_burst);
  to->pir = static_cast<std::uint32_t>(from.second_rate);
  to->pburst = static_cast<std::uint32_t>(from.second_burst);
  to->meter_type = from.color_mode;
}

inline pd_status_t meter_read_indexed(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t meter_hdl,
                                      std::uint32_t index, pd_meter_spec_t *meter_spec)
{
  drv_meter_spec_t found{};
  const pd_status_t status = pipe_mgr_meter_read_entry_idx(sess_hdl, whole_target(dev_tgt), meter_hdl, index, &found);
  if (status == BF_SUCCESS) deliver_meter(found, meter_spec);
  return status;
}

/// A direct meter is set as a resource of its entry, whose action stays as it is.
template <const meter_row &M>
inline pd_status_t meter_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t cell,
                             const pd_meter_spec_t *meter_spec)
{
  if (!own_meter_takes(*meter_spec)) return PD_STATUS_INVALID_ARG;
  const std::uint32_t color_mode = get_bytes_meter_type(*meter_spec);
  if constexpr (M.direct) {
    drv_res_spec_t resource{};
    resource.res_hdl = M.handle;
    resource.res_tag = DRV_RES_ATTACHED;
    build_meter(resource.res_value.meter, *meter_spec, color_mode, DRV_METER_UNIT_BYTES);
    return pipe_mgr_mat_ent_set_resource(sess_hdl, device_of(dev_tgt), M.table, cell, &resource, 1, 0);
  } else {
    drv_meter_spec_t spec{};
    build_meter(spec, *meter_spec, color_mode, DRV_METER_UNIT_BYTES);
    return pipe_mgr_meter_ent_set(sess_hdl, whole_target(dev_tgt), M.handle, cell, &spec, 0);
  }
}

template <const meter_row &M>
inline pd_status_t meter_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t cell,
                              pd_meter_spec_t *meter_spec)
{
  if constexpr (M.direct) {
    drv_meter_spec_t found{};
    const pd_status_t status = pipe_mgr_meter_read_entry(sess_hdl, whole_target(dev_tgt), M.table, cell, &found);
    if (status == BF_SUCCESS) deliver_meter(found, meter_spec);
    return status;
  } else {
    return meter_read_indexed(sess_hdl, dev_tgt, M.handle, cell, meter_spec);
  }
}

inline pd_status_t wred_set_indexed(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t wred_hdl,
                                    std::uint32_t index, const pd_wred_spec_t *wred_spec)
{
  drv_wred_spec_t spec;
  static_assert(sizeof spec == sizeof *wred_spec);
  std::memcpy(&spec, wred_spec, sizeof spec);  // bit for bit, whatever the floats hold
  return pipe_mgr_wred_ent_set(sess_hdl, whole_target(dev_tgt), wred_hdl, index, &spec, 0);
}

template <const meter_row &M>
inline pd_status_t wred_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t index,
                            const pd_wred_spec_t *wred_spec)
{
  return wred_set_indexed(sess_hdl, dev_tgt, M.handle, index, wred_spec);
}

template <const meter_row &M>
inline pd_status_t wred_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t index,
                             pd_wred_spec_t *wred_spec)
{
  drv_wred_spec_t found{};
  const pd_status_t status = pipe_mgr_wred_read_entry_idx(sess_hdl, whole_target(dev_tgt), M.handle, index, &found);
  if (status == BF_SUCCESS) std::memcpy(wred_spec, &found, sizeof found);
  return status;
}

}  // namespace tarvex::pd
