// SPDX-License-Identifier: Apache-2.0
#include "profile_graph.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <string_view>
#include <tuple>
#include <unordered_map>

namespace tarvex::shell {

profile_graph::profile_graph(const model_profile &there, const model_table &table_there, const model_profile &wanted,
                             const model_table &table_wanted)
{
  add_state(false, there);
  add_state(true, wanted);
  add_anchors(there, table_there, wanted, table_wanted);
  std::map<model_action, colour> contents;
  for (node &each : nodes_) {
    std::ranges::sort(each.edges);
    std::ranges::sort(each.anchors);
    if (!each.is_group) each.content = contents.try_emplace(*each.action, contents.size() + 1).first->second;
  }
  find_components();
}

void profile_graph::add_state(bool is_wanted, const model_profile &profile)
{
  std::unordered_map<std::uint32_t, std::uint32_t> members;
  for (const model_member &each : profile.members) {
    members[each.id] = static_cast<std::uint32_t>(nodes_.size());
    node &made = nodes_.emplace_back();
    made.wanted = is_wanted;
    made.id = each.id;
    made.action = &each.action;
  }
  for (const model_group &each : profile.groups) {
    const auto number = static_cast<std::uint32_t>(nodes_.size());
    node &made = nodes_.emplace_back();
    made.wanted = is_wanted;
    made.is_group = true;
    made.id = each.id;
    made.group = &each;
    for (const group_member &member : each.members) {
      const std::uint32_t other = members.at(member.id);
      nodes_[number].edges.push_back({other, member.active});
      nodes_[other].edges.push_back({number, member.active});
    }
  }
}

void profile_graph::add_anchors(const model_profile &there, const model_table &table_there, const model_profile &wanted,
                                const model_table &table_wanted)
{
  constexpr std::uint32_t of_default = 0;
  constexpr std::uint32_t of_fallback = 1;
  std::map<std::tuple<bool, bool, std::uint32_t>, node *> by_id;
  for (node &each : nodes_) by_id[{each.wanted, each.is_group, each.id}] = &each;
  const auto anchor = [&](bool is_wanted, bool is_group, std::uint32_t id, std::uint32_t number) {
    const auto found = by_id.find({is_wanted, is_group, id});
    if (found != by_id.end()) found->second->anchors.push_back(number);
  };
  std::unordered_map<std::string_view, std::uint32_t> keys;
  const auto add_table = [&](bool is_wanted, const model_profile &profile, const model_table &table) {
    for (const model_entry &each : table.entries) {
      const auto next = static_cast<std::uint32_t>(keys.size() + 2);
      anchor(is_wanted, each.is_group, each.reference, keys.try_emplace(each.key, next).first->second);
    }
    if (const model_entry *const each = table.default_entry.get()) {
      anchor(is_wanted, each->is_group, each->reference, of_default);
    }
    if (profile.fallback) anchor(is_wanted, false, *profile.fallback, of_fallback);
  };
  add_table(false, there, table_there);
  add_table(true, wanted, table_wanted);
}

void profile_graph::find_components()
{
  std::vector<std::uint32_t> parent(nodes_.size());
  std::iota(parent.begin(), parent.end(), 0U);
  const auto root_of = [&](std::uint32_t at) {
    while (parent[at] != at) at = parent[at] = parent[parent[at]];
    return at;
  };
  for (std::uint32_t at = 0; at < nodes_.size(); ++at) {
    for (const edge &each : nodes_[at].edges) parent[root_of(at)] = root_of(each.to);
  }
  for (std::uint32_t at = 0; at < nodes_.size(); ++at) nodes_[at].component = root_of(at);
}

std::vector<profile_graph::colour> profile_graph::first_colours(bool sizes) const
{
  std::map<std::tuple<bool, colour, std::uint64_t, const std::vector<std::uint32_t> &>, colour> known;
  std::vector<colour> colours;
  for (const node &each : nodes_) {
    const std::uint64_t size = sizes && each.is_group && each.group->size ? *each.group->size + std::uint64_t{1} : 0;
    colours.push_back(known.try_emplace({each.is_group, each.content, size, each.anchors}, known.size()).first->second);
  }
  return colours;
}

void profile_graph::refine(std::vector<colour> &colours, std::span<const std::uint32_t> among) const
{
  using surroundings = std::pair<colour, std::vector<std::pair<bool, colour>>>;
  std::size_t before = 0;
  for (;;) {
    std::map<surroundings, colour> known;
    std::vector<colour> next;
    next.reserve(among.size());
    for (const std::uint32_t at : among) {
      surroundings seen{colours[at], {}};
      for (const edge &each : nodes_[at].edges) seen.second.emplace_back(each.active, colours[each.to]);
      std::ranges::sort(seen.second);
      next.push_back(known.try_emplace(std::move(seen), known.size()).first->second);
    }
    for (std::size_t i = 0; i < among.size(); ++i) colours[among[i]] = next[i];
    if (known.size() == before) return;
    before = known.size();
  }
}

bool profile_graph::same_size(const node &there, const node &wanted)
{
  const auto &left = there.group->size;
  const auto &right = wanted.group->size;
  if (left && right) return *left == *right;
  return !left || wanted.group->members.size() <= *left;
}

}  // namespace tarvex::shell
