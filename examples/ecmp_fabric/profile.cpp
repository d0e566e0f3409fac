// What is done to an action profile and its indirect table.
//
// SPDX-License-Identifier: Apache-2.0
#include "profile.h"

#include <algorithm>
#include <numeric>

namespace tarvex::examples {
namespace {

constexpr std::size_t groups_with_members = 199;  // and one that never has any
constexpr std::uint32_t most_of_group = 64;
constexpr std::size_t first_members = 320;
// The smallest of the tables tells 128 keys apart.
constexpr std::size_t entries_to_groups = 100;
constexpr std::size_t entries_to_members = 28;

}  // namespace

profile::profile(const profile_functions &functions, const indirect_table &table, std::vector<member_action> actions)
    : functions_(functions), table_(table), actions_(std::move(actions))
{
}

fabric_counts profile::counts() const
{
  fabric_counts all{members_.size(), groups_.size(), 0, 0, entries_.size()};
  for (const group &each : groups_) {
    all.memberships += each.members.size();
    all.down += static_cast<std::size_t>(std::ranges::count(each.members, false, &membership::active));
  }
  return all;
}

void profile::build(std::mt19937_64 &random, tally &compared)
{
  std::vector<pd_mbr_hdl_t> handles;
  for (std::size_t i = 0; i < first_members; ++i) handles.push_back(add_member());
  create_group();  // stays empty
  for (std::size_t i = 0; i < groups_with_members; ++i) {
    group &added = create_group();
    std::ranges::shuffle(handles, random);
    const std::size_t size = 1 + i % most_of_group;
    for (std::size_t at = 0; at < size; ++at) join(added, handles[at]);
    if (size == most_of_group) {
      expect_status(functions_.add_member_to_group(session, device_id, added.handle, handles[size]), STANDIN_FULL,
                    "one member more than the largest group takes, group", added.handle, compared);
    }
    if (size > 3) leave(added, random() % (size - 1));  // the group's action is that of the last to join, who stays
    if (i < entries_to_groups) add_entry({true, added.handle});
  }
  for (std::size_t i = 0; i < entries_to_members; ++i) add_entry({false, handles[random() % handles.size()]});
  for (std::size_t i = 0; i < entries_.size(); i += 7) redirect(entries_[i], random);
  default_ = {true, groups_.back().handle};
  must(table_.set_default(default_, &default_handle_),
       [&] { return std::string("setting the default entry of ") + table_.name; });
}

void profile::switch_members(std::mt19937_64 &random)
{
  for (group &each : groups_) {
    for (membership &of : each.members) {
      if (random() % 8 != 0) continue;
      of.active = !of.active;
      const std::uint32_t state = of.active ? P4_PD_GRP_MBR_STATE_ACTIVE : P4_PD_GRP_MBR_STATE_INACTIVE;
      must(functions_.group_member_state_set(session, device_id, each.handle, of.member, state),
           [&] { return text("switching a member of group", each.handle); });
    }
  }
}

void profile::choose_fallback(bool reset, tally &compared)
{
  const pd_mbr_hdl_t first = add_member(), second = add_member();
  for (const pd_mbr_hdl_t chosen : {first, second}) {
    must(functions_.set_fallback_member(session, all_pipes, chosen),
         [&] { return text("falling back to member", chosen); });
    fallback_ = chosen;
    check_fallback(compared);
  }
  if (reset) {
    must(functions_.reset_fallback_member(session, all_pipes),
         [&] { return text("dropping fallback member", second); });
    fallback_.reset();
    delete_member(second);
  }
  delete_member(first);  // in use no longer
}

void profile::grow(std::mt19937_64 &random)
{
  for (std::size_t i = 1; i < groups_.size(); i += 10) {
    if (groups_[i].members.size() < most_of_group) join(groups_[i], add_member());
    redirect(entries_[random() % entries_.size()], random);
  }
}

pd_mbr_hdl_t profile::add_member()
{
  const std::uint32_t number = next_number_++;
  member added{&actions_[number % actions_.size()], number, 0};
  must(added.action->add(number, &added.handle), [&] { return text("adding member", number); });
  members_.push_back(added);
  return added.handle;
}

void profile::delete_member(pd_mbr_hdl_t handle)
{
  must(functions_.del_member(session, device_id, handle), [&] { return text("deleting member", handle); });
  std::erase_if(members_, [&](const member &each) { return each.handle == handle; });
}

profile::group &profile::create_group()
{
  group &added = groups_.emplace_back();
  must(functions_.create_group(session, all_pipes, most_of_group, &added.handle),
       [&] { return std::string("creating a group of ") + name(); });
  return added;
}

void profile::join(group &which, pd_mbr_hdl_t handle)
{
  must(functions_.add_member_to_group(session, device_id, which.handle, handle),
       [&] { return text("adding a member to group", which.handle); });
  which.members.push_back({handle, true});
}

void profile::leave(group &which, std::size_t place)
{
  must(functions_.del_member_from_group(session, device_id, which.handle, which.members[place].member),
       [&] { return text("taking a member out of group", which.handle); });
  which.members.erase(which.members.begin() + static_cast<std::ptrdiff_t>(place));
}

void profile::add_entry(target to)
{
  entry added{static_cast<std::uint32_t>(entries_.size()), to, 0};
  must(table_.add(added.number, to, &added.handle),
       [&] { return std::string("adding entry ") + std::to_string(added.number) + " of " + table_.name; });
  entries_.push_back(added);
}

/// By its handle or by its key.
void profile::redirect(entry &which, std::mt19937_64 &random)
{
  which.to = any_target(random);
  must(random() % 2 == 0 ? table_.modify(which.handle, which.to) : table_.modify_by_key(which.number, which.to),
       [&] { return std::string("changing entry ") + std::to_string(which.number) + " of " + table_.name; });
}

target profile::any_target(std::mt19937_64 &random) const
{
  if (random() % 2 == 0) return {false, members_[random() % first_members].handle};
  return {true, groups_[1 + random() % groups_with_members].handle};
}

}  // namespace tarvex::examples
