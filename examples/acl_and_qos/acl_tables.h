// The access lists: what a destination MAC means, what goes to the CPU and how fast, what is mirrored and dropped.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>

#include "rule_table.h"

namespace tarvex::examples {

class acl_tables {
 public:
  acl_tables();
  ~acl_tables();  // in one place, with the tables' functions

  /// Writes the rules.
  void program();
  /// Gives some of them another action.
  void change();
  /// Compares the cells of the counter and the meter that the police rules share.
  void read_cells_back(tally &compared) const;

  std::vector<rule_table *> all() { return {&dmac, &trap, &mirror, &police, &drop}; }

  ternary_rules<p4_pd_tarvex_switch_l2DmacClassify_match_spec_t> dmac;
  ternary_rules<p4_pd_tarvex_switch_trapToCpu_match_spec_t> trap;
  ternary_rules<p4_pd_tarvex_switch_ingressMirrorSession_match_spec_t> mirror;
  exact_rules<p4_pd_tarvex_switch_pdpPolicy_match_spec_t> police;
  ternary_rules<p4_pd_tarvex_switch_finalDropControl_match_spec_t> drop;

 private:
  void program_dmac();
  void program_trap();
  void program_mirror();
  void program_police();
  void program_drop();
  void set_meter(std::uint32_t index, const pd_meter_spec_t &rates);

  std::map<std::uint32_t, pd_counter_value_t> cells_;  // of the counter, by index
  std::map<std::uint32_t, pd_meter_spec_t> meters_;
};

}  // namespace tarvex::examples
