// Snapshots by field name: filling and showing triggers, showing captures.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <string_view>

#include "bytes.h"
#include "plain_functions.h"
#include "snapshot_layouts.h"

namespace tarvex::pd {

namespace {

const snapshot_field *find_field(const snapshot_layout &layout, const char *name)
{
  if (name == nullptr) return nullptr;
  const std::string_view wanted = name;
  const auto name_at = [&](std::uint16_t place) -> std::string_view { return layout.fields[place].name; };
  const auto found = std::ranges::lower_bound(layout.by_name, wanted, {}, name_at);
  return found == layout.by_name.end() || name_at(*found) != wanted ? nullptr : &layout.fields[*found];
}

/// Values of 2 and 3 bytes stand in a trigger record with their highest byte first, those of 3 bytes in a whole word.
/// Values of 4 bytes stand in host order.
void store_value(std::uint8_t *to, const snapshot_field &field, const std::uint32_t *value)
{
  switch (field.size) {
    case 1: return put_big_endian<1>(to, *value);
    case 2: return put_big_endian<2>(to, *value);
    case 3: return put_big_endian<4>(to, *value);
    case 4: std::memcpy(to, value, 4); return;
    default: std::transform(value, value + 16, to, [](std::uint32_t word) { return static_cast<std::uint8_t>(word); });
  }
}

bool has_high_byte_first(const snapshot_field &field) { return field.size == 2 || field.size == 3; }

/// Unlike the value, a mask of 3 bytes is a word in host order.
void store_all_ones(std::uint8_t *to, const snapshot_field &field)
{
  constexpr std::uint32_t three_bytes = 0xff'ffff;
  if (field.size == 3) {
    std::memcpy(to, &three_bytes, sizeof three_bytes);
  } else {
    std::memset(to, 0xff, field.size);
  }
}

bool is_zero(const std::uint8_t *bytes, const snapshot_field &field)
{
  return std::all_of(bytes, bytes + field.slot(), [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

uint32_t snapshot_capture_trigger_add(pd_snapshot_hdl_t hdl, snap_trig_spec_t *value_rec, snap_trig_spec_t *mask_rec,
                                      const char *name, const uint32_t *value)
{
  const snapshot_field *const field = find_field(layout_of(hdl), name);
  if (field == nullptr) return 0;
  store_value(value_rec->fields + field->offset, *field, value);
  store_all_ones(mask_rec->fields + field->offset, *field);
  return 1;
}

uint32_t snapshot_capture_trigger_list(uint32_t ctx, pd_snapshot_hdl_t hdl, pd_snapshot_list_cb_t callback,
                                       void *cookie)
{
  std::uint32_t result = 0;
  for (const snapshot_field &field : layout_of(hdl).fields)
    result = callback(ctx, field.name, layout_number(hdl), field.size, cookie);
  return result;
}

uint32_t snapshot_capture_trigger_show(uint32_t ctx, pd_snapshot_hdl_t hdl, const snap_trig_spec_t *value_rec,
                                       const snap_trig_spec_t *mask_rec, pd_snapshot_show_cb_t callback)
{
  std::uint32_t result = 0;
  for (const snapshot_field &field : layout_of(hdl).fields) {
    const std::uint8_t *const mask = mask_rec->fields + field.offset;
    if (is_zero(mask, field)) continue;
    const std::uint8_t *value = value_rec->fields + field.offset;
    std::uint8_t low_byte_first[4];
    if (has_high_byte_first(field)) {
      std::reverse_copy(value, value + field.slot(), low_byte_first);
      value = low_byte_first;
    }
    result = callback(ctx, field.name, field.size, value, mask);
  }
  return result;
}

uint32_t snapshot_capture_field_show(uint32_t ctx, pd_snapshot_hdl_t hdl, const uint8_t *fields,
                                     pd_snapshot_show_cb_t callback)
{
  std::uint32_t result = 0;
  for (const snapshot_field &field : layout_of(hdl).fields) {
    const std::uint8_t *const value = fields + field.offset;
    if (!is_zero(value, field)) result = callback(ctx, field.name, field.size, value, nullptr);
  }
  return result;
}

uint32_t snapshot_capture_data_single_get(int32_t index, uint32_t is_egress, const void *capture, uint32_t *first_byte,
                                          uint8_t *ctrl, uint8_t *fields)
{
  const std::uint8_t *const record =
      static_cast<const std::uint8_t *>(capture) + index * std::ptrdiff_t{capture_record_bytes};
  *first_byte = record[0];
  std::memcpy(ctrl, record, snapshot_ctrl_bytes);
  std::memcpy(fields, record + snapshot_ctrl_bytes,
              is_egress != 0 ? snapshot_egress_field_bytes : snapshot_field_bytes);
  return record[1];
}

}  // namespace tarvex::pd
