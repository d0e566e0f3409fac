// Colour refinement tells most nodes apart. Where it leaves several of one colour, one is singled out together with a
// candidate for its image and the rest refined again; a wrong candidate shows by colours that do not match any more.
//
// SPDX-License-Identifier: Apache-2.0
#include "equal_parts.h"

#include <algorithm>
#include <list>
#include <map>

namespace tarvex::shell {

namespace {

using colour = profile_graph::colour;
using node_list = std::vector<std::uint32_t>;

constexpr std::uint64_t most_work = 10'000'000;  // nodes looked at in refinements

/// The nodes of a colour in both states.
struct colour_class {
  node_list there;
  node_list wanted;
};

/// How far the sizes of two groups are from being known to be the same; they pair in this order, so that one of unknown
/// size does not take the place that another one needs.
enum class size_match : std::uint8_t { known, one_unknown, unknown };

class part_matcher {
 public:
  explicit part_matcher(const profile_graph &graph) : graph_(graph), nodes_(graph.nodes()) {}

  node_pairs match()
  {
    const auto is_known = [](const profile_graph::node &each) { return !each.is_group || each.group->size; };
    all_sizes_known_ = std::ranges::all_of(nodes_, is_known);
    colours_ = graph_.first_colours(all_sizes_known_);
    node_list all(nodes_.size());
    for (std::uint32_t at = 0; at < nodes_.size(); ++at) all[at] = at;
    graph_.refine(colours_, all);

    std::map<std::uint32_t, node_list> components;
    for (const std::uint32_t at : all) components[nodes_[at].component].push_back(at);
    std::map<std::vector<colour>, std::pair<std::list<node_list>, std::list<node_list>>> alike;
    for (auto &[root, members] : components) {
      std::vector<colour> key;
      for (const std::uint32_t at : members) key.push_back(colours_[at]);
      std::ranges::sort(key);
      auto &[there, wanted] = alike[key];
      (nodes_[root].wanted ? wanted : there).push_back(std::move(members));
    }
    for (auto &[key, parts] : alike) {
      for (const size_match worst : {size_match::known, size_match::one_unknown, size_match::unknown}) {
        pair_parts(parts.first, parts.second, worst);
        if (all_sizes_known_) break;
      }
    }
    return std::move(found_);
  }

 private:
  void pair_parts(std::list<node_list> &there, std::list<node_list> &wanted, size_match worst)
  {
    worst_ = worst;
    std::erase_if(wanted, [&](const node_list &right) {
      const auto left = std::ranges::find_if(there, [&](const node_list &each) { return are_equal(each, right); });
      if (left == there.end()) return false;
      there.erase(left);
      return true;
    });
  }

  /// Adds the pairs of nodes where they are.
  bool are_equal(const node_list &there, const node_list &wanted)
  {
    node_list both = there;
    both.insert(both.end(), wanted.begin(), wanted.end());
    const std::vector<colour> before = colours_of(both);
    graph_.refine(colours_, both);  // numbers them anew
    const bool equal = extend(both);
    restore(both, before);
    return equal;
  }

  /// By the colours that the nodes have now.
  bool extend(const node_list &both)
  {
    std::map<colour, colour_class> classes;
    for (const std::uint32_t at : both) {
      colour_class &of = classes[colours_[at]];
      (nodes_[at].wanted ? of.wanted : of.there).push_back(at);
    }
    const colour_class *smallest = nullptr;
    for (const auto &[number, each] : classes) {
      if (each.there.size() != each.wanted.size()) return false;
      const bool settled = each.there.size() == 1 || are_twins(each);
      if (settled && !may_pair(each.there.front(), each.wanted.front())) return false;
      if (!settled && (smallest == nullptr || each.there.size() < smallest->there.size())) smallest = &each;
    }
    if (smallest != nullptr) return single_out(*smallest, both);
    for (const auto &[number, each] : classes) {
      for (std::size_t i = 0; i < each.there.size(); ++i) found_.emplace_back(each.there[i], each.wanted[i]);
    }
    return true;
  }

  bool single_out(const colour_class &of, const node_list &both)
  {
    const std::vector<colour> before = colours_of(both);
    const auto fresh = static_cast<colour>(both.size());  // colours are numbered from 0, and are no more than nodes
    for (const std::uint32_t image : of.wanted) {
      if (!may_pair(of.there.front(), image)) continue;
      work_ += both.size();
      if (work_ > most_work) return false;
      colours_[of.there.front()] = colours_[image] = fresh;
      graph_.refine(colours_, both);
      if (extend(both)) return true;
      restore(both, before);
    }
    return false;
  }

  /// Members with the very same groups: any of them may be any other.
  bool are_twins(const colour_class &of) const
  {
    const auto same_edges = [&](const node_list &list) {
      const auto &first = nodes_[list.front()];
      return std::ranges::all_of(
          list, [&](std::uint32_t at) { return !nodes_[at].is_group && nodes_[at].edges == first.edges; });
    };
    return same_edges(of.there) && same_edges(of.wanted);
  }

  bool may_pair(std::uint32_t there, std::uint32_t wanted) const
  {
    const auto &left = nodes_[there];
    const auto &right = nodes_[wanted];
    if (!left.is_group || all_sizes_known_) return true;
    const auto known = static_cast<int>(left.group->size.has_value()) + static_cast<int>(right.group->size.has_value());
    return static_cast<int>(worst_) >= 2 - known && profile_graph::same_size(left, right);
  }

  std::vector<colour> colours_of(const node_list &nodes) const
  {
    std::vector<colour> colours;
    for (const std::uint32_t at : nodes) colours.push_back(colours_[at]);
    return colours;
  }
  void restore(const node_list &nodes, const std::vector<colour> &colours)
  {
    for (std::size_t i = 0; i < nodes.size(); ++i) colours_[nodes[i]] = colours[i];
  }

  const profile_graph &graph_;
  const std::vector<profile_graph::node> &nodes_;
  bool all_sizes_known_ = true;
  std::vector<colour> colours_;
  size_match worst_ = size_match::known;  // that two groups of a pair may have
  std::uint64_t work_ = 0;
  node_pairs found_;
};

}  // namespace

node_pairs find_equal_parts(const profile_graph &graph) { return part_matcher(graph).match(); }

}  // namespace tarvex::shell
