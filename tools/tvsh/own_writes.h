// What the shell wrote and the library cannot read back.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "cell_set.h"

namespace tarvex::shell {

struct value_set_entry {
  std::uint32_t value = 0;
  std::uint32_t mask = 0;
  std::uint32_t scope = 0;
  std::uint16_t index = 0;
  std::uint8_t sub_index = 0;

  auto operator<=>(const value_set_entry &) const = default;
};

struct snapshot_trigger {
  bool egress = false;
};

/// How the idle time of a table was enabled.
struct idle_setting {
  bool notify = false;
  std::uint32_t interval = 0;
  std::uint32_t largest_ttl = 0;

  bool operator==(const idle_setting &) const = default;
};

struct own_writes {
  std::map<std::uint32_t, value_set_entry> value_set;                            // by handle
  std::map<std::uint32_t, std::uint32_t> fallback_members;                       // by handle of the selector table
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> group_sizes;  // by selector table and group
  std::map<std::uint32_t, idle_setting> idle;                                    // by table; where it is enabled
  std::map<std::uint32_t, cell_set> cells;               // that were written, by handle of what they are of
  std::map<std::uint32_t, std::uint8_t> register_rests;  // what all cells of a register were set to
  std::map<std::uint32_t, snapshot_trigger> snapshots;   // by handle
  std::optional<std::uint32_t> learning_timeout;
};

}  // namespace tarvex::shell
