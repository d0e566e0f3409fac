// An entry or a member as it is read back or travels in a placement buffer, and the way into the caller's records.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "match_table.h"
#include "profile.h"
#include "tarvex_platform/driver.h"

namespace tarvex::standin {

/// Bytes are referred to, not held.
struct action_record {
  std::uint32_t action = 0;  // handle
  std::uint16_t data_bits = 0;
  std::uint16_t data_bytes = 0;
  const std::uint8_t *data = nullptr;
};

struct entry_record {
  bool has_key = false;
  std::uint16_t key_bits = 0;
  std::uint16_t key_bytes = 0;
  const std::uint8_t *value = nullptr;
  const std::uint8_t *mask = nullptr;  // null: all ones
  std::uint32_t partition = 0;
  std::uint32_t priority = 0;
  std::uint8_t kind = 0;
  std::uint32_t reference = 0;
  action_record action;
  std::uint32_t resource_count = 0;
  drv_res_spec_t resources[DRV_ACTION_MAX_RES];
};

/// The handle is held by the table.
entry_record record_of(const match_table &table, std::uint32_t handle);
action_record record_of(const member &which);

/// Fills the caller's records, whose counts and pointers say how much room there is.
pd_status_t deliver(const entry_record &record, drv_match_spec_t *key, drv_action_spec_t *action,
                    std::uint32_t *act_hdl);
pd_status_t deliver(const action_record &record, drv_act_data_t *data, std::uint32_t *act_hdl);

/// Placement buffers.
std::vector<std::byte> placement_of(const entry_record &record);
std::vector<std::byte> placement_of(const action_record &record);

}  // namespace tarvex::standin
