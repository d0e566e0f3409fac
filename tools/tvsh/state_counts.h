// How much a state holds, or how much of it was written.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "switch_state.h"

namespace tarvex::shell {

struct state_counts {
  std::uint64_t members = 0;
  std::uint64_t groups = 0;
  std::uint64_t entries = 0;
  std::uint64_t defaults = 0;
  std::uint64_t cells = 0;     // of counters, meters and registers that no entry carries
  std::uint64_t settings = 0;  // everything else

  std::uint64_t total() const { return members + groups + entries + defaults + cells + settings; }
  /// "5 members, 2 groups, 100 entries, 8 settings": entries always, the others where there are any.
  std::string text() const;
};

/// Counts, and writes nothing.
class state_counter : public state_visitor {
 public:
  void member(const profile_info &, const profile_member &) override { ++counts.members; }
  void group(const profile_info &, const profile_group &) override { ++counts.groups; }
  void fallback(const profile_info &, std::uint32_t) override { ++counts.settings; }
  void idle(const table_info &, const idle_setting &) override { ++counts.settings; }
  void default_entry(const table_info &, const entry_state &) override { ++counts.defaults; }
  void entry(const table_info &, const entry_state &) override { ++counts.entries; }
  void cell(const resource_info &, const cell_state &) override { ++counts.cells; }
  void hash(const hash_info &, const hash_state &) override { ++counts.settings; }
  void value_set(const value_set_entry &) override { ++counts.settings; }
  void learning_timeout(std::uint32_t) override { ++counts.settings; }

  state_counts counts;
};

}  // namespace tarvex::shell
