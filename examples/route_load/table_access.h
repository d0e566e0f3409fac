// One forwarding table through the library's functions, behind an interface that is the same for all ten: structures of
// the table and of its actions are filled and read by the members that they have.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tarvex_pd/tarvex_pd.h>

#include <cstring>
#include <tuple>
#include <type_traits>

#include "fib_entries.h"

namespace tarvex::route_load {

struct switch_target {
  pd_sess_hdl_t session;
  pd_dev_id_t device;
  pd_dev_tgt_t all_pipes;
};

/// The functions give the status of the library's.
class table_access {
 public:
  virtual ~table_access() = default;

  virtual std::uint32_t table_handle() const = 0;
  virtual pd_status_t add(const switch_target &to, const fib_entry &entry, pd_entry_hdl_t &handle) const = 0;
  virtual pd_status_t first(const switch_target &from, pd_entry_hdl_t &handle) const = 0;
  virtual pd_status_t next(const switch_target &from, pd_entry_hdl_t after,
                           std::span<pd_entry_hdl_t> handles) const = 0;
  virtual pd_status_t read(const switch_target &from, pd_entry_hdl_t handle, fib_entry &entry) const = 0;
  /// Whether key and parameters are as `expected` in each byte of their structures, and the key leads to the entry.
  virtual pd_status_t compare(const switch_target &from, pd_entry_hdl_t handle, const fib_entry &expected,
                              bool &same) const = 0;
};

template <typename Key, typename... Add>
class typed_table_access final : public table_access {
 public:
  using get_handle_function = pd_status_t (*)(std::uint32_t *);
  using get_first_function = pd_status_t (*)(pd_sess_hdl_t, pd_dev_tgt_t, pd_entry_hdl_t *);
  using get_next_function = pd_status_t (*)(pd_sess_hdl_t, pd_dev_tgt_t, pd_entry_hdl_t, std::uint32_t,
                                            pd_entry_hdl_t *);
  using find_function = pd_status_t (*)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, pd_entry_hdl_t *);
  using get_entry_function = pd_status_t (*)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t, pd_flag8_t, Key *, char *,
                                             void *, std::uint32_t *, std::uint8_t *);

  /// `add` stands in the order of hop_kind; a fifth one is the action of a partition index and no result.
  /// `action_names` stands in the order of `add`.
  constexpr typed_table_access(fib_table table, get_handle_function get_handle, get_first_function get_first,
                               get_next_function get_next, find_function find, get_entry_function get_entry,
                               const std::array<const char *, sizeof...(Add)> &action_names,
                               const std::tuple<Add...> &add)
      : table_(table),
        get_handle_(get_handle),
        get_first_(get_first),
        get_next_(get_next),
        find_(find),
        get_entry_(get_entry),
        action_names_(action_names),
        add_(add)
  {
  }

  std::uint32_t table_handle() const override
  {
    std::uint32_t handle = 0;
    get_handle_(&handle);
    return handle;
  }

  pd_status_t add(const switch_target &to, const fib_entry &entry, pd_entry_hdl_t &handle) const override
  {
    pd_status_t status = BF_SUCCESS;
    with_action(action_of(entry), [&](auto function) { status = call_add(function, to, entry, handle); });
    return status;
  }

  pd_status_t first(const switch_target &from, pd_entry_hdl_t &handle) const override
  {
    return get_first_(from.session, from.all_pipes, &handle);
  }

  pd_status_t next(const switch_target &from, pd_entry_hdl_t after, std::span<pd_entry_hdl_t> handles) const override
  {
    return get_next_(from.session, from.all_pipes, after, static_cast<std::uint32_t>(handles.size()), handles.data());
  }

  pd_status_t read(const switch_target &from, pd_entry_hdl_t handle, fib_entry &entry) const override
  {
    raw_entry raw;
    const pd_status_t status = fetch(from, handle, raw);
    if (status != BF_SUCCESS) return status;
    entry.table = table_;
    entry.destination = destination_of(raw.key);
    if constexpr (requires(Key k) { k.ingIpv4_fibPartitionIndex; }) {
      entry.partition_index = raw.key.ingIpv4_fibPartitionIndex;
    } else if constexpr (requires(Key k) { k.ingIpv6_fibPartitionIndex; }) {
      entry.partition_index = raw.key.ingIpv6_fibPartitionIndex;
    }
    const std::size_t action = action_numbered(raw.action);
    entry.result.kind = action < 4 ? static_cast<hop_kind>(action) : hop_kind::next_hop;
    with_action(action, [&](auto function) { take_parameters(function, raw, entry); });
    return BF_SUCCESS;
  }

  pd_status_t compare(const switch_target &from, pd_entry_hdl_t handle, const fib_entry &expected,
                      bool &same) const override
  {
    raw_entry raw;
    const pd_status_t status = fetch(from, handle, raw);
    if (status != BF_SUCCESS) return status;
    Key key;
    fill_key(expected, key);
    const std::size_t action = action_of(expected);
    same = raw.no_key == 0 && std::memcmp(&raw.key, &key, sizeof key) == 0 && action_numbered(raw.action) == action;
    with_action(action, [&](auto function) { same = same && has_parameters_of(function, raw, expected); });
    // What reads back is a prefix length, the same for a mask with holes. The driver finds a key by all of its mask.
    pd_entry_hdl_t found = 0;
    same = same && find_(from.session, from.all_pipes, &key, &found) == BF_SUCCESS && found == handle;
    return BF_SUCCESS;
  }

 private:
  /// What get_entry gives. Filled with junk ahead of it, so that a byte that it leaves out shows.
  struct raw_entry {
    Key key;
    alignas(8) std::array<std::uint8_t, 32> parameters;
    std::uint32_t action;
    std::uint8_t no_key;
  };

  pd_status_t fetch(const switch_target &from, pd_entry_hdl_t handle, raw_entry &raw) const
  {
    std::memset(&raw, 0xa5, sizeof raw);
    return get_entry_(from.session, from.device, handle, 0, &raw.key, nullptr, raw.parameters.data(), &raw.action,
                      &raw.no_key);
  }

  static std::size_t action_of(const fib_entry &entry)
  {
    return sizeof...(Add) > 4 && entry.result == no_route ? 4 : static_cast<std::size_t>(entry.result.kind);
  }

  /// Place of an action in the functions; behind the last for one that is none of them.
  std::size_t action_numbered(std::uint32_t action) const
  {
    const char *name = p4_pd_tarvex_switch_action_enum_to_string(action);
    std::size_t number = 0;
    while (number < sizeof...(Add) && (name == nullptr || std::strcmp(name, action_names_[number]) != 0)) {
      ++number;
    }
    return number;
  }

  template <typename Use>
  void with_action(std::size_t number, Use use) const
  {
    std::size_t at = 0;
    std::apply([&](auto... function) { ((at++ == number ? use(function) : void()), ...); }, add_);
  }

  // Structures are filled in place: a copy need not keep the bytes between the members, which are compared too.
  static void fill_key(const fib_entry &entry, Key &key)
  {
    const auto bytes = address_bytes(entry.destination.addr);
    std::memset(&key, 0, sizeof key);
    if constexpr (requires { key.l3Info_vrfId; }) key.l3Info_vrfId = load_vrf;
    if constexpr (requires { key.ingIpv4_fibPartitionIndex; }) key.ingIpv4_fibPartitionIndex = entry.partition_index;
    if constexpr (requires { key.ingIpv6_fibPartitionIndex; }) key.ingIpv6_fibPartitionIndex = entry.partition_index;
    if constexpr (requires { key.ingIpv4_dip; }) key.ingIpv4_dip = ipv4_value(entry.destination.addr);
    if constexpr (requires { key.ingIpv4_dipAndVrf; }) key.ingIpv4_dipAndVrf = ipv4_value(entry.destination.addr);
    if constexpr (requires { key.ingIpv6_dip; }) std::memcpy(key.ingIpv6_dip, bytes.data(), bytes.size());
    if constexpr (requires { key.ingIpv4_dip_prefix_length; }) key.ingIpv4_dip_prefix_length = entry.destination.length;
    if constexpr (requires { key.ingIpv4_dipAndVrf_prefix_length; })
      key.ingIpv4_dipAndVrf_prefix_length = entry.destination.length;
    if constexpr (requires { key.ingIpv6_dip_prefix_length; }) key.ingIpv6_dip_prefix_length = entry.destination.length;
  }

  static prefix destination_of(const Key &key)
  {
    if constexpr (requires { key.ingIpv4_dipAndVrf; }) {
      return {family::ipv4, ipv4_address(key.ingIpv4_dipAndVrf),
              static_cast<std::uint8_t>(key.ingIpv4_dipAndVrf_prefix_length)};
    } else if constexpr (requires { key.ingIpv4_dip_prefix_length; }) {
      return {family::ipv4, ipv4_address(key.ingIpv4_dip), static_cast<std::uint8_t>(key.ingIpv4_dip_prefix_length)};
    } else if constexpr (requires { key.ingIpv4_dip; }) {
      return {family::ipv4, ipv4_address(key.ingIpv4_dip), 32};
    } else if constexpr (requires { key.ingIpv6_dip_prefix_length; }) {
      return {family::ipv6, ipv6_address(key.ingIpv6_dip), static_cast<std::uint8_t>(key.ingIpv6_dip_prefix_length)};
    } else {
      return {family::ipv6, ipv6_address(key.ingIpv6_dip), 128};
    }
  }

  template <typename Parameters>
  static void fill_parameters(const fib_entry &entry, Parameters &parameters)
  {
    std::memset(&parameters, 0, sizeof parameters);
    if constexpr (requires { parameters.action_partitionIndex; })
      parameters.action_partitionIndex = entry.partition_index;
    if constexpr (requires { parameters.action_nextHop; }) parameters.action_nextHop = entry.result.value;
    if constexpr (requires { parameters.action_ecmpGroup; }) parameters.action_ecmpGroup = entry.result.value;
  }

  // An add function tells its action's structure; on a table with idle time it takes a ttl too.
  template <typename Parameters>
  using plain_add = pd_status_t (*)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, const Parameters *, pd_entry_hdl_t *);
  template <typename Parameters>
  using add_with_ttl = pd_status_t (*)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, const Parameters *, std::uint32_t,
                                       pd_entry_hdl_t *);

  template <typename Parameters>
  static Parameters structure_of(plain_add<Parameters>);
  template <typename Parameters>
  static Parameters structure_of(add_with_ttl<Parameters>);

  template <typename Function>
  static pd_status_t call_add(Function function, const switch_target &to, const fib_entry &entry,
                              pd_entry_hdl_t &handle)
  {
    Key key;
    fill_key(entry, key);
    decltype(structure_of(function)) parameters;
    fill_parameters(entry, parameters);
    if constexpr (requires { function(to.session, to.all_pipes, &key, &parameters, &handle); }) {
      return function(to.session, to.all_pipes, &key, &parameters, &handle);
    } else {
      return function(to.session, to.all_pipes, &key, &parameters, 0, &handle);  // ttl 0: a route does not age
    }
  }

  template <typename Function>
  static bool has_parameters_of(Function function, const raw_entry &raw, const fib_entry &expected)
  {
    decltype(structure_of(function)) parameters;
    fill_parameters(expected, parameters);
    static_assert(sizeof parameters <= sizeof raw.parameters);
    return std::memcmp(&parameters, raw.parameters.data(), sizeof parameters) == 0;
  }

  template <typename Function>
  static void take_parameters(Function function, const raw_entry &raw, fib_entry &entry)
  {
    decltype(structure_of(function)) parameters;
    std::memcpy(&parameters, raw.parameters.data(), sizeof parameters);
    if constexpr (requires { parameters.action_partitionIndex; })
      entry.partition_index = parameters.action_partitionIndex;
    if constexpr (requires { parameters.action_nextHop; })
      entry.result.value = static_cast<std::uint16_t>(parameters.action_nextHop);
    if constexpr (requires { parameters.action_ecmpGroup; }) entry.result.value = parameters.action_ecmpGroup;
  }

  fib_table table_;
  get_handle_function get_handle_;
  get_first_function get_first_;
  get_next_function get_next_;
  find_function find_;
  get_entry_function get_entry_;
  std::array<const char *, sizeof...(Add)> action_names_;
  std::tuple<Add...> add_;
};

/// Of the table in the library.
const table_access &access_to(fib_table table);

}  // namespace tarvex::route_load
