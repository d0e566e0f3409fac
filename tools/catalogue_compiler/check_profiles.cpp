// Checks of profiles and indirect tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "checks.h"

namespace catalogue {

void check_profiles(const model &m, diagnostics &diag)
{
  for (const table &t : m.tables) {
    if (!t.indirect()) continue;
    const subject s(diag, "table", t);
    const profile *p = m.find_profile(t.profile);
    if (p == nullptr) {
      s.error("profile", "there is no [[profile]] '" + t.profile + "'");
    } else if (p->sound && p->table != t.name) {
      s.error("profile", "profile '" + t.profile + "' belongs to table '" + p->table + "'");
    }
  }
  for (const profile &p : m.profiles) {
    if (p.table.empty()) continue;
    const subject s(diag, "profile", p);
    const table *t = m.find_table(p.table);
    if (t == nullptr) {
      s.error("table", "there is no table '" + p.table + "'");
    } else if (!t->indirect()) {
      s.error("table", "table '" + p.table + "' has actions of its own; give it 'profile' instead");
    }
  }
}

}  // namespace catalogue
