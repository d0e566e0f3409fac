// Parts of the two states that are equal pair first, and cost nothing. Of the rest, groups and then members pair by how
// many changes that saves over deleting the one and making the other, the most first.
//
// SPDX-License-Identifier: Apache-2.0
#include "profile_matching.h"

#include <algorithm>
#include <ranges>

#include "equal_parts.h"
#include "profile_graph.h"

namespace tarvex::shell {

namespace {

using node_list = std::vector<std::uint32_t>;

constexpr std::size_t most_candidates = 4'000'000;  // of pairs that are weighed; the others pair in their order

/// Pairs of nodes with the changes that they save.
class savings {
 public:
  void add(std::uint32_t there, std::uint32_t wanted, int saved)
  {
    const auto found = saved_.find({there, wanted});
    if (found != saved_.end()) {
      found->second += saved;
    } else if (saved_.size() < most_candidates) {
      saved_[{there, wanted}] = saved;
    }
  }

  /// From the greatest saving on, equal ones in the order of the nodes; `base` is added to each.
  template <typename Base>
  node_pairs best_first(Base base) const
  {
    std::vector<std::pair<int, std::pair<std::uint32_t, std::uint32_t>>> all;
    for (const auto &[nodes, saved] : saved_) {
      const int whole = saved + base(nodes.first, nodes.second);
      if (whole > 0) all.emplace_back(-whole, nodes);
    }
    std::ranges::sort(all);
    node_pairs pairs;
    for (const auto &each : all) pairs.push_back(each.second);
    return pairs;
  }

 private:
  std::map<std::pair<std::uint32_t, std::uint32_t>, int> saved_;
};

class matcher {
 public:
  explicit matcher(const profile_graph &graph) : nodes_(graph.nodes()), partner_(nodes_.size(), no_partner)
  {
    for (const auto &[there, wanted] : find_equal_parts(graph)) pair(there, wanted);
  }

  profile_matching match()
  {
    pair_groups();
    pair_members();
    profile_matching found;
    for (std::uint32_t at = 0; at < nodes_.size(); ++at) {
      if (!nodes_[at].wanted || partner_[at] == no_partner) continue;
      (nodes_[at].is_group ? found.groups : found.members)[nodes_[at].id] = nodes_[partner_[at]].id;
    }
    return found;
  }

 private:
  static constexpr std::uint32_t no_partner = 0xffffffff;

  bool is_free(std::uint32_t at) const { return partner_[at] == no_partner; }
  void pair(std::uint32_t there, std::uint32_t wanted)
  {
    partner_[there] = wanted;
    partner_[wanted] = there;
  }

  node_list free_nodes(bool wanted, bool is_group) const
  {
    node_list list;
    for (std::uint32_t at = 0; at < nodes_.size(); ++at) {
      if (nodes_[at].wanted == wanted && nodes_[at].is_group == is_group && is_free(at)) list.push_back(at);
    }
    return list;
  }

  /// What refers to both need not be changed.
  void save_references(savings &saved, bool groups) const
  {
    std::map<std::uint32_t, std::uint32_t> by_anchor;
    for (const std::uint32_t at : free_nodes(false, groups)) {
      for (const std::uint32_t anchor : nodes_[at].anchors) by_anchor[anchor] = at;
    }
    for (const std::uint32_t at : free_nodes(true, groups)) {
      for (const std::uint32_t anchor : nodes_[at].anchors) {
        if (const auto there = by_anchor.find(anchor); there != by_anchor.end()) saved.add(there->second, at, 1);
      }
    }
  }

  void pair_all(const node_pairs &pairs)
  {
    for (const auto &[there, wanted] : pairs) {
      if (is_free(there) && is_free(wanted) && can_pair(there, wanted)) pair(there, wanted);
    }
  }

  /// No modification changes the action of a member or the size of a group.
  bool can_pair(std::uint32_t there, std::uint32_t wanted) const
  {
    const auto &left = nodes_[there];
    const auto &right = nodes_[wanted];
    return left.is_group ? profile_graph::same_size(left, right) : left.action->action == right.action->action;
  }

  void pair_groups()
  {
    savings saved;
    save_references(saved, true);
    // A member of the same content need not be taken out of the one, which deletion spares, nor added to the other; and
    // it need not be enabled or disabled where its state is the same, too.
    for (const bool with_states : {false, true}) save_contents(saved, with_states);
    pair_all(saved.best_first(
        [&](std::uint32_t there, std::uint32_t) { return 2 - static_cast<int>(nodes_[there].edges.size()); }));
    // Empty ones save the making and the deleting.
    for (const std::uint32_t there : free_nodes(false, true)) {
      if (nodes_[there].edges.size() > 1) continue;
      for (const std::uint32_t wanted : free_nodes(true, true)) {
        if (!can_pair(there, wanted)) continue;
        pair(there, wanted);
        break;
      }
    }
  }

  void save_contents(savings &saved, bool with_states) const
  {
    const auto kind_of = [&](const profile_graph::edge &each) {
      return std::pair(nodes_[each.to].content, with_states && each.active);
    };
    std::map<std::pair<std::uint32_t, bool>, std::map<std::uint32_t, int>> wanted;  // members of a kind, by group
    for (const std::uint32_t group : free_nodes(true, true)) {
      for (const auto &each : nodes_[group].edges) ++wanted[kind_of(each)][group];
    }
    for (const std::uint32_t group : free_nodes(false, true)) {
      std::map<std::pair<std::uint32_t, bool>, int> had;
      for (const auto &each : nodes_[group].edges) ++had[kind_of(each)];
      for (const auto &[kind, count] : had) {
        const auto in = wanted.find(kind);
        if (in == wanted.end()) continue;
        for (const auto &[other, count_there] : in->second) saved.add(group, other, std::min(count, count_there));
      }
    }
  }

  void pair_members()
  {
    savings saved;
    save_references(saved, false);
    for (const std::uint32_t group : wanted_groups()) save_memberships(saved, partner_[group], group);
    const auto same_content = [&](std::uint32_t there, std::uint32_t wanted) {
      return nodes_[there].content == nodes_[wanted].content;
    };
    // What refers to a member counts beside one add, one delete, and one modification where the contents differ.
    pair_all(saved.best_first(
        [&](std::uint32_t there, std::uint32_t wanted) { return same_content(there, wanted) ? 2 : 1; }));
    pair_in_order([](const profile_graph::node &each) { return std::pair(each.content, each.action->action); });
    pair_in_order([](const profile_graph::node &each) { return each.action->action; });
  }

  node_list wanted_groups() const
  {
    node_list list;
    for (std::uint32_t at = 0; at < nodes_.size(); ++at) {
      if (nodes_[at].wanted && nodes_[at].is_group && !is_free(at)) list.push_back(at);
    }
    return list;
  }

  /// A membership that stays is neither removed nor added. Where contents differ, only what has no equal in the other
  /// group is a candidate.
  void save_memberships(savings &saved, std::uint32_t there, std::uint32_t wanted)
  {
    std::map<std::uint32_t, std::vector<profile_graph::edge>> contents_there;
    for (const auto &each : nodes_[there].edges) {
      if (is_free(each.to)) contents_there[nodes_[each.to].content].push_back(each);
    }
    node_list left;
    std::set<std::uint32_t> met;
    for (const auto &each : nodes_[wanted].edges) {
      if (!is_free(each.to)) continue;
      const std::uint32_t content = nodes_[each.to].content;
      const auto same = contents_there.find(content);
      if (same == contents_there.end()) {
        left.push_back(each.to);
        continue;
      }
      met.insert(content);
      for (const auto &[other, active] : same->second) saved.add(other, each.to, active == each.active ? 2 : 1);
    }
    for (const auto &[content, list] : contents_there) {
      if (met.contains(content)) continue;
      for (const auto &[one, active] : list) {
        for (const std::uint32_t other : left) {
          if (can_pair(one, other)) saved.add(one, other, 2);
        }
      }
    }
  }

  template <typename Kind>
  void pair_in_order(Kind kind)
  {
    std::map<decltype(kind(nodes_[0])), node_list> free;
    for (const std::uint32_t at : free_nodes(false, false) | std::views::reverse) free[kind(nodes_[at])].push_back(at);
    for (const std::uint32_t wanted : free_nodes(true, false)) {
      const auto same = free.find(kind(nodes_[wanted]));
      if (same == free.end() || same->second.empty()) continue;
      pair(same->second.back(), wanted);
      same->second.pop_back();
    }
  }

  const std::vector<profile_graph::node> &nodes_;
  std::vector<std::uint32_t> partner_;
};

}  // namespace

profile_matching match_profile(const model_profile &there, const model_table &table_there, const model_profile &wanted,
                               const model_table &table_wanted)
{
  const profile_graph graph(there, table_there, wanted, table_wanted);
  return matcher(graph).match();
}

}  // namespace tarvex::shell
