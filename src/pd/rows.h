// Catalogue rows as the families see them: constant descriptors, one for each field, action, use of an action and
// table. The rows themselves are generated. Families take them as template arguments, so that offsets, widths and
// handles become immediates.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "kinds.h"
#include "record_sizes.h"

namespace tarvex::pd {

/// A key field: where its member stands in the caller's structure and where its bytes stand in the key.
struct field_row {
  std::uint16_t member;       // offset of the member
  std::uint16_t member_size;  // 1, 2, 4 or 16
  std::uint16_t companion;    // offset of the mask (ternary) or of the prefix length (lpm)
  std::uint16_t bits;
  std::uint16_t key_at;
  std::uint16_t key_size;
  match_kind match;
};

/// A parameter of an action: its member, and its bytes in the action data.
struct param_row {
  std::uint16_t member;
  std::uint16_t member_size;
  std::uint16_t data_at;
  std::uint16_t data_size;
  bool resource_index;  // travels as the index of a resource; its data bytes stay 0
};

/// An action by name, the same in every table.
struct action_row {
  const char *full_name;
  std::uint16_t full_name_size;  // with its NUL
  std::uint16_t enum_value;
  std::uint16_t data_bits;
  std::uint16_t data_bytes;
  std::uint16_t record_size;  // of the caller's parameter structure, 0 without parameters
  const param_row *params;
  std::uint16_t param_count;
  const std::uint32_t *index_resources;  // whose index the index parameter holds; a later one found stands
  std::uint16_t index_resource_count;
};

struct resource_row {
  std::uint32_t handle;
  resource_form form;
};

/// An action as one table uses it.
struct action_use_row {
  std::uint32_t handle;
  const action_row *action;
  const resource_row *resources;
  std::uint16_t resource_count;
};

struct table_row {
  std::uint32_t handle;
  table_kind kind;
  std::uint16_t key_bits;
  std::uint16_t key_bytes;
  std::uint16_t record_size;  // of the caller's key structure, room included
  const field_row *fields;
  std::uint16_t field_count;
  const action_use_row *const *actions;
  std::uint16_t action_count;
};

/// An action profile with its tables and its members' actions.
struct profile_row {
  std::uint32_t action_data_table;
  std::uint32_t selector_table;
  std::uint16_t state;  // index of its member-selector state
  const action_use_row *const *actions;
  std::uint16_t action_count;
};

/// A counter as its operations address it: a direct one by the handle of its match table.
struct counter_row {
  std::uint32_t handle;
  bool direct;
};

/// A meter, or the WRED block.
struct meter_row {
  std::uint32_t handle;
  bool direct;
  std::uint32_t table;  // of a direct one
};

struct register_row {
  std::uint32_t handle;
};

/// A hash calculation: its input handles are consecutive, one for each non-empty subset of its fields.
struct hash_row {
  std::uint32_t handle;
  std::uint32_t first_input;
  std::uint16_t field_count;
  const std::uint8_t *common;  // common number of each of its own field numbers
  std::span<const std::uint32_t> algorithms;
};

template <const table_row &T>
using field_indices = std::make_index_sequence<T.field_count>;
template <const action_row &A>
using param_indices = std::make_index_sequence<A.param_count>;
template <const table_row &T>
using action_indices = std::make_index_sequence<T.action_count>;

/// The partition field of a table, as an index into its fields; field_count where it has none.
template <const table_row &T>
constexpr std::size_t partition_field()
{
  for (std::size_t i = 0; i < T.field_count; ++i)
    if (T.fields[i].match == match_kind::partition) return i;
  return T.field_count;
}

/// The lpm field of a table, as an index into its fields.
template <const table_row &T>
constexpr std::size_t lpm_field()
{
  for (std::size_t i = 0; i < T.field_count; ++i)
    if (T.fields[i].match == match_kind::lpm) return i;
  return T.field_count;
}

}  // namespace tarvex::pd
