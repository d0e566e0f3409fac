// Walks the uses of actions.
//
// SPDX-License-Identifier: Apache-2.0
#include "used_actions.h"

#include <algorithm>

namespace catalogue {

subject used_action::about(diagnostics &diag) const
{
  const subject owner = by_table != nullptr ? subject(diag, "table", *by_table) : subject(diag, "profile", *by_profile);
  return subject(owner, "action", *use);
}

std::vector<used_action> used_actions(const model &m)
{
  std::vector<used_action> all;
  std::vector<const profile *> walked;
  const auto add_profile = [&](const profile &p) {
    if (std::find(walked.begin(), walked.end(), &p) != walked.end()) return;
    walked.push_back(&p);
    for (const action_use &u : p.actions) all.push_back({&u, nullptr, &p});
  };
  for (const table &t : m.tables) {
    for (const action_use &u : t.actions) all.push_back({&u, &t, nullptr});
    if (!t.indirect()) continue;
    if (const profile *p = m.find_profile(t.profile)) add_profile(*p);
  }
  // A profile that no table names is an error of its own; its actions are used all the same.
  for (const profile &p : m.profiles) add_profile(p);
  return all;
}

}  // namespace catalogue
