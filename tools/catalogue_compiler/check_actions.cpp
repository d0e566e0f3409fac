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
    const unsigned stated = u.enum_value;
    const auto known = values_.find(u.name);
    if (known == values_.end()) {
      values_.emplace(u.name, take_next(s, u));
    } else if (u.sound && stated != known->second.stated && stated != known->second.expected) {
      s.error("enum", "'enum' is " + std::to_string(stated) + ", but the action has " +
                          std::to_string(known->second.expected) + " at its first use");
    }
  }

 private:
  /// Both are the same but where the first use slipped; what was told once is not told again for each later use.
  struct value {
    unsigned stated;
    unsigned expected;
  };

  value take_next(const subject &s, const action_use &u)
  {
    const value first{u.enum_value, next_};
    if (u.sound && first.stated != next_ && first.stated != after_slip_) {
      s.error("enum", "'enum' is " + std::to_string(first.stated) +
                          ", but the next action in the order of first use is " + std::to_string(next_));
      // What follows may count on from the slip, or as if there were none.
      after_slip_ = first.stated + 1;
      ++next_;
      return first;
    }
    if (u.sound) next_ = first.stated;
    after_slip_ = ++next_;
    return first;
  }

  std::map<std::string, value> values_;
  unsigned next_ = 0;
  unsigned after_slip_ = 0;
};

void check_use(const model &m, const used_action &used, const subject &s)
{
  const action_use &u = *used.use;
  const action *a = m.find_action(u.name);
  if (a == nullptr) {
    s.error("name", "there is no [[action]] of this name");
    return;
  }
  if (used.by_table != nullptr && !used.by_table->keyed() && !u.is_default) {
    s.error("default", "a keyless table has its action by default only; write 'default = true'");
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
    if (data.bytes() > read_data_bytes)
      about.error("params", "the parameters take " + std::to_string(data.bytes()) +
                                " bytes; a read offers the driver " + std::to_string(read_data_bytes));
  }
}

void check_action_uses(const model &m, diagnostics &diag)
{
  constexpr auto none = "there must be an action";
  for (const table &t : m.tables) {
    if (t.sound && !t.indirect() && t.actions.empty()) subject(diag, "table", t).error("actions", none);
  }
  for (const profile &p : m.profiles) {
    if (p.sound && p.actions.empty()) subject(diag, "profile", p).error("actions", none);
  }
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
