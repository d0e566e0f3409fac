// Reads entries back into the caller's structures, counts them and walks their handles.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "action_marshalling.h"
#include "call_conventions.h"
#include "key_marshalling.h"
#include "resource_lists.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// Key record of a read: counts preset, pointers at zeroed buffers. A keyless table's is zero throughout.
template <const table_row &T>
struct read_key {
  drv_match_spec_t spec{};
  std::uint8_t value[T.key_bytes > 0 ? T.key_bytes : 1]{};
  std::uint8_t mask[T.key_bytes > 0 ? T.key_bytes : 1]{};

  read_key()
  {
    if constexpr (T.kind != table_kind::keyless) {
      spec.key_bits = T.key_bits;
      spec.key_bytes = T.key_bytes;
      spec.key_value = value;
      spec.key_mask = mask;
    }
  }
  read_key(const read_key &) = delete;
  read_key &operator=(const read_key &) = delete;
};

/// A reply without a mask or without data is read as zeros: only a null key has a meaning.
template <const table_row &T>
inline void keep_buffers(read_key<T> &key, drv_action_spec_t &action, std::uint8_t *data)
{
  if (key.spec.key_mask == nullptr) key.spec.key_mask = key.mask;
  if (action.act_data.data == nullptr) action.act_data.data = data;
}

/// Where a read delivers the action; name and enumeration value may be null.
struct action_outputs {
  char *name;
  void *action_spec;
  std::uint32_t *enum_value;
};

template <const action_row &A>
[[gnu::always_inline]] inline void deliver_action(const drv_action_spec_t &spec, const resource_list &resources,
                                                  const action_outputs &out)
{
  if (out.name != nullptr) std::memcpy(out.name, A.full_name, A.full_name_size);
  if (out.enum_value != nullptr) *out.enum_value = A.enum_value;
  if constexpr (A.param_count > 0) fill_action<A>(&spec.act_data, resources.list(), resources.count(), out.action_spec);
}

/// Delivers the action that a handle names. False if it is none of the table's.
template <const table_row &T, std::size_t... I>
[[gnu::always_inline]] inline bool deliver_action_of(std::uint32_t act_hdl, const drv_action_spec_t &spec,
                                                     const resource_list &resources, const action_outputs &out,
                                                     std::index_sequence<I...>)
{
  return ((act_hdl == T.actions[I]->handle && (deliver_action<*T.actions[I]->action>(spec, resources, out), true)) ||
          ...);
}

/// Delivers key, priority and no-key flag. Without a key the caller's structure stays as it is.
template <const table_row &T>
[[gnu::always_inline]] inline void deliver_key(const drv_match_spec_t &spec, void *match_spec, std::uint32_t *priority,
                                               std::uint8_t *no_key)
{
  const bool has_key = spec.key_value != nullptr;
  *no_key = has_key ? 0 : 1;
  if constexpr (T.kind == table_kind::ternary) *priority = spec.priority;
  if (!has_key) return;
  fill_key<T>(&spec, match_spec);
  if constexpr (T.kind == table_kind::ternary || T.kind == table_kind::lpm) fill_mask<T>(&spec, match_spec);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_entry(const char *function, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                    pd_entry_hdl_t entry_hdl, pd_flag8_t read_from_hw, void *match_spec,
                                                    std::uint32_t *priority, char *name, void *action_spec,
                                                    std::uint32_t *enum_value, std::uint8_t *no_key)
{
  read_key<T> key;
  std::uint8_t data[read_data_bytes]{};
  drv_action_spec_t action{};
  action.act_data.data_bytes = read_data_bytes;
  action.act_data.data = data;
  std::uint32_t act_hdl = 0;
  const pd_status_t status = pipe_mgr_get_entry(sess_hdl, T.handle, low_byte(dev_id), entry_hdl, &key.spec, &action,
                                                &act_hdl, low_byte(read_from_hw));
  if (status != BF_SUCCESS) return status;
  if (action.act_kinds != DRV_ACT_DATA) return PD_STATUS_UNEXPECTED_REPLY;
  keep_buffers(key, action, data);

  resource_list resources;
  if (!resources.build(action)) return PD_STATUS_NO_MEMORY;
  if (!deliver_action_of<T>(act_hdl, action, resources, {name, action_spec, enum_value}, action_indices<T>{}))
    stop_on_broken_reply(function);
  if constexpr (T.kind != table_kind::keyless) deliver_key<T>(key.spec, match_spec, priority, no_key);
  return BF_SUCCESS;
}

/// An indirect table's entry points at a member or at a group; the output of the other kind stays as it is.
template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_indirect_entry(const char *function, pd_sess_hdl_t sess_hdl,
                                                             pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                                             pd_flag8_t read_from_hw, void *match_spec,
                                                             std::uint32_t *priority, std::uint8_t *is_member,
                                                             std::uint8_t *is_group, pd_grp_hdl_t *grp_hdl,
                                                             pd_mbr_hdl_t *mbr_hdl, std::uint8_t *no_key)
{
  read_key<T> key;
  drv_action_spec_t action{};
  std::uint32_t act_hdl = 0;
  const pd_status_t status = pipe_mgr_get_entry(sess_hdl, T.handle, low_byte(dev_id), entry_hdl, &key.spec, &action,
                                                &act_hdl, low_byte(read_from_hw));
  if (status != BF_SUCCESS) return status;
  keep_buffers(key, action, nullptr);
  switch (action.act_kinds) {
    case DRV_ACT_MEMBER:
      *is_member = 1;
      *is_group = 0;
      *mbr_hdl = action.mbr_hdl;
      break;
    case DRV_ACT_GROUP:
      *is_group = 1;
      *is_member = 0;
      *grp_hdl = action.grp_hdl;
      break;
    default: stop_on_broken_reply(function);
  }
  deliver_key<T>(key.spec, match_spec, priority, no_key);
  return BF_SUCCESS;
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_entry_count(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                          std::uint32_t *count)
{
  return pipe_mgr_get_entry_count(sess_hdl, whole_target(dev_tgt), T.handle, 0, count);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_first_entry_handle(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                                 pd_entry_hdl_t *entry_hdl)
{
  return pipe_mgr_get_first_entry_handle(sess_hdl, T.handle, whole_target(dev_tgt), entry_hdl);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_next_entry_handles(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                                 pd_entry_hdl_t entry_hdl, std::uint32_t n,
                                                                 pd_entry_hdl_t *next_hdls)
{
  return pipe_mgr_get_next_entry_handles(sess_hdl, T.handle, whole_target(dev_tgt), entry_hdl, n, next_hdls);
}

}  // namespace tarvex::pd
