// Decodes placement data, which only the driver can read, into the caller's structures.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "entry_read.h"
#include "tarvex_pd/actions.h"

namespace tarvex::pd {

/// Delivers key, priority and no-key flag. A keyless table's entry never has a key.
template <const table_row &T>
inline void deliver_placed_key(const drv_match_spec_t &spec, void *match_spec, std::uint32_t *priority,
                               std::uint8_t *no_key)
{
  if constexpr (T.kind == table_kind::keyless)
    *no_key = 1;
  else
    deliver_key<T>(spec, match_spec, priority, no_key);
}

template <const table_row &T>
inline pd_status_t get_entry_from_placement(const char *function, const void *plcmt_data, void *match_spec,
                                            std::uint32_t *priority, plcmt_action_t *action, std::uint8_t *no_key)
{
  read_key<T> key;
  std::uint8_t data[read_data_bytes]{};
  drv_action_spec_t found{};
  found.act_data.data_bytes = read_data_bytes;
  found.act_data.data = data;
  std::uint32_t act_hdl = 0;
  const pd_status_t status = pipe_mgr_plcmt_mat_data_get_entry(plcmt_data, &key.spec, &found, &act_hdl);
  if (status != BF_SUCCESS) return status;
  keep_buffers(key, found, data);
  resource_list resources;
  if (!resources.build(found)) return PD_STATUS_NO_MEMORY;
  deliver_placed_key<T>(key.spec, match_spec, priority, no_key);
  if (!deliver_action_of<T>(act_hdl, found, resources, {nullptr, action->parameters, &action->action},
                            action_indices<T>{}))
    stop_on_broken_reply(function);
  return BF_SUCCESS;
}

/// A record that points at neither a member nor a group leaves both flags as they are.
template <const table_row &T>
inline pd_status_t get_indirect_entry_from_placement(const void *plcmt_data, void *match_spec, std::uint32_t *priority,
                                                     pd_mbr_hdl_t *mbr_hdl, pd_grp_hdl_t *grp_hdl,
                                                     std::uint8_t *is_member, std::uint8_t *is_group,
                                                     std::uint8_t *no_key)
{
  read_key<T> key;
  std::uint8_t data[read_data_bytes]{};
  drv_action_spec_t found{};
  found.act_data.data_bytes = read_data_bytes;
  found.act_data.data = data;
  std::uint32_t act_hdl = 0;
  const pd_status_t status = pipe_mgr_plcmt_mat_data_get_entry(plcmt_data, &key.spec, &found, &act_hdl);
  if (status != BF_SUCCESS) return status;
  keep_buffers(key, found, data);
  deliver_placed_key<T>(key.spec, match_spec, priority, no_key);
  if (found.act_kinds == DRV_ACT_MEMBER) {
    *mbr_hdl = found.mbr_hdl;
    *is_member = 1;
    *is_group = 0;
  } else if (found.act_kinds == DRV_ACT_GROUP) {
    *grp_hdl = found.grp_hdl;
    *is_member = 0;
    *is_group = 1;
  }
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
