// The functions of an indirect table, whose entries point to a member or to a group. The five tables differ in their
// keys; a key has one field, and behind this file a number stands for it.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>
#include <functional>
#include <tuple>
#include <vector>

#include "switch_device.h"

namespace tarvex::examples {

/// What an entry points to.
struct target {
  bool is_group = false;
  std::uint32_t handle = 0;

  friend bool operator==(const target &, const target &) = default;
};

/// An entry as it reads back.
struct indirect_entry {
  bool has_key = false;
  std::uint32_t number = 0;  // STANDIN_NO_HANDLE where the key is not that of any number
  std::uint32_t priority = 0;
  target to;

  friend bool operator==(const indirect_entry &, const indirect_entry &) = default;
};

struct indirect_table {
  const char *name;
  std::uint32_t handle;
  std::uint32_t priority;  // of all entries; 0 where the table has none
  std::function<pd_status_t(std::uint32_t number, target to, pd_entry_hdl_t *entry)> add;
  std::function<pd_status_t(pd_entry_hdl_t entry, target to)> modify;
  std::function<pd_status_t(std::uint32_t number, target to)> modify_by_key;
  std::function<pd_status_t(target to, pd_entry_hdl_t *entry)> set_default;
  std::function<pd_status_t(pd_entry_hdl_t entry, indirect_entry *read)> read;
  /// The key bytes of a packet, most significant byte first.
  std::function<std::vector<std::uint8_t>(std::uint32_t number)> packet;
};

/// `Priority` is std::uint32_t where the table is ternary, and nothing where it is exact.
template <typename Key, typename... Priority>
struct indirect_table_functions {
  const char *name;
  pd_status_t (*get_mat_table_handle)(std::uint32_t *);
  pd_status_t (*add_entry)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, Priority..., pd_mbr_hdl_t, pd_entry_hdl_t *);
  pd_status_t (*add_entry_with_selector)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, Priority..., pd_grp_hdl_t,
                                         pd_entry_hdl_t *);
  pd_status_t (*modify_entry)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t, pd_mbr_hdl_t);
  pd_status_t (*modify_entry_with_selector)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t, pd_grp_hdl_t);
  pd_status_t (*modify_entry_by_match_spec)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, Priority..., pd_mbr_hdl_t);
  pd_status_t (*modify_entry_with_selector_by_match_spec)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, Priority...,
                                                          pd_grp_hdl_t);
  pd_status_t (*set_default_entry)(pd_sess_hdl_t, pd_dev_tgt_t, pd_mbr_hdl_t, pd_entry_hdl_t *);
  pd_status_t (*set_default_entry_with_selector)(pd_sess_hdl_t, pd_dev_tgt_t, pd_grp_hdl_t, pd_entry_hdl_t *);
  pd_status_t (*get_entry)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t, pd_flag8_t, Key *, Priority *..., std::uint8_t *,
                           std::uint8_t *, pd_grp_hdl_t *, pd_mbr_hdl_t *, std::uint8_t *);
};

/// `field` is the field of the key, wide `key_bytes` bytes; `complete` sets the mask of a ternary one and is given with
/// the priority of all entries.
template <typename Key, typename Field, typename Complete, typename... Priority>
indirect_table make_table(const indirect_table_functions<Key, Priority...> &f, Field Key::*field, std::size_t key_bytes,
                          Complete complete, Priority... priority)
{
  const auto key_of = [=](std::uint32_t number) {
    Key key{};
    key.*field = static_cast<Field>(number);
    complete(key);
    return key;
  };
  indirect_table table{f.name, 0, (priority + ... + 0u), {}, {}, {}, {}, {}, {}};
  f.get_mat_table_handle(&table.handle);
  table.add = [=](std::uint32_t number, target to, pd_entry_hdl_t *entry) {
    const Key key = key_of(number);
    const auto add = to.is_group ? f.add_entry_with_selector : f.add_entry;
    return add(session, all_pipes, &key, priority..., to.handle, entry);
  };
  table.modify = [=](pd_entry_hdl_t entry, target to) {
    const auto modify = to.is_group ? f.modify_entry_with_selector : f.modify_entry;
    return modify(session, device_id, entry, to.handle);
  };
  table.modify_by_key = [=](std::uint32_t number, target to) {
    const Key key = key_of(number);
    const auto modify = to.is_group ? f.modify_entry_with_selector_by_match_spec : f.modify_entry_by_match_spec;
    return modify(session, all_pipes, &key, priority..., to.handle);
  };
  table.set_default = [=](target to, pd_entry_hdl_t *entry) {
    const auto set = to.is_group ? f.set_default_entry_with_selector : f.set_default_entry;
    return set(session, all_pipes, to.handle, entry);
  };
  table.read = [=](pd_entry_hdl_t entry, indirect_entry *read) {
    Key key{};
    std::tuple<Priority...> read_priority;
    std::uint8_t is_member = 0, is_group = 0, no_key = 0;
    pd_grp_hdl_t group = 0;
    pd_mbr_hdl_t member = 0;
    const pd_status_t status = std::apply(
        [&](auto &...p) {
          return f.get_entry(session, device_id, entry, 0, &key, &p..., &is_member, &is_group, &group, &member,
                             &no_key);
        },
        read_priority);
    const auto number = static_cast<std::uint32_t>(key.*field);
    const Key whole = key_of(number);
    read->has_key = no_key == 0;
    read->number = std::memcmp(&key, &whole, sizeof key) == 0 ? number : STANDIN_NO_HANDLE;
    read->priority = std::apply([](auto... p) { return (p + ... + 0u); }, read_priority);
    read->to = {is_group != 0, is_group != 0 ? group : member};
    return status;
  };
  table.packet = [=](std::uint32_t number) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = key_bytes; at-- != 0;) bytes.push_back(static_cast<std::uint8_t>(number >> (8 * at)));
    return bytes;
  };
  return table;
}

}  // namespace tarvex::examples

#define PD_INDIRECT_TABLE(table)                                                                               \
  {                                                                                                            \
#table, p4_pd_tarvex_switch_##table##_get_mat_table_handle, p4_pd_tarvex_switch_##table##_add_entry,       \
        p4_pd_tarvex_switch_##table##_add_entry_with_selector, p4_pd_tarvex_switch_##table##_modify_entry,     \
        p4_pd_tarvex_switch_##table##_modify_entry_with_selector,                                              \
        p4_pd_tarvex_switch_##table##_modify_entry_by_match_spec,                                              \
        p4_pd_tarvex_switch_##table##_modify_entry_with_selector_by_match_spec,                                \
        p4_pd_tarvex_switch_##table##_set_default_entry,                                                       \
        p4_pd_tarvex_switch_##table##_set_default_entry_with_selector, p4_pd_tarvex_switch_##table##_get_entry \
  }
