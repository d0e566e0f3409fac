// What the library tells of snapshots through its callbacks.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "caller.h"
#include "tarvex_pd/snapshots.h"

namespace tarvex::test {

using bytes = std::vector<std::uint8_t>;

constexpr pd_snapshot_hdl_t ingress = 0xfffffffd;  // of a handle, bit 1 alone counts
constexpr pd_snapshot_hdl_t egress = 2;

struct listed_field {
  std::string name;
  std::uint32_t size;
  std::size_t offset;  // as the sizes of those before it make it

  std::size_t slot() const { return size == 3 ? 4 : size; }
};

inline std::uint32_t keep_listed(std::uint32_t, const char *field, std::uint32_t, std::uint32_t size, void *cookie)
{
  auto &list = *static_cast<std::vector<listed_field> *>(cookie);
  const std::size_t offset = list.empty() ? 0 : list.back().offset + list.back().slot();
  list.push_back({field, size, offset});
  return 0;
}

inline std::vector<listed_field> list_fields(pd_snapshot_hdl_t hdl)
{
  std::vector<listed_field> list;
  invoke("snapshot_capture_trigger_list", 0U, hdl, &keep_listed, static_cast<void *>(&list));
  return list;
}

// Control data of a capture, and its captures; both are the driver's.
constexpr std::size_t control_bytes = 3664, capture_count = 12;
// Field data of a record, and what the driver puts after the fields of an egress one.
constexpr std::size_t field_bytes = sizeof(snap_trig_spec_t), after_fields = 22;

/// Bytes that all fields of a direction take.
inline std::size_t end_of_fields(pd_snapshot_hdl_t hdl)
{
  const std::vector<listed_field> list = list_fields(hdl);
  return list.empty() ? 0 : list.back().offset + list.back().slot();
}

// The library's own functions, as all tests call them.
inline std::uint32_t add_trigger(pd_snapshot_hdl_t hdl, snap_trig_spec_t *value, snap_trig_spec_t *mask,
                                 const char *name, const std::uint32_t *words)
{
  return invoke("snapshot_capture_trigger_add", hdl, value, mask, name, words);
}

struct shown_field {
  std::string name;
  bytes value;
  bytes mask;  // empty without a mask
  const std::uint8_t *value_at;

  bool operator==(const shown_field &other) const
  {
    return name == other.name && value == other.value && mask == other.mask;
  }
};

inline std::ostream &operator<<(std::ostream &to, const shown_field &field)
{
  return to << field.name << ' ' << testing::PrintToString(field.value) << ' ' << testing::PrintToString(field.mask);
}

// A show callback is told nothing of its caller but a number.
inline std::vector<shown_field> shown;

/// Gives ctx plus the number of fields that were shown before.
inline std::uint32_t keep_shown(std::uint32_t ctx, const char *field, std::uint32_t size, const std::uint8_t *value,
                                const std::uint8_t *mask)
{
  shown.push_back({field, bytes(value, value + size), mask == nullptr ? bytes() : bytes(mask, mask + size), value});
  return ctx + static_cast<std::uint32_t>(shown.size()) - 1;
}

inline std::uint32_t show_trigger(std::uint32_t ctx, pd_snapshot_hdl_t hdl, const snap_trig_spec_t &value,
                                  const snap_trig_spec_t &mask)
{
  return invoke("snapshot_capture_trigger_show", ctx, hdl, &value, &mask, &keep_shown);
}

inline std::uint32_t show_fields(std::uint32_t ctx, pd_snapshot_hdl_t hdl, const std::uint8_t *fields)
{
  return invoke("snapshot_capture_field_show", ctx, hdl, fields, &keep_shown);
}

}  // namespace tarvex::test
