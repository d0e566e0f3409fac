// Reads entries of a match table.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "catalogue.h"
#include "function_call.h"
#include "records.h"
#include "tarvex_pd/types.h"

namespace tarvex::shell {

struct table_entry {
  std::uint32_t handle = 0;
  bool has_key = false;  // a default entry has none
  std::uint32_t priority = 0;
  const action_info *action = nullptr;  // null in an indirect table
  bool is_group = false;                // of an indirect table: what it refers to
  std::uint32_t member = 0;
  std::uint32_t group = 0;
  record_memory key;
  record_memory parameters;
};

class entry_reader {
 public:
  entry_reader(const table_info &table, const target &where, bool from_hardware);

  /// Valid until the next one is read. Throws refused_error.
  const table_entry &read(std::uint32_t handle);
  /// Null where it is gone.
  const table_entry *read_if_there(std::uint32_t handle);

 private:
  std::string what(std::uint32_t handle) const;

  function_call call_;
  const table_info &table_;
  table_entry entry_;
  pd_status_t status_ = 0;
  std::uint32_t action_ = 0;
  std::uint8_t no_key_ = 0;
  std::uint8_t is_member_ = 0;
  std::uint8_t is_group_ = 0;
};

/// Handle of the default entry; nothing where the table has none.
std::optional<std::uint32_t> default_entry(const table_info &table, const target &where);
std::uint32_t entry_count(const table_info &table, const target &where);

}  // namespace tarvex::shell
