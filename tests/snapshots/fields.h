// What the library tells of snapshots through its callbacks.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

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
  p4_pd_tarvex_switch_snapshot_capture_trigger_list(0, hdl, keep_listed, &list);
  return list;
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

}  // namespace tarvex::test
