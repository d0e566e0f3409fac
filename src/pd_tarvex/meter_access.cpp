// Any meter or WRED block by handle. Unlike the pipeline's own meters these may have a pre-colour input.
//
// SPDX-License-Identifier: Apache-2.0
#include "plain_functions.h"

#include "meters.h"

namespace tarvex::pd {

namespace {

/// Colour aware metering needs a colour to start from.
bool meter_takes(const pd_meter_spec_t &spec, bool has_pre_color)
{
  return spec.meter_type == PD_METER_TYPE_COLOR_UNAWARE ||
         (spec.meter_type == PD_METER_TYPE_COLOR_AWARE && has_pre_color);
}

pd_status_t set_any_meter(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t meter_hdl, std::uint32_t index,
                          const pd_meter_spec_t &meter_spec, std::uint32_t has_pre_color, std::uint32_t unit_kind)
{
  if (!meter_takes(meter_spec, has_pre_color != 0)) return PD_STATUS_INVALID_ARG;
  drv_meter_spec_t spec{};
  // The colour mode has the same two values as the meter's type.
  build_meter(spec, meter_spec, meter_spec.meter_type, unit_kind);
  return pipe_mgr_meter_ent_set(sess_hdl, whole_target(dev_tgt), meter_hdl, index, &spec, 0);
}

}  // namespace

pd_status_t bytes_meter_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl, uint32_t index,
                            const pd_meter_spec_t *meter_spec, pd_flag8_t has_pre_color)
{
  return set_any_meter(sess_hdl, dev_tgt, meter_hdl, index, *meter_spec, low_byte(has_pre_color), DRV_METER_UNIT_BYTES);
}

pd_status_t bytes_meter_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl, uint32_t index,
                             pd_meter_spec_t *meter_spec)
{
  return meter_read_indexed(sess_hdl, dev_tgt, meter_hdl, index, meter_spec);
}

pd_status_t packets_meter_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl, uint32_t index,
                              const pd_meter_spec_t *meter_spec, pd_flag8_t has_pre_color)
{
  return set_any_meter(sess_hdl, dev_tgt, meter_hdl, index, *meter_spec, low_byte(has_pre_color),
                       DRV_METER_UNIT_PACKETS);
}

pd_status_t packets_meter_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl, uint32_t index,
                               pd_meter_spec_t *meter_spec)
{
  return meter_read_indexed(sess_hdl, dev_tgt, meter_hdl, index, meter_spec);
}

pd_status_t wred_set(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t wred_hdl, uint32_t index,
                     const pd_wred_spec_t *wred_spec)
{
  return wred_set_indexed(sess_hdl, dev_tgt, wred_hdl, index, wred_spec);
}

}  // namespace tarvex::pd
