// The fields that a snapshot holds, a list for each direction: trigger records and captures are packed in its order.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace tarvex::pd {

struct snapshot_field {
  const char *name;
  std::uint16_t offset;
  std::uint16_t size;  // 1, 2, 3, 4 or 16

  /// Bytes that it takes: one of 3 bytes is held in a word.
  constexpr std::size_t slot() const { return size == 3 ? 4 : size; }
};

struct snapshot_layout {
  const snapshot_field *fields;
  const std::uint16_t *by_name;  // places of the fields, in ascending order of their names
  std::uint16_t field_count;

  const snapshot_field *begin() const { return fields; }
  const snapshot_field *end() const { return fields + field_count; }
};

inline constexpr std::size_t snapshot_layout_count = 2;

/// Ingress, egress. Generated.
extern const snapshot_layout snapshot_layouts[snapshot_layout_count];

/// Bit 1 of a snapshot's handle tells its direction, and nothing else does.
inline std::uint32_t snapshot_direction(std::uint32_t hdl) { return hdl >> 1 & 1; }
inline const snapshot_layout &layout_of_snapshot(std::uint32_t hdl)
{
  return snapshot_layouts[snapshot_direction(hdl)];
}

}  // namespace tarvex::pd
