// A switch with one device, and records for its driver functions.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <source_location>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"
#include "test_pipeline.h"

using bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t device = 3;
constexpr pd_sess_hdl_t session = 7;
constexpr pd_dev_tgt_t target = device | std::uint64_t{PD_ALL_PIPES} << 32;

/// The call must succeed.
inline void ok(pd_status_t status, std::source_location at = std::source_location::current())
{
  EXPECT_EQ(status, BF_SUCCESS) << at.file_name() << ":" << at.line();
}

/// A key record with its bytes; an empty mask is all ones.
struct key_record : drv_match_spec_t {
  key_record(std::uint16_t bits, bytes its_value, bytes its_mask = {}, std::uint32_t its_priority = 0,
             std::uint32_t partition = 0)
      : drv_match_spec_t{}, value(std::move(its_value)), mask(std::move(its_mask))
  {
    if (mask.empty()) mask.assign(value.size(), 0xff);
    partition_index = partition;
    key_bits = bits;
    key_bytes = static_cast<std::uint16_t>(value.size());
    key_value = value.data();
    key_mask = mask.data();
    priority = its_priority;
  }
  key_record(const key_record &other)
      : key_record(other.key_bits, other.value, other.mask, other.priority, other.partition_index)
  {
  }
  key_record &operator=(const key_record &) = delete;

  bytes value;
  bytes mask;
};

inline key_record host_key(std::uint8_t a, std::uint8_t b, std::uint8_t c) { return {17, {a, b, c}}; }

/// A key of the route table; the prefix counts from the top of the address.
inline key_record route_key(std::uint32_t partition, std::uint32_t address, unsigned prefix)
{
  const std::uint32_t mask = prefix == 0 ? 0 : 0xffffffffu << (32 - prefix);
  bytes value(6), mask_bytes(6);
  for (unsigned i = 0; i < 4; ++i) {
    value[2 + i] = static_cast<std::uint8_t>((address & mask) >> (24 - 8 * i));
    mask_bytes[2 + i] = static_cast<std::uint8_t>(mask >> (24 - 8 * i));
  }
  return {48, value, mask_bytes, 32 - prefix, partition};
}

inline key_record policy_key(std::uint16_t value, std::uint16_t mask, std::uint32_t priority)
{
  const auto split = [](int v) { return bytes{static_cast<std::uint8_t>(v >> 8), static_cast<std::uint8_t>(v)}; };
  return {16, split(value & mask), split(mask), priority};
}

inline drv_res_spec_t resource(std::uint32_t handle, std::uint32_t index, std::uint32_t tag)
{
  drv_res_spec_t spec{};
  spec.res_hdl = handle;
  spec.res_index = index;
  spec.res_tag = tag;
  return spec;
}

/// An action record with its data.
struct action_record : drv_action_spec_t {
  action_record(std::uint16_t bits, bytes its_data, std::initializer_list<drv_res_spec_t> resources = {})
      : drv_action_spec_t{}, data(std::move(its_data))
  {
    act_kinds = DRV_ACT_DATA;
    act_data.data_bits = bits;
    act_data.data_bytes = static_cast<std::uint16_t>(data.size());
    data.reserve(1);
    act_data.data = data.data();
    for (const drv_res_spec_t &each : resources) res[res_count++] = each;
  }
  action_record(const action_record &) = delete;
  action_record &operator=(const action_record &) = delete;

  bytes data;
};

/// A reference to a member (kind 2) or group (kind 4).
inline drv_action_spec_t reference(std::uint8_t kind, std::uint32_t handle)
{
  drv_action_spec_t spec{};
  spec.act_kinds = kind;
  (kind == DRV_ACT_MEMBER ? spec.mbr_hdl : spec.grp_hdl) = handle;
  return spec;
}

/// What a read brings: room for the key and 28 bytes of data.
struct read_back {
  explicit read_back(std::size_t key_size = 0) : value(key_size), mask(key_size)
  {
    key.key_bytes = static_cast<std::uint16_t>(key_size);
    key.key_value = value.data();
    key.key_mask = mask.data();
    action.act_data.data_bytes = static_cast<std::uint16_t>(data.size());
    action.act_data.data = data.data();
  }
  pd_status_t read(std::uint32_t table, pd_entry_hdl_t entry)
  {
    return pipe_mgr_get_entry(session, table, device, entry, &key, &action, &act_hdl, 0);
  }
  bytes data_read() const { return {data.begin(), data.begin() + action.act_data.data_bytes}; }

  bytes value;
  bytes mask;
  std::array<std::uint8_t, 28> data{};
  drv_match_spec_t key{};
  drv_action_spec_t action{};
  std::uint32_t act_hdl = 0;
};

class SwitchTest : public testing::Test {
 protected:
  void SetUp() override
  {
    standin_reset();
    ok(standin_device_add(device));
  }
  void TearDown() override { standin_reset(); }

  static pd_status_t add(std::uint32_t table, key_record key, std::uint32_t act_hdl, drv_action_spec_t &action,
                         pd_entry_hdl_t *entry, std::uint32_t ttl = 0)
  {
    return pipe_mgr_mat_ent_add(session, target, table, &key, act_hdl, &action, ttl, 0, entry);
  }

  /// An entry of the host table that must go in.
  static pd_entry_hdl_t add_host(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint32_t ttl = 0)
  {
    action_record to(16, {a, b});
    pd_entry_hdl_t entry = 0;
    ok(add(host_table, host_key(a, b, c), forward, to, &entry, ttl));
    return entry;
  }

  static pd_mbr_hdl_t add_member(std::uint8_t number)
  {
    action_record to(9, {0, number});
    pd_mbr_hdl_t member = 0;
    ok(pipe_mgr_adt_ent_add(session, target, members_table, port, &to, &member, 0));
    return member;
  }

  static pd_grp_hdl_t add_group(std::initializer_list<pd_mbr_hdl_t> members = {})
  {
    pd_grp_hdl_t group = 0;
    ok(pipe_mgr_sel_grp_add(session, target, groups_table, 0, &group, 0));
    for (const pd_mbr_hdl_t each : members)
      ok(pipe_mgr_sel_grp_mbr_add(session, device, groups_table, group, port, each, 0));
    return group;
  }

  static std::uint32_t count(std::uint32_t table)
  {
    std::uint32_t entries = 0xdead;
    ok(pipe_mgr_get_entry_count(session, target, table, 0, &entries));
    return entries;
  }

  /// All handles of a table, walked n at a time.
  static std::vector<std::uint32_t> walk(std::uint32_t table, std::uint32_t n)
  {
    std::vector<std::uint32_t> found, part(n, STANDIN_NO_HANDLE);
    pd_status_t status = pipe_mgr_get_first_entry_handle(session, table, target, part.data());
    for (; status == BF_SUCCESS;
         status = pipe_mgr_get_next_entry_handles(session, table, target, found.back(), n, part.data()))
      std::copy_if(part.begin(), part.end(), std::back_inserter(found),
                   [](std::uint32_t each) { return each != STANDIN_NO_HANDLE; });
    EXPECT_EQ(status, STANDIN_END);
    return found;
  }
};
