// Writes a state to the live switch.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "invocation.h"
#include "state_counts.h"

namespace tarvex::shell {

/// Members and groups get the handles that the switch gives them; what refers to them follows. All throw refused_error.
class state_loader : public state_visitor {
 public:
  explicit state_loader(const invocation &call);

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

  state_counts written;
  /// Whether the part that a refusal ended had been written to in part.
  bool partly() const { return partly_; }

 private:
  struct handles {
    std::map<std::uint32_t, std::uint32_t> members;
    std::map<std::uint32_t, std::uint32_t> groups;
    std::set<std::uint32_t> never_filled;  // groups, by the switch's handles, that had no member since they were made
  };

  /// Before each part: nothing of it is written after an interrupt.
  void begin();

  /// The call that writes, prepared once for each function.
  function_call &call_of(const exported_function &function);
  void change_group(const profile_info &profile, std::uint32_t group, family_id family, std::uint32_t member,
                    const char *what);
  /// No entry can refer to a group that never had a member: it has one for a moment.
  void fill_once(const profile_info &profile, std::uint32_t group);
  std::uint32_t write_entry(const table_info &table, const entry_state &state, family_id direct, family_id indirect,
                            const char *what);

  const invocation &call_;
  bool partly_ = false;
  std::multiset<value_set_entry> value_sets_there_;
  std::map<const profile_info *, handles> handles_;
  std::map<const exported_function *, std::unique_ptr<function_call>> calls_;
  const table_info *table_ = nullptr;  // of the latest calls
  std::map<const action_info *, function_call *> of_actions_;
};

/// Whether the switch holds an entry, a default entry, a member or a group.
bool holds_state(const invocation &call);

/// Takes everything off the switch that a state can hold: entries, groups and members in the reverse order of how they
/// are written. `cells`: as in a reading of the live state. Throws shell_error, which says how much is gone.
void clear_state(const invocation &call, std::uint32_t cells);

}  // namespace tarvex::shell
