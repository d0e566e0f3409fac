// What is expected of an action profile and its indirect table: in the switch, and in what the library knows of it.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "profile.h"

namespace tarvex::examples {
namespace {

std::vector<std::uint32_t> sorted(std::vector<std::uint32_t> handles)
{
  std::ranges::sort(handles);
  return handles;
}

template <typename Things>
std::vector<std::uint32_t> sorted_handles(const Things &things)
{
  std::vector<std::uint32_t> handles;
  for (const auto &each : things) handles.push_back(each.handle);
  return sorted(std::move(handles));
}

}  // namespace

void profile::check_switch(tally &compared) const
{
  check_members(compared);
  for (const group &each : groups_) check_group(each, compared);
  std::uint32_t count = 0;
  must(functions_.get_group_count(session, all_pipes, &count),
       [&] { return std::string("counting groups of ") + name(); });
  compared.expect(count == groups_.size(), [&] { return text("count of groups", count); });
  compared.expect(all_handles(functions_.get_first_group, functions_.get_next_groups) == sorted_handles(groups_),
                  [&] { return std::string(name()) + ": a walk gives other groups"; });
  for (const entry &each : entries_) check_entry(each, compared);
  indirect_entry read;
  must(table_.read(default_handle_, &read), [&] { return std::string("reading the default entry of ") + table_.name; });
  compared.expect(!read.has_key && read.to == default_,
                  [&] { return std::string(table_.name) + ": another default entry"; });
  if (fallback_) check_fallback(compared);
}

void profile::check_members(tally &compared) const
{
  for (const member &each : members_) {
    plcmt_action_t read{};
    const pd_status_t status = functions_.get_member(session, device_id, each.handle, 0, &read);
    compared.expect(status == BF_SUCCESS && each.action->reads_back(each.number, read),
                    [&] { return text("not as it was written: member", each.handle); });
  }
  std::uint32_t count = 0;
  must(functions_.get_member_count(session, all_pipes, &count),
       [&] { return std::string("counting members of ") + name(); });
  compared.expect(count == members_.size(), [&] { return text("count of members", count); });
  compared.expect(all_handles(functions_.get_first_member, functions_.get_next_members) == sorted_handles(members_),
                  [&] { return std::string(name()) + ": a walk gives other members"; });
}

void profile::check_group(const group &which, tally &compared) const
{
  std::vector<std::uint32_t> handles;
  for (const membership &of : which.members) {
    handles.push_back(of.member);
    std::uint32_t state = STANDIN_NO_HANDLE;
    const pd_status_t status = functions_.group_member_state_get(session, device_id, which.handle, of.member, &state);
    const std::uint32_t expected = of.active ? P4_PD_GRP_MBR_STATE_ACTIVE : P4_PD_GRP_MBR_STATE_INACTIVE;
    compared.expect(status == BF_SUCCESS && state == expected,
                    [&] { return text("a member is up, down or gone otherwise in group", which.handle); });
  }
  const auto walked = walk(
      text("group", which.handle),
      [&](std::uint32_t *to) { return functions_.get_first_group_member(session, device_id, which.handle, to); },
      [&](std::uint32_t from, std::uint32_t n, std::uint32_t *to) {
        return functions_.get_next_group_members(session, device_id, which.handle, from, n, to);
      });
  compared.expect(sorted(walked) == sorted(handles), [&] { return text("other members in group", which.handle); });
}

void profile::check_entry(const entry &which, tally &compared) const
{
  const auto entry_text = [&] { return std::string(table_.name) + " entry " + std::to_string(which.number); };
  const auto packet = table_.packet(which.number);
  pd_entry_hdl_t found = STANDIN_NO_HANDLE;
  standin_lookup(all_pipes, table_.handle, packet.data(), packet.size(), 0, &found);
  compared.expect(found == which.handle, [&] { return "a packet misses " + entry_text(); });
  indirect_entry read;
  const pd_status_t status = table_.read(which.handle, &read);
  compared.expect(status == BF_SUCCESS && read == indirect_entry{true, which.number, table_.priority, which.to},
                  [&] { return entry_text() + " has another key or points elsewhere"; });
}

void profile::check_fallback(tally &compared) const
{
  expect_status(functions_.del_member(session, device_id, *fallback_), STANDIN_IN_USE, "deleting the fallback member",
                *fallback_, compared);
}

void profile::check_library(tally &compared) const
{
  for (const member &each : members_) {
    expect_status(each.action->modify(each.number, each.handle), BF_SUCCESS, "writing member", each.handle, compared);
    for (const member_action &other : actions_) {
      if (&other == each.action) continue;
      expect_status(other.modify(each.number, each.handle), PD_STATUS_WRONG_MEMBER_ACTION,
                    "writing by another action member", each.handle, compared);
    }
  }
  for (const entry &each : entries_) {
    expect_status(table_.modify(each.handle, each.to), BF_SUCCESS, "writing entry", each.number, compared);
  }
  const pd_grp_hdl_t never_joined = groups_.front().handle;
  expect_status(table_.modify(entries_.front().handle, {true, never_joined}), STANDIN_NO_ACTION,
                "an entry to a group that no member ever joined", never_joined, compared);
}

void profile::check_forgotten(tally &compared) const
{
  for (const member &each : members_) {
    expect_status(each.action->modify(each.number, each.handle), STANDIN_NO_MEMBER, "writing a forgotten member",
                  each.handle, compared);
  }
  for (const entry &each : entries_) {
    expect_status(table_.modify(each.handle, each.to), each.to.is_group ? STANDIN_NO_GROUP : STANDIN_NO_MEMBER,
                  "writing an entry to what is forgotten", each.number, compared);
  }
  expect_status(functions_.add_member_to_group(session, device_id, groups_[1].handle, members_[0].handle),
                STANDIN_NO_MEMBER, "adding a forgotten member to group", groups_[1].handle, compared);
}

std::string profile::example() const
{
  const entry &shown = *std::ranges::find_if(entries_, [](const entry &each) { return each.to.is_group; });
  const group &to = *std::ranges::find(groups_, shown.to.handle, &group::handle);
  std::string line = std::string(table_.name) + ' ' + std::to_string(shown.number) + " -> group " +
                     std::to_string(to.handle) + ", " + std::to_string(to.members.size()) + " members";
  constexpr std::size_t shown_members = 8;
  for (std::size_t i = 0; i < std::min(to.members.size(), shown_members); ++i) {
    const member &m = *std::ranges::find(members_, to.members[i].member, &member::handle);
    line += (i == 0 ? ": " : ", ") + std::to_string(m.number) + (to.members[i].active ? "" : " (down)");
  }
  if (to.members.size() > shown_members) line += " ...";
  return line;
}

std::string profile::text(const char *what, std::uint32_t handle) const
{
  return std::string(name()) + ": " + what + ' ' + std::to_string(handle);
}

void profile::expect_status(pd_status_t got, pd_status_t wanted, const char *what, std::uint32_t handle,
                            tally &compared) const
{
  compared.expect(got == wanted, [&] { return text(what, handle) + ": " + to_text(got) + ", not " + to_text(wanted); });
}

std::vector<std::uint32_t> profile::all_handles(pd_status_t (*first)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t *),
                                                pd_status_t (*next)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t,
                                                                    std::uint32_t, std::uint32_t *)) const
{
  return sorted(walk(
      name(), [&](std::uint32_t *to) { return first(session, all_pipes, to); },
      [&](std::uint32_t from, std::uint32_t n, std::uint32_t *to) { return next(session, all_pipes, from, n, to); }));
}

}  // namespace tarvex::examples
