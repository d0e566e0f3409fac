// Pairs of states that are hard to tell apart: few contents, so that many members and groups are equal to each other.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tarvex::shell {

/// Choices out of bytes; 0 when they are used up.
class choice_source {
 public:
  explicit choice_source(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool empty() const { return bytes_.empty(); }
  unsigned below(unsigned count)
  {
    if (bytes_.empty()) return 0;
    const unsigned chosen = bytes_.front() % count;
    bytes_ = bytes_.subspan(1);
    return chosen;
  }
  std::string number(unsigned count) { return std::to_string(below(count)); }

 private:
  std::span<const std::uint8_t> bytes_;
};

/// Runs a command; the handle of what it made, or 0 where it made nothing or was refused.
using state_command = std::function<std::uint32_t(const std::string &)>;

/// What a profile and its table hold, by places in these lists instead of handles.
struct profile_shape {
  struct membership {
    unsigned member = 0;
    bool active = true;
  };
  struct group {
    bool large = false;
    std::vector<membership> members;
  };
  struct reference {
    unsigned key = 0;  // that of the default entry is 0
    bool to_group = false;
    unsigned at = 0;
  };

  std::vector<unsigned> members;  // their contents
  std::vector<group> groups;
  std::vector<reference> references;
  bool has_fallback = false;  // the first member
  unsigned changes = 0;       // that were made to it
};

/// Two contents at most and few references, so that much is alike.
inline profile_shape random_shape(choice_source &from)
{
  profile_shape shape;
  shape.members.resize(1 + from.below(7));
  for (unsigned &content : shape.members) content = from.below(2);
  shape.groups.resize(from.below(7));
  for (profile_shape::group &group : shape.groups) {
    group.large = from.below(6) == 0;
    const unsigned density = 2 + from.below(3);
    for (unsigned member = 0; member < shape.members.size(); ++member) {
      if (from.below(density) == 0) group.members.push_back({member, from.below(5) != 0});
    }
  }
  for (unsigned key = 0; key < 4; ++key) {
    if (from.below(3) != 0) continue;
    const bool to_group = !shape.groups.empty() && from.below(3) != 0;
    const std::size_t count = to_group ? shape.groups.size() : shape.members.size();
    shape.references.push_back({key, to_group, from.below(static_cast<unsigned>(count))});
  }
  shape.has_fallback = from.below(4) == 0;
  return shape;
}

/// One change, such as a person makes.
inline void change_shape(choice_source &from, profile_shape &shape)
{
  const unsigned member = from.below(static_cast<unsigned>(shape.members.size()));
  if (from.below(3) == 0 || shape.groups.empty()) {
    shape.members[member] = from.below(3);
    return;
  }
  auto &members = shape.groups[from.below(static_cast<unsigned>(shape.groups.size()))].members;
  const auto found = std::ranges::find(members, member, &profile_shape::membership::member);
  if (found == members.end()) {
    members.push_back({member, true});
  } else if (from.below(2) == 0) {
    found->active = !found->active;
  } else {
    members.erase(found);
  }
}

/// Builds a shape on a switch that holds none, in an order that is chosen: handles tell nothing of the shape.
class shape_builder {
 public:
  shape_builder(choice_source &from, const state_command &run) : from_(from), run_(run) {}

  void build(const profile_shape &shape)
  {
    members_.resize(shape.members.size());
    for (const unsigned at : shuffled(members_.size())) {
      members_[at] = run_(member_ + " add setEcmpNextHop nextHop=" + std::to_string(shape.members[at]));
    }
    groups_.resize(shape.groups.size());
    for (const unsigned at : shuffled(groups_.size())) build_group(at, shape.groups[at]);
    for (const profile_shape::reference &each : shape.references) {
      const std::string to =
          each.to_group ? " group=" + std::to_string(groups_[each.at]) : " member=" + std::to_string(members_[each.at]);
      run_(each.key == 0 ? "entry ecmpGroup set-default" + to
                         : "entry ecmpGroup add ecmpGroup=" + std::to_string(each.key) + to);
    }
    // An entry can refer to an empty group only after it had a member.
    for (std::size_t at = 0; at < shape.groups.size(); ++at) {
      if (shape.groups[at].members.empty()) change_group(" remove ", groups_[at], 0);
    }
    if (shape.has_fallback) run_(group_ + " fallback " + std::to_string(members_[0]));
  }

 private:
  void build_group(unsigned at, const profile_shape::group &group)
  {
    groups_[at] = run_(group_ + " create " + (group.large ? "16" : "8"));
    if (group.members.empty()) change_group(" add ", groups_[at], 0);
    for (const unsigned place : shuffled(group.members.size())) {
      const auto &[member, active] = group.members[place];
      change_group(" add ", groups_[at], member);
      if (!active) change_group(" disable ", groups_[at], member);
    }
  }

  void change_group(const char *verb, std::uint32_t group, unsigned member)
  {
    run_(group_ + verb + std::to_string(group) + ' ' + std::to_string(members_[member]));
  }

  std::vector<unsigned> shuffled(std::size_t count)
  {
    std::vector<unsigned> order;
    for (unsigned i = 0; i < count; ++i) order.insert(order.begin() + from_.below(i + 1), i);
    return order;
  }

  const std::string member_ = "member ecmpMemberActionProfile";
  const std::string group_ = "group ecmpMemberActionProfile";
  choice_source &from_;
  const state_command &run_;
  std::vector<std::uint32_t> members_, groups_;
};

/// Something else that a state holds.
inline std::string random_setting(choice_source &from)
{
  switch (from.below(10)) {
    case 0: return "add ipv4Host vrfId=1 dip=10.0.0." + from.number(3) + " setNextHop nextHop=" + from.number(2);
    case 1: return "delete ipv4Host vrfId=1 dip=10.0.0." + from.number(3);
    case 2: return "add l2SmacCheck smac=* priority=" + from.number(3) + " setIllegalSmac";
    case 3: return "counter pdpClassCount " + from.number(3) + " packets=" + from.number(2) + " bytes=1";
    case 4: return "meter pdpMeter " + from.number(3) + " cir=" + from.number(2) + " cburst=1 pir=2 pburst=1";
    case 5: return "register ingVlanCheckData " + (from.below(2) == 0 ? "all" : from.number(3)) + ' ' + from.number(2);
    case 6: return "hash hashOuterIpv4Hdr seed " + from.number(2);
    case 7: return "value-set add value=" + from.number(2) + " mask=" + from.number(2);
    case 8: return "idle ipv4Host " + std::string(from.below(2) == 0 ? "enable interval=" + from.number(2) : "disable");
    default: return "set-default ipv4Host onMiss";
  }
}

/// Builds a state on a switch that holds none.
inline void build_random_state(choice_source &from, const state_command &run, const profile_shape &shape)
{
  shape_builder(from, run).build(shape);
  for (unsigned left = from.below(4); left > 0; --left) run(random_setting(from));
}

/// How the second state of a pair comes from the first one's shape.
enum class pair_kind : std::uint8_t { renumbered, changed, unrelated };

inline profile_shape second_shape(choice_source &from, pair_kind kind, const profile_shape &first)
{
  if (kind == pair_kind::unrelated) return random_shape(from);
  profile_shape shape = first;
  shape.changes = kind == pair_kind::changed ? 1 + from.below(3) : 0;
  for (unsigned left = shape.changes; left > 0; --left) change_shape(from, shape);
  return shape;
}

}  // namespace tarvex::shell
