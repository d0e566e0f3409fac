// A whole state in memory, for comparing.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "entry_contents.h"
#include "file_place.h"
#include "switch_state.h"

namespace tarvex::shell {

/// A record of the caller's, as many bytes as it has.
using record_bytes = std::string;

struct model_action {
  const action_info *action = nullptr;
  record_bytes parameters;

  auto operator<=>(const model_action &) const = default;
};

// Lines are those of the file that a part was read from; 0 for the live switch.

struct model_member {
  std::uint32_t id = 0;
  model_action action;
  std::uint64_t line = 0;
};

struct model_group : profile_group {
  std::uint64_t line = 0;
};

struct model_entry {
  record_bytes key;  // and the priority behind it
  model_action action;
  bool is_group = false;
  std::uint32_t reference = 0;  // of an indirect table: number of the member or group
  std::uint32_t ttl = 0;
  std::uint64_t line = 0;
  std::unique_ptr<pd_meter_spec_t> meter;
  std::unique_ptr<pd_counter_value_t> counter;
};

struct model_profile {
  std::vector<model_member> members;
  std::vector<model_group> groups;
  std::optional<std::uint32_t> fallback;
};

struct model_table {
  std::optional<idle_setting> idle;
  std::unique_ptr<model_entry> default_entry;
  std::vector<model_entry> entries;
};

struct model_resource {
  std::optional<cell_value> rest;  // of a register: what all other cells hold
  std::map<std::uint32_t, cell_value> cells;
  std::map<std::uint32_t, std::uint64_t> lines;  // of the cells
};

class state_model : public state_visitor {
 public:
  /// Without `counts` counters and times to live, which traffic and time change, are left out.
  /// `at`: where the reader of a file is.
  explicit state_model(bool counts, const file_place *at = nullptr) : counts_(counts), at_(at) {}

  void member(const profile_info &profile, const profile_member &state) override;
  void group(const profile_info &profile, const profile_group &state) override;
  void fallback(const profile_info &profile, std::uint32_t member) override;
  void idle(const table_info &table, const idle_setting &setting) override;
  void default_entry(const table_info &table, const entry_state &state) override;
  void entry(const table_info &table, const entry_state &state) override;
  void cell(const resource_info &resource, const cell_state &state) override;
  void hash(const hash_info &hash, const hash_state &state) override;
  void value_set(const value_set_entry &entry) override;
  void learning_timeout(std::uint32_t timeout) override;

  bool counts() const { return counts_; }

  // By row; rows stand in arrays, so that these are in the order of the rows.
  std::map<const profile_info *, model_profile> profiles;
  std::map<const table_info *, model_table> tables;
  std::map<const resource_info *, model_resource> resources;
  std::map<const hash_info *, hash_state> hashes;
  std::multiset<value_set_entry> value_sets;
  std::optional<std::uint32_t> timeout;

  /// Of a setting that there is one of for a row: a fallback, an idle time, a whole register, a hash.
  std::uint64_t line_of(const void *row) const
  {
    const auto found = lines_.find(row);
    return found == lines_.end() ? 0 : found->second;
  }

 private:
  model_action action_of(const action_info *action, const record_memory &parameters);
  model_entry entry_of(const table_info &table, const entry_state &state);

  std::uint64_t line() const { return at_ == nullptr ? 0 : at_->line; }

  bool counts_;
  const file_place *at_;
  std::map<const void *, std::uint64_t> lines_;
  known_fields fields_;
};

}  // namespace tarvex::shell
