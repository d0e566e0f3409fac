// The actions as tables and profiles use them, over the whole catalogue.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "diagnostics.h"
#include "model.h"

namespace catalogue {

/// A use of an action, by a table or by a profile: the other one is null.
struct used_action {
  const action_use *use;
  const table *by_table;
  const profile *by_profile;

  /// "table 'ipv4Host', action 'setNextHop'"
  subject about(diagnostics &diag) const;
};

/// All uses in the order of their handles: table by table, a profile's at the place of its indirect table.
std::vector<used_action> used_actions(const model &m);

}  // namespace catalogue
