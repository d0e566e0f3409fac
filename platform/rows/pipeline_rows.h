// The rows of the pipeline as they stand at run time, for programs and libraries that go over all of them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "kinds.h"

namespace tarvex::rows {

struct field_info {
  const char *name;
  const char *short_name;
  const char *display;  // null for none
  std::uint16_t bits;
  std::uint16_t member;  // offset in the caller's structure
  std::uint16_t member_size;
  std::uint16_t companion;  // offset of the mask or of the prefix length
  std::uint16_t key_at;
  std::uint16_t key_size;
  match_kind match;
  std::uint8_t live[16];  // bits that the pipeline matches on, most significant byte first, right-aligned
  std::int16_t low_half;  // of the upper half of a MAC address: place of the lower one among the fields; else -1
};

struct param_info {
  const char *name;
  const char *display;
  std::uint16_t bits;
  std::uint16_t member;
  std::uint16_t member_size;
  std::uint16_t data_at;
  std::uint16_t data_size;
  bool resource_index;
  std::int16_t low_half;  // as a field's
};

struct action_info {
  const char *name;
  const char *about;  // a sentence, or ""
  std::uint16_t enum_value;
  std::uint16_t data_bits;
  std::uint16_t data_bytes;
  std::uint16_t record_size;
  std::span<const param_info> params;
  std::span<const std::uint32_t> index_resources;
};

struct resource_use_info {
  std::uint32_t handle;
  resource_form form;
};

/// An action as a table or a profile has it.
struct use_info {
  std::uint32_t handle;
  const action_info *action;
  bool is_default;
  std::span<const resource_use_info> resources;
};

struct profile_info {
  const char *name;
  std::uint32_t action_data_table;
  std::uint32_t selector_table;
  std::uint32_t table;
  std::span<const use_info> actions;
};

struct table_info {
  const char *name;
  const char *about;  // a sentence, or ""
  std::uint32_t handle;
  table_kind kind;
  std::uint16_t key_bits;
  std::uint16_t key_bytes;
  std::uint16_t record_size;
  bool idle_time;
  bool counter_label;
  const profile_info *profile;         // of an indirect table
  std::span<const field_info> fields;  // key order
  std::span<const use_info> actions;

  /// The actions of its entries: those of the profile, if it has one.
  constexpr std::span<const use_info> uses() const { return profile != nullptr ? profile->actions : actions; }
};

struct resource_info {
  const char *name;
  std::uint32_t handle;
  resource_kind kind;
  bool direct;
  std::uint32_t table;  // 0 where no table has it
};

struct hash_info {
  const char *name;
  std::uint32_t handle;
  std::uint32_t first_input;
  std::span<const std::uint32_t> common;      // common number of each field
  std::span<const std::uint32_t> algorithms;  // handles; it starts with the first

  /// Its inputs have consecutive handles: the whole field list, then its subsets.
  constexpr std::uint32_t input_count() const { return (1u << common.size()) - 1; }
};

struct digest_field_info {
  const char *name;
  const char *short_name;
  const char *word;  // by which a command gives it
  std::uint16_t bits;
  std::uint16_t offset;  // in an entry
  std::uint16_t size;
  std::int16_t low_half;
};

struct digest_info {
  const char *name;
  std::uint32_t handle;
  std::uint16_t entry_bytes;
  std::span<const digest_field_info> fields;
};

struct value_set_info {
  const char *name;
  std::uint32_t handle;
};

struct pipeline_info {
  const char *name;
  const char *profile;
  const char *library;      // without "lib" and ".so"
  const char *client;       // name under which the driver knows the library
  const char *sources;      // folder that failed assertions name
  std::string_view prefix;  // what exported functions begin with
};

/// A field of a snapshot; one of 3 bytes stands in 4.
struct snapshot_field_info {
  const char *name;
  std::uint16_t offset;
  std::uint16_t size;  // 1, 2, 3, 4 or 16
};

// Generated. Tables in handle order, actions in enumeration order, profiles in the order of their states.
extern const pipeline_info pipeline;
extern const std::span<const table_info> tables;
extern const std::span<const action_info> actions;
extern const std::span<const profile_info> profiles;
extern const std::span<const resource_info> resources;
extern const std::span<const hash_info> hashes;
extern const std::span<const digest_info> digests;        // one at most
extern const std::span<const value_set_info> value_sets;  // one at most
extern const std::span<const snapshot_field_info> ingress_fields;
extern const std::span<const snapshot_field_info> egress_fields;

}  // namespace tarvex::rows
