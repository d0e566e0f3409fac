// Decodes placement data, which only the driver can read, into the caller's structures. Tools do this, entry by entry:
// it is built for size.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"
#include "key_marshalling.h"
#include "resource_lists.h"
#include "tarvex_pd/actions.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// What the driver makes of placement data, with room for the entry of any table.
class placed_entry {
 public:
  /// Presets the records as for every read and has the driver fill them. A keyless table has no bits.
  pd_status_t decode(const void *plcmt_data, std::uint16_t key_bits, std::uint16_t key_bytes);
  /// Lists the resources of the decoded entry. False if the list cannot be had.
  [[nodiscard]] bool list_resources() { return resources_.build(action_); }

  const drv_match_spec_t &key() const { return key_; }
  const drv_action_spec_t &action() const { return action_; }
  std::uint32_t action_handle() const { return act_hdl_; }
  const resource_list &resources() const { return resources_; }

  static constexpr std::size_t largest_key = 44;

 private:
  // Cleared by decode, once for all tables.
  drv_match_spec_t key_;
  drv_action_spec_t action_;
  std::uint32_t act_hdl_;
  std::uint8_t value_[largest_key];
  std::uint8_t mask_[largest_key];
  std::uint8_t data_[read_data_bytes];
  resource_list resources_;
};

/// Delivers key, priority and no-key flag. A keyless table's entry never has a key.
template <const table_row &T>
[[gnu::always_inline]] inline void deliver_placed_key(const drv_match_spec_t &key, void *match_spec,
                                                      std::uint32_t *priority, std::uint8_t *no_key)
{
  static_assert(T.key_bytes <= placed_entry::largest_key);
  if constexpr (T.kind == table_kind::keyless) {
    *no_key = 1;
  } else {
    *no_key = key.key_value == nullptr ? 1 : 0;
    if constexpr (T.kind == table_kind::ternary) *priority = key.priority;
    if (key.key_value == nullptr) return;
    unbuild_key<T>(&key, match_spec);
    if constexpr (T.kind == table_kind::ternary || T.kind == table_kind::lpm) unbuild_mask<T>(&key, match_spec);
  }
}

/// Parameters alone take resources: an entry without any needs no list of them.
template <const action_row &A>
[[gnu::always_inline]] inline pd_status_t deliver_placed_action(placed_entry &entry, plcmt_action_t *action)
{
  if constexpr (A.param_count > 0) {
    if (!entry.list_resources()) return PD_STATUS_NO_MEMORY;
    unbuild_action<A>(&entry.action().act_data, entry.resources().list(), entry.resources().count(),
                      action->parameters);
  }
  action->action = A.enum_value;
  return BF_SUCCESS;
}

/// False if the entry's action is none of the table's.
template <const table_row &T, std::size_t... I>
[[gnu::always_inline]] inline bool deliver_placed_action_of(placed_entry &entry, plcmt_action_t *action,
                                                            pd_status_t &status, std::index_sequence<I...>)
{
  return ((entry.action_handle() == T.actions[I]->handle &&
           (status = deliver_placed_action<*T.actions[I]->action>(entry, action), true)) ||
          ...);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_entry_from_placement(const char *function, const void *plcmt_data,
                                                                   void *match_spec, std::uint32_t *priority,
                                                                   plcmt_action_t *action, std::uint8_t *no_key)
{
  placed_entry entry;
  pd_status_t status = entry.decode(plcmt_data, T.key_bits, T.key_bytes);
  if (status != BF_SUCCESS) return status;
  // The action first: without memory for its resources nothing of the caller's is written.
  if (!deliver_placed_action_of<T>(entry, action, status, action_indices<T>{})) stop_on_broken_reply(function);
  if (status == BF_SUCCESS) deliver_placed_key<T>(entry.key(), match_spec, priority, no_key);
  return status;
}

/// A record that points at neither a member nor a group leaves both flags as they are.
template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_indirect_entry_from_placement(
    const void *plcmt_data, void *match_spec, std::uint32_t *priority, pd_mbr_hdl_t *mbr_hdl, pd_grp_hdl_t *grp_hdl,
    std::uint8_t *is_member, std::uint8_t *is_group, std::uint8_t *no_key)
{
  placed_entry entry;
  const pd_status_t status = entry.decode(plcmt_data, T.key_bits, T.key_bytes);
  if (status != BF_SUCCESS) return status;
  deliver_placed_key<T>(entry.key(), match_spec, priority, no_key);
  if (entry.action().act_kinds == DRV_ACT_MEMBER) {
    *mbr_hdl = entry.action().mbr_hdl;
    *is_member = 1;
    *is_group = 0;
  } else if (entry.action().act_kinds == DRV_ACT_GROUP) {
    *grp_hdl = entry.action().grp_hdl;
    *is_member = 0;
    *is_group = 1;
  }
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
