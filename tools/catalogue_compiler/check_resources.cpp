// Checks of resources: what the actions' lists name, and that nothing is left unnamed.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>

#include "checks.h"
#include "used_actions.h"

namespace catalogue {

namespace {

/// Elements of the driver's resource list.
constexpr std::size_t longest_list = 4;

std::string quoted(const resource &r) { return std::string(word_of(r.kind)) + " '" + r.name + "'"; }

bool fits(resource_form form, const resource &r)
{
  switch (form) {
    case resource_form::direct_counter: return r.direct && r.kind == resource_kind::counter;
    case resource_form::direct_meter: return r.direct && r.kind == resource_kind::meter;
    case resource_form::direct_register: return r.kind == resource_kind::register_;
    default: return !r.direct;
  }
}

std::string forms_of(const resource &r)
{
  return r.direct ? "'direct " + std::string(word_of(r.kind)) + "'" : "'indexed' or 'detached'";
}

bool names(const action_use &u, const resource &r)
{
  return std::any_of(u.resources.begin(), u.resources.end(),
                     [&](const resource_use &named) { return named.handle == r.handle; });
}

void check_index(const action *a, const resource_use &named, const subject &s)
{
  if (a == nullptr) return;
  const auto p =
      std::find_if(a->params.begin(), a->params.end(), [&](auto &other) { return other.name == named.param; });
  if (p == a->params.end()) {
    s.error("param", "the action has no parameter '" + named.param + "'");
  } else if (p->sound && (p->bits != 32 || p->type != storage::u32)) {
    s.error("param", "parameter '" + named.param + "' must be a u32 of 32 bits to hold an index");
  }
}

void check_named(const model &m, const table &t, const resource_use &named, const subject &s)
{
  const resource *r = m.find_resource(named.handle);
  if (r == nullptr) {
    s.error("handle", "no counter, meter, wred or register has this handle");
  } else if (!r->sound) {
    return;
  } else if (!fits(named.form, *r)) {
    s.error("form", "the form does not fit; " + quoted(*r) + " takes " + forms_of(*r));
  } else if (r->table != t.name) {
    s.error("handle",
            quoted(*r) + (r->table.empty() ? " belongs to no table" : " belongs to table '" + r->table + "'"));
  } else if (named.form == resource_form::direct_register && t.keyed()) {
    s.error("form", "only a keyless table has a direct register");
  }
}

void check_list(const model &m, const used_action &used, const subject &about)
{
  const std::vector<resource_use> &list = used.use->resources;
  if (list.size() > longest_list) {
    about.error("resources", "an action has at most " + std::to_string(longest_list) + " resources");
  }
  const std::string *index = nullptr;
  for (auto named = list.begin(); named != list.end(); ++named) {
    if (!named->sound) continue;
    const subject s(about, "resource", *named);
    check_named(m, *used.by_table, *named, s);
    if (std::any_of(list.begin(), named, [&](auto &earlier) { return earlier.handle == named->handle; })) {
      s.error("handle", "the resource is listed twice");
    }
    if (named->form != resource_form::indexed) continue;
    check_index(m.find_action(used.use->name), *named, s);
    if (index != nullptr && *index != named->param) {
      s.error("param", "the index is '" + *index + "' already; an action has one index parameter");
    }
    index = &named->param;
  }
}

/// An action's index parameter, with the resources that it is the index of.
using indexes = std::vector<std::pair<std::string, std::uint32_t>>;

indexes indexes_of(const action_use &u)
{
  indexes found;
  for (const resource_use &r : u.resources) {
    if (r.form == resource_form::indexed) found.emplace_back(r.param, r.handle);
  }
  return found;
}

void check_resource(const model &m, const resource &r, diagnostics &diag)
{
  const subject about(diag, word_of(r.kind), r);
  if (r.table.empty()) return;
  const table *t = m.find_table(r.table);
  if (t == nullptr) return about.error("table", "there is no table '" + r.table + "'");

  const auto does_name = [&](const action_use &u) { return names(u, r); };
  if (std::none_of(t->actions.begin(), t->actions.end(), does_name)) {
    return about.error("table", "no action of table '" + r.table + "' names it");
  }
  if (!r.direct) return;
  const subject of_table(diag, "table", *t);
  for (const action_use &u : t->actions) {
    if (!does_name(u))
      subject(of_table, "action", u).error("resources", "direct " + quoted(r) + " of the table is missing");
  }
}

void check_label(const table &t, diagnostics &diag)
{
  const auto has_counter = [](const action_use &u) {
    return std::any_of(u.resources.begin(), u.resources.end(),
                       [](const resource_use &r) { return r.form == resource_form::direct_counter; });
  };
  if (t.labelled() && std::none_of(t.actions.begin(), t.actions.end(), has_counter)) {
    subject(diag, "table", t).error("counter_label", "a label is for a direct counter, and no action names one");
  }
}

}  // namespace

void check_resources(const model &m, diagnostics &diag)
{
  std::map<std::string, indexes> first_uses;
  for (const used_action &u : used_actions(m)) {
    const subject s = u.about(diag);
    if (u.by_table != nullptr) check_list(m, u, s);
    const auto [first, is_new] = first_uses.emplace(u.use->name, indexes_of(*u.use));
    if (!is_new && first->second != indexes_of(*u.use)) {
      s.error("resources", "the action's first use has other index parameters or resources for them");
    }
  }
  for (const resource &r : m.resources) {
    if (r.sound) check_resource(m, r, diag);
  }
  for (const table &t : m.tables) check_label(t, diag);
}

}  // namespace catalogue
