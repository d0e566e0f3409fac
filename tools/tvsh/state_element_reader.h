// Makes the parts of a state from the elements of a file: names against rows, values against fields, numbers of members
// and groups against those that came ahead.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "fields.h"
#include "json_element.h"
#include "switch_state.h"

namespace tarvex::shell {

class state_element_reader {
 public:
  explicit state_element_reader(state_visitor &to) : to_(to) {}

  /// The section that follows, the list of it that follows, and an element of that. All throw usage_error.
  void section(std::string_view name);
  void owner(std::string_view name);
  void take(json_item element);

 private:
  using reader = void (state_element_reader::*)(json_item);
  struct section_row {
    std::string_view name;
    reader read;
    void (state_element_reader::*find_owner)(std::string_view);
  };
  static const section_row sections[];

  struct ready_action {
    const use_info *use;
    std::vector<shown_field> fields;
  };
  struct known_profile {
    std::unordered_map<std::uint32_t, const action_info *> members;
    std::unordered_set<std::uint32_t> groups;
  };

  void find_profile(std::string_view name);
  void find_table(std::string_view name);
  void find_resource(std::string_view name);
  void find_hash(std::string_view name);
  void find_value_set(std::string_view name);
  void find_digest(std::string_view name);

  void read_member(json_item element);
  void read_group(json_item element);
  void read_fallback(json_item element);
  void read_idle(json_item element);
  void read_default(json_item element);
  void read_entry(json_item element);
  void read_cell(json_item element);
  void read_hash(json_item element);
  void read_value_set(json_item element);
  void read_learning(json_item element);

  void set_uses(std::span<const use_info> uses);
  const ready_action &action_of(json_item name, std::string_view owner);
  void read_parameters(const ready_action &action, json_item values, record_memory &to);
  void read_body(json_item action, json_item parameters, json_item member, json_item group, json_item meter,
                 json_item counter);
  std::uint32_t known_member(json_item item);

  state_visitor &to_;
  const section_row *section_ = nullptr;
  const profile_info *profile_ = nullptr;
  const table_info *table_ = nullptr;
  const resource_info *resource_ = nullptr;
  const hash_info *hash_ = nullptr;
  std::vector<shown_field> key_;
  std::vector<ready_action> actions_;
  std::vector<bool> taken_;
  entry_state entry_;
  std::map<const profile_info *, known_profile> known_;
  std::set<const void *> told_once_;  // defaults, idle times, fallbacks and hashes that came already
};

}  // namespace tarvex::shell
