// The state of a switch as it is saved, loaded and compared: a stream of its parts in one fixed order, from the live
// switch or from a file, to whoever makes something of it.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "entry_reader.h"
#include "own_writes.h"
#include "tarvex_pd/resource_values.h"

namespace tarvex::shell {

/// Members and groups have the numbers of where they come from: handles on the live switch, running numbers in a file.
struct profile_member {
  std::uint32_t id = 0;
  const action_info *action = nullptr;
  record_memory parameters;
};

struct group_member {
  std::uint32_t id = 0;
  bool active = true;
};

struct profile_group {
  std::uint32_t id = 0;
  std::optional<std::uint32_t> size;  // the switch does not tell it: known of groups that the shell created
  std::vector<group_member> members;
};

/// A default entry is one without a key.
struct entry_state : table_entry {
  std::optional<std::uint32_t> ttl;
  std::optional<pd_meter_spec_t> meter;
  std::optional<pd_counter_value_t> counter;
};

using cell_value = std::variant<pd_counter_value_t, pd_meter_spec_t, pd_wred_spec_t, std::uint8_t>;

struct cell_state {
  std::optional<std::uint32_t> index;  // nothing: all cells that are not told of behind it
  cell_value value;
};

struct hash_state {
  std::uint64_t seed = 0;
  std::vector<bool> selected;  // by number of the input field

  bool operator==(const hash_state &) const = default;
};

/// Takes the parts of a state, which come in the order of these functions. What an entry refers to has come ahead.
class state_visitor {
 public:
  state_visitor() = default;
  state_visitor(const state_visitor &) = delete;
  state_visitor &operator=(const state_visitor &) = delete;
  virtual ~state_visitor() = default;

  virtual void member(const profile_info &profile, const profile_member &state) = 0;
  virtual void group(const profile_info &profile, const profile_group &state) = 0;
  virtual void fallback(const profile_info &profile, std::uint32_t member) = 0;
  virtual void idle(const table_info &table, const idle_setting &setting) = 0;
  virtual void default_entry(const table_info &table, const entry_state &state) = 0;
  virtual void entry(const table_info &table, const entry_state &state) = 0;
  virtual void cell(const resource_info &resource, const cell_state &state) = 0;
  virtual void hash(const hash_info &hash, const hash_state &state) = 0;
  virtual void value_set(const value_set_entry &entry) = 0;
  virtual void learning_timeout(std::uint32_t timeout) = 0;
};

/// Whether a cell is as one that was never written.
bool is_blank(const cell_value &value);
bool same_cell(const cell_value &left, const cell_value &right);
bool same_meter(const pd_meter_spec_t &left, const pd_meter_spec_t &right);

bool has_meter(const use_info &use);
/// The counter that hangs on a table's entries; null where there is none.
const resource_info *direct_counter(const table_info &table);
/// How a table or profile has an action, which is one of its own.
const use_info &use_of(std::span<const use_info> uses, const action_info &action);

}  // namespace tarvex::shell
