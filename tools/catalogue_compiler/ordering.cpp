// Orders the rows.
//
// SPDX-License-Identifier: Apache-2.0
#include "ordering.h"

#include <algorithm>
#include <map>

namespace catalogue {

namespace {

template <class Row, class Key>
void sort_rows(std::vector<Row> &rows, Key Row::*key)
{
  std::stable_sort(rows.begin(), rows.end(), [&](const Row &a, const Row &b) { return a.*key < b.*key; });
}

void sort_groups(model &m)
{
  constexpr auto unplaced = static_cast<std::size_t>(-1);
  std::vector<std::size_t> place(m.groups.size(), unplaced);
  std::vector<group> sorted;
  const auto put = [&](std::size_t old) {
    if (place[old] != unplaced) return;
    place[old] = sorted.size();
    sorted.push_back(m.groups[old]);
  };
  for (const table &t : m.tables) put(t.group);
  for (std::size_t i = 0; i < m.groups.size(); ++i) put(i);

  m.groups = std::move(sorted);
  for (table &t : m.tables) t.group = place[t.group];
  for (action &a : m.actions) a.group = place[a.group];
}

void mark_index(action &a, const action_use &u)
{
  a.index_resources.clear();
  for (const resource_use &named : u.resources) {
    if (named.form != resource_form::indexed) continue;
    a.index_resources.push_back(named.handle);
    for (parameter &p : a.params) p.resource_index |= p.name == named.param;
  }
}

}  // namespace

void sort_all(model &m)
{
  sort_rows(m.tables, &table::handle);
  sort_rows(m.profiles, &profile::action_data_table);
  sort_rows(m.resources, &resource::handle);
  sort_rows(m.hashes, &hash_calculation::handle);
  for (const snapshot_direction direction : {snapshot_direction::ingress, snapshot_direction::egress}) {
    if (m.find_snapshot_layout(direction) != nullptr) continue;
    // A pipeline without snapshots has layouts without fields.
    snapshot_layout &none = m.snapshot_layouts.emplace_back();
    none.direction = direction;
    none.name = word_of(direction);
    none.sound = true;
  }
  sort_rows(m.snapshot_layouts, &snapshot_layout::direction);
  sort_groups(m);
}

void number_actions(model &m)
{
  std::map<std::string, std::size_t> values;
  const auto link = [&](std::vector<action_use> &uses) {
    for (action_use &u : uses) {
      u.action = u.enum_value;
      values.emplace(u.name, u.enum_value);
    }
  };
  for (table &t : m.tables) link(t.actions);
  for (profile &p : m.profiles) link(p.actions);
  std::sort(m.actions.begin(), m.actions.end(),
            [&](const action &a, const action &b) { return values.at(a.name) < values.at(b.name); });
  for (const table &t : m.tables) {
    for (const action_use &u : t.actions) mark_index(m.actions[u.action], u);
  }
}

}  // namespace catalogue
