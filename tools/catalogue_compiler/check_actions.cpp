// Checks of actions, and of how tables and profiles use them.
//
// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <set>

#include "checks.h"
#include "packed_bytes.h"
#include "used_actions.h"

namespace catalogue {

namespace {

/// The enumeration as uses turn up: a name's first use takes the next value, later ones repeat it.
class enumeration {
 public:
  void next(const subject &s, const action_use &u)
  {
    const auto [known, is_new] = values_.emplace(u.name, u.enum_value);
    if (!is_new) {
      if (u.sound && known->second != u.enum_value) {
        s.error("enum", "'enum' is " + std::to_string(u.enum_value) + ", but the action has " +
                            std::to_string(known->second) + " at its first use");
      }
      return;
    }
    if (u.sound && u.enum_value != next_ && u.enum_value != after_slip_) {
      s.error("enum", "'enum' is " + std::to_string(u.enum_value) + ", but the next action in the order of first use is " +
                          std::to_string(next_));
      // What follows may count on from the slip, or as if there were none.
      after_slip_ = u.enum_value + 1;
      ++next_;
      return;
    }
    if (u.sound) next_ = u.enum_value;
    after_slip_ = ++next_;
  }

 private:
  std::map<std::string, unsigned> values_;
  unsigned next_ = 0;
  unsigned after_slip_ = 0;
};

void check_some(const std::vector<action_use> &uses, const subject &s)
{
  if (uses.empty()) s.error("actions", "there must be an action");
}

void check_use(const model &m, const used_action &used, const subject &s)
{
  const action_use &u = *used.use;
  const action *a = m.find_action(u.name);
  if (a == nullptr) {
    s.error("name", "there is no [[action]] of this name");
    return;
  }
  if (used.by_table != nullptr && !used.by_table->keyed() && !u.is_default) {
    s.error("default", "a keyless table has its action by default only, so it must be true");
  }
  if (!u.sound || !all_sound(*a, a->params)) return;
  check_sum(s, "data_bits", u.data_bits, a->data_bits, "parameters");
  check_sum(s, "data_bytes", u.data_bytes, a->data_bytes, "parameters");
}

}  // namespace

void check_parameters(const model &m, diagnostics &diag)
{
  for (const action &a : m.actions) {
    if (!all_sound(a, a.params)) continue;
    const subject about(diag, "action", a);
    packed_bytes data("data");
    for (const parameter &p : a.params) {
      const subject s(about, "parameter", p);
      data.add(s, p, p.data);
      if (p.type == storage::bytes16) s.error("type", "a parameter has at most 32 bits");
    }
  }
}

void check_action_uses(const model &m, diagnostics &diag)
{
  for (const table &t : m.tables) {
    if (!t.indirect()) check_some(t.actions, subject(diag, "table", t));
  }
  for (const profile &p : m.profiles) check_some(p.actions, subject(diag, "profile", p));
  enumeration order;
  std::set<std::string> used;
  std::set<std::pair<const void *, std::string>> used_by;
  for (const used_action &u : used_actions(m)) {
    const subject s = u.about(diag);
    order.next(s, *u.use);
    check_use(m, u, s);
    used.insert(u.use->name);
    const void *owner = u.by_table != nullptr ? static_cast<const void *>(u.by_table) : u.by_profile;
    if (!used_by.emplace(owner, u.use->name).second) s.error("name", "the action is listed twice");
  }
  for (const action &a : m.actions) {
    if (!used.contains(a.name)) subject(diag, "action", a).error("name", "no table and no profile uses it");
  }
}

}  // namespace catalogue
