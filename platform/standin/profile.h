// One action profile of a device: members with their action data, and groups of members.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "match_table.h"
#include "pipeline_rows.h"
#include "slot_pool.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace tarvex::standin {

struct member {
  const rows::use_info *use = nullptr;  // of an action
  std::vector<std::uint8_t> data;
  std::uint32_t uses = 0;  // by entries, groups and as the fallback
};

struct membership {
  pd_mbr_hdl_t member = 0;
  bool active = true;
};

struct group {
  std::uint32_t most_members = 0;   // 0: any number
  std::uint32_t uses = 0;           // by entries
  std::vector<membership> members;  // in the order in which they were added

  membership *find(pd_mbr_hdl_t handle)
  {
    for (membership &each : members)
      if (each.member == handle) return &each;
    return nullptr;
  }
};

struct profile {
  explicit profile(const rows::profile_info &its_row) : row(&its_row) {}

  const rows::profile_info *row;
  slot_map<member> members;
  slot_map<group> groups;
  pd_mbr_hdl_t fallback = 0;  // 0: none
  client_callback member_updated;
  client_callback group_updated;
  client_callback group_tracked;

  /// How often entries refer to a member or group, so that it is not deleted under them; null for an unknown one.
  std::uint32_t *uses(std::uint8_t kind, std::uint32_t handle)
  {
    if (kind == DRV_ACT_MEMBER) {
      member *const found = members.find(handle);
      return found == nullptr ? nullptr : &found->uses;
    }
    group *const found = groups.find(handle);
    return found == nullptr ? nullptr : &found->uses;
  }
};

/// The action with a handle, or null.
inline const rows::use_info *find_use(std::span<const rows::use_info> uses, std::uint32_t handle)
{
  for (const rows::use_info &each : uses)
    if (each.handle == handle) return &each;
  return nullptr;
}

/// Whether action data have the counts of the action.
inline pd_status_t check_data(const rows::action_info &action, const drv_act_data_t &data)
{
  const bool fits = data.data_bits == action.data_bits && data.data_bytes == action.data_bytes &&
                    (data.data_bytes == 0 || data.data != nullptr);
  return require(fits, STANDIN_BAD_ACTION);
}

}  // namespace tarvex::standin
