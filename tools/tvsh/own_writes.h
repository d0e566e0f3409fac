// What this session wrote and the library cannot read back.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>

namespace tarvex::shell {

struct value_set_entry {
  std::uint32_t value = 0;
  std::uint32_t mask = 0;
  std::uint32_t scope = 0;
  std::uint16_t index = 0;
  std::uint8_t sub_index = 0;
};

struct snapshot_trigger {
  bool egress = false;
};

struct own_writes {
  std::map<std::uint32_t, value_set_entry> value_set;       // by handle
  std::map<std::uint32_t, std::uint32_t> fallback_members;  // by handle of the selector table
  std::map<std::uint32_t, snapshot_trigger> snapshots;      // by handle
  std::optional<std::uint32_t> learning_timeout;
};

}  // namespace tarvex::shell
