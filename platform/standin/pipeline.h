// The compiled pipeline that the stand-in switch has loaded: what a switch knows of its tables. The rows are generated
// from the catalogue; a table's live bits are those that the pipeline really matches on.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

namespace tarvex::standin {

enum class table_kind : std::uint8_t { keyless, exact, ternary, lpm };

struct pipeline_action {
  std::uint32_t handle;  // of this table or profile
  const char *name;
  std::uint16_t data_bits;  // 0 without parameters
  std::uint16_t data_bytes;
  bool may_be_default;
};

struct pipeline_table {
  std::uint32_t handle;
  const char *name;
  table_kind kind;
  std::uint16_t key_bits;
  std::uint16_t key_bytes;
  const std::uint8_t *live_mask;  // key_bytes bytes; null for a keyless table
  std::uint32_t live_partition;   // live bits of the partition index; 0 where the table has none
  bool idle_time;
  const char *profile;                       // of an indirect table, else null
  std::span<const pipeline_action> actions;  // in handle order; of an indirect table those of its profile
};

struct pipeline_profile {
  const char *name;
  std::uint32_t action_data_table;
  std::uint32_t selector_table;
  std::uint32_t table;  // the indirect match table
  std::span<const pipeline_action> actions;
};

enum class resource_kind : std::uint8_t { counter, meter, wred, register_ };

struct pipeline_resource {
  std::uint32_t handle;
  const char *name;
  resource_kind kind;
  bool direct;
  std::uint32_t table;  // match table it hangs on or is used by, 0 where none
};

/// A dynamic hash calculation. Its field lists have consecutive handles; it starts with the first, and with the first
/// of its algorithms.
struct pipeline_hash {
  std::uint32_t handle;
  std::uint32_t first_input;
  std::uint32_t input_count;
  std::span<const std::uint32_t> algorithms;
};

struct pipeline_digest {
  std::uint32_t handle;
  std::uint32_t entry_bytes;
};

/// A field of a snapshot; one of 3 bytes stands in 4.
struct pipeline_snapshot_field {
  const char *name;
  std::uint16_t offset;
  std::uint16_t size;  // 1, 2, 3, 4 or 16
};

// Defined by the generated pipeline_rows.cpp; tables in handle order.
extern const std::span<const pipeline_table> pipeline_tables;
extern const std::span<const pipeline_profile> pipeline_profiles;
extern const std::span<const pipeline_resource> pipeline_resources;
extern const std::span<const pipeline_hash> pipeline_hashes;
extern const pipeline_digest pipeline_learning_digest;  // handle 0 where there is none
extern const std::uint32_t pipeline_value_set;          // its handle, 0 where there is none
extern const std::span<const pipeline_snapshot_field> pipeline_ingress_fields;
extern const std::span<const pipeline_snapshot_field> pipeline_egress_fields;

}  // namespace tarvex::standin
