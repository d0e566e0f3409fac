// Meter values between the caller's record and the driver's, for the pipeline's own meters.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tarvex_pd/driver_records.h"
#include "tarvex_pd/resource_values.h"

namespace tarvex::pd {

/// The pipeline's own meters have no pre-colour input, so they take colour unaware specs alone.
[[gnu::always_inline]] inline bool own_meter_takes(const pd_meter_spec_t &spec)
{
  return spec.meter_type == PD_METER_TYPE_COLOR_UNAWARE;
}

/// Colour mode for the driver; what is given is one that the meter takes.
[[gnu::always_inline]] inline std::uint32_t get_bytes_meter_type(const pd_meter_spec_t &) { return 1; }

/// Fills the fields of a cleared driver record. Rates are widened, never scaled.
[[gnu::always_inline]] inline void build_meter(drv_meter_spec_t &to, const pd_meter_spec_t &from,
                                               std::uint32_t color_mode, std::uint32_t unit_kind)
{
  to.color_mode = color_mode;
  to.first_unit_kind = unit_kind;
  to.first_rate = from.cir;
  to.first_burst = from.cburst;
  to.second_unit_kind = unit_kind;
  to.second_rate = from.pir;
  to.second_burst = from.pburst;
}

}  // namespace tarvex::pd
