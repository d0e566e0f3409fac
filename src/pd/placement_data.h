// Decodes placement data, which only the driver can read, into the caller's structures.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "entry_read.h"
#include "tarvex_pd/actions.h"

namespace tarvex::pd {

/// What the driver makes of placement data, with room preset as for every read.
template <const table_row &T>
struct placed_entry {
  read_key<T> key;
  std::uint8_t data[read_data_bytes]{};
  drv_action_spec_t action{};
  std::uint32_t act_hdl = 0;

  pd_status_t decode(const void *plcmt_data)
  {
    action.act_data.data_bytes = read_data_bytes;
    action.act_data.data = data;
    const pd_status_t status = pipe_mgr_plcmt_mat_data_get_entry(plcmt_data, &key.spec, &action, &act_hdl);
    if (status == BF_SUCCESS) keep_buffers(key, action, data);
    return status;
  }
};

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
  placed_entry<T> entry;
  const pd_status_t status = entry.decode(plcmt_data);
  if (status != BF_SUCCESS) return status;
  resource_list resources;
  if (!resources.build(entry.action)) return PD_STATUS_NO_MEMORY;
  deliver_placed_key<T>(entry.key.spec, match_spec, priority, no_key);
  if (!deliver_action_of<T>(entry.act_hdl, entry.action, resources, {nullptr, action->parameters, &action->action},
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
  placed_entry<T> entry;
  const pd_status_t status = entry.decode(plcmt_data);
  if (status != BF_SUCCESS) return status;
  deliver_placed_key<T>(entry.key.spec, match_spec, priority, no_key);
  if (entry.action.act_kinds == DRV_ACT_MEMBER) {
    *mbr_hdl = entry.action.mbr_hdl;
    *is_member = 1;
    *is_group = 0;
  } else if (entry.action.act_kinds == DRV_ACT_GROUP) {
    *grp_hdl = entry.action.grp_hdl;
    *is_member = 0;
    *is_group = 1;
  }
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
