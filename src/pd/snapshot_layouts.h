// The fields that a snapshot holds, a list for each direction: trigger records and captures are packed in its order.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "plain_functions.h"

namespace tarvex::pd {

struct snapshot_field {
  const char *name;
  std::uint16_t offset;
  std::uint16_t size;  // 1, 2, 3, 4 or 16

  /// Bytes that it takes: one of 3 bytes is held in a word.
  constexpr std::size_t slot() const { return size == 3 ? 4 : size; }
};

struct snapshot_layout {
  std::span<const snapshot_field> fields;
  std::span<const std::uint16_t> by_name;  // places of the fields, in ascending order of their names
};

inline constexpr std::size_t snapshot_layout_count = 2;

/// Ingress, egress. Generated.
extern const snapshot_layout snapshot_layouts[snapshot_layout_count];

/// The handle tells the direction of a snapshot, and nothing else does.
inline std::uint32_t layout_number(pd_snapshot_hdl_t hdl)
{
  return (hdl & snapshot_egress_bit) != 0 ? snapshot_egress : snapshot_ingress;
}
inline const snapshot_layout &layout_of(pd_snapshot_hdl_t hdl) { return snapshot_layouts[layout_number(hdl)]; }

inline constexpr std::size_t capture_record_bytes = snapshot_ctrl_bytes + snapshot_field_bytes;
static_assert(snapshot_captures * capture_record_bytes == snapshot_capture_area_bytes);

}  // namespace tarvex::pd
