// Groups pair by the entries that refer to them, then by what they hold; members by their content, those of paired
// groups first. What is left over pairs in its order.
//
// SPDX-License-Identifier: Apache-2.0
#include "profile_matching.h"

#include <algorithm>
#include <ranges>
#include <set>
#include <unordered_map>

namespace tarvex::shell {

namespace {

using contents = std::vector<std::pair<model_action, bool>>;

class matcher {
 public:
  matcher(const model_profile &there, const model_table &table_there, const model_profile &wanted,
          const model_table &table_wanted)
      : there_(there), wanted_(wanted)
  {
    for (const model_member &each : there.members) actions_there_[each.id] = &each.action;
    for (const model_member &each : wanted.members) actions_wanted_[each.id] = &each.action;
    find_anchors(table_there, table_wanted);
  }

  profile_matching match()
  {
    for (const auto &[there, wanted] : group_anchors_) pair_groups(there, wanted);
    pair_groups_by_contents();
    pair_groups_in_order();
    for (const bool same_content : {true, false}) {
      for (const profile_group &group : wanted_.groups) pair_members_of(group, same_content);
      for (const auto &[there, wanted] : member_anchors_) pair_members(there, wanted, same_content);
      pair_rest(same_content);
    }
    return std::move(found_);
  }

 private:
  using anchors = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

  /// Entries that both states have: what they refer to is likely the same thing.
  void find_anchors(const model_table &there, const model_table &wanted)
  {
    std::unordered_map<std::string_view, const model_entry *> by_key;
    for (const model_entry &each : there.entries) by_key[each.key] = &each;
    const auto add = [&](const model_entry *left, const model_entry *right) {
      if (left == nullptr || right == nullptr || left->is_group != right->is_group) return;
      (left->is_group ? group_anchors_ : member_anchors_).emplace_back(left->reference, right->reference);
    };
    for (const model_entry &each : wanted.entries) {
      const auto found = by_key.find(each.key);
      if (found != by_key.end()) add(found->second, &each);
    }
    add(there.default_entry.get(), wanted.default_entry.get());
    if (there_.fallback && wanted_.fallback) member_anchors_.emplace_back(*there_.fallback, *wanted_.fallback);
  }

  static const profile_group *find(const std::vector<profile_group> &groups, std::uint32_t id)
  {
    const auto found = std::ranges::find(groups, id, &profile_group::id);
    return found == groups.end() ? nullptr : &*found;
  }

  void pair_groups(std::uint32_t there, std::uint32_t wanted)
  {
    if (found_.groups.contains(wanted) || groups_taken_.contains(there)) return;
    const profile_group *const left = find(there_.groups, there);
    const profile_group *const right = find(wanted_.groups, wanted);
    if (left == nullptr || right == nullptr) return;
    if (left->size && right->size && *left->size != *right->size) return;
    found_.groups[wanted] = there;
    groups_taken_.insert(there);
  }

  contents contents_of(const profile_group &group, const std::map<std::uint32_t, const model_action *> &actions) const
  {
    contents all;
    for (const group_member &each : group.members) all.emplace_back(*actions.at(each.id), each.active);
    std::ranges::sort(all);
    return all;
  }

  void pair_groups_by_contents()
  {
    std::map<contents, std::vector<std::uint32_t>> free;
    for (const profile_group &each : there_.groups) {
      if (!groups_taken_.contains(each.id)) free[contents_of(each, actions_there_)].push_back(each.id);
    }
    for (const profile_group &each : wanted_.groups) {
      if (found_.groups.contains(each.id)) continue;
      const auto same = free.find(contents_of(each, actions_wanted_));
      if (same == free.end()) continue;
      for (const std::uint32_t there : same->second) pair_groups(there, each.id);
    }
  }

  void pair_groups_in_order()
  {
    for (const profile_group &each : wanted_.groups) {
      if (found_.groups.contains(each.id)) continue;
      for (const profile_group &there : there_.groups) {
        if (!groups_taken_.contains(there.id)) pair_groups(there.id, each.id);
      }
    }
  }

  void pair_members(std::uint32_t there, std::uint32_t wanted, bool same_content)
  {
    if (found_.members.contains(wanted) || members_taken_.contains(there)) return;
    const model_action &left = *actions_there_.at(there);
    const model_action &right = *actions_wanted_.at(wanted);
    if (left.action != right.action || (same_content && left != right)) return;
    found_.members[wanted] = there;
    members_taken_.insert(there);
  }

  void pair_members_of(const profile_group &wanted, bool same_content)
  {
    const auto there = found_.groups.find(wanted.id);
    if (there == found_.groups.end()) return;
    for (const group_member &right : wanted.members) {
      for (const group_member &left : find(there_.groups, there->second)->members) {
        pair_members(left.id, right.id, same_content);
      }
    }
  }

  void pair_rest(bool same_content)
  {
    // By content, or by action alone: what is free, in its order.
    std::map<model_action, std::vector<std::uint32_t>> free;
    const auto kind_of = [&](const model_action &action) {
      return same_content ? action : model_action{action.action, {}};
    };
    for (const model_member &each : there_.members | std::views::reverse) {
      if (!members_taken_.contains(each.id)) free[kind_of(each.action)].push_back(each.id);
    }
    for (const model_member &each : wanted_.members) {
      if (found_.members.contains(each.id)) continue;
      const auto same = free.find(kind_of(each.action));
      if (same == free.end() || same->second.empty()) continue;
      pair_members(same->second.back(), each.id, same_content);
      same->second.pop_back();
    }
  }

  const model_profile &there_;
  const model_profile &wanted_;
  std::map<std::uint32_t, const model_action *> actions_there_;
  std::map<std::uint32_t, const model_action *> actions_wanted_;
  anchors group_anchors_;
  anchors member_anchors_;
  std::set<std::uint32_t> groups_taken_;
  std::set<std::uint32_t> members_taken_;
  profile_matching found_;
};

}  // namespace

profile_matching match_profile(const model_profile &there, const model_table &table_there, const model_profile &wanted,
                               const model_table &table_wanted)
{
  return matcher(there, table_there, wanted, table_wanted).match();
}

}  // namespace tarvex::shell
