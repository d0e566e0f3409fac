// Snapshots as the driver has them: made, armed, fetched and deleted.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "call_conventions.h"
#include "plain_functions.h"
#include "snapshot_layouts.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

namespace {

/// The driver takes words of 2 to 4 bytes with their bytes the other way round. What belongs to no field stays.
void put_in_driver_order(snap_trig_spec_t &record, const snapshot_layout &layout)
{
  for (const snapshot_field &field : layout.fields) {
    std::uint8_t *const at = record.fields + field.offset;
    if (field.slot() <= 4) std::reverse(at, at + field.slot());
  }
}

constexpr std::uint32_t low_half(std::uint64_t v) { return v & 0xffffu; }

}  // namespace

pd_status_t snapshot_create(pd_dev_tgt_t dev_tgt, pd_stage_t start_stage, pd_stage_t end_stage, uint32_t direction,
                            pd_snapshot_hdl_t *hdl)
{
  return bf_snapshot_create(device_of(dev_tgt), low_half(dev_tgt >> 32), low_byte(start_stage), low_byte(end_stage),
                            direction, hdl);
}

pd_status_t snapshot_delete(pd_snapshot_hdl_t hdl) { return bf_snapshot_delete(hdl); }

pd_status_t snapshot_capture_trigger_set(pd_snapshot_hdl_t hdl, const snap_trig_spec_t *value_rec,
                                         const snap_trig_spec_t *mask_rec)
{
  snap_trig_spec_t value = *value_rec;
  snap_trig_spec_t mask = *mask_rec;
  put_in_driver_order(value, layout_of(hdl));
  put_in_driver_order(mask, layout_of(hdl));
  return bf_snapshot_capture_trigger_set(hdl, &value, &mask);
}

pd_status_t snapshot_capture_data_get(pd_snapshot_hdl_t hdl, pd_pipe_t pipe, void *capture, uint32_t *num_captures)
{
  snap_capture_sizes_t sizes = {capture_record_bytes, 0, snapshot_ctrl_bytes};
  *num_captures = 0;
  return bf_snapshot_capture_get(hdl, low_half(pipe), capture, &sizes, num_captures);
}

uint32_t snapshot_trig_spec_size() { return sizeof(snap_trig_spec_t); }

uint32_t snapshot_capture_data_size() { return snapshot_capture_area_bytes; }

}  // namespace tarvex::pd
