// Commands on action profiles and the entries of indirect tables: members, groups, member, group, entry.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "commands.h"
#include "entry_rows.h"
#include "entry_search.h"
#include "group_reader.h"
#include "handle_walk.h"
#include "member_reader.h"
#include "remembered_writes.h"
#include "session.h"
#include "tarvex_pd/actions.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

std::uint32_t handle_word(const invocation &call, std::size_t at, std::string_view name)
{
  return static_cast<std::uint32_t>(parse_number(call.word(at, name), name, 32));
}

std::string member_text(const profile_info &profile, std::uint32_t member)
{
  return "member " + std::to_string(member) + " of " + profile.name;
}

constexpr std::string_view name_word = "as=";

/// The name that the last words of a command give to what it makes.
std::optional<std::string> name_for_new(const invocation &call, std::span<const std::string> words)
{
  if (words.empty()) return std::nullopt;
  if (words.size() > 1 || !words[0].starts_with(name_word)) {
    throw argument_error("'" + words[0] + "' is one word too many");
  }
  const std::string name = words[0].substr(name_word.size());
  call.shell.require_name(name);
  return name;
}

void add_member(const invocation &call, const profile_info &profile)
{
  const use_info &use = use_named(profile.actions, call.word(2, "ACTION"), profile.name);
  std::span<const std::string> words = call.words.subspan(3);
  std::optional<std::string> name;
  if (!words.empty() && words.back().starts_with(name_word)) {
    name = name_for_new(call, words.last(1));
    words = words.first(words.size() - 1);
  }
  const record_memory record = parse_parameters(*use.action, words, source_of(call.chosen));
  std::uint32_t member = 0;
  function_call write(function_for(family_id::add_member, use), call.where());
  write.give(action_spec, record.data()).give(mbr_hdl_out, &member);
  if (call.carry_out(write, std::string("adding a member to ") + profile.name)) {
    if (name) call.shell.names[*name] = member;
    call.made("member", member);
  }
}

void modify_member(const invocation &call, const profile_info &profile)
{
  const std::uint32_t member = handle_word(call, 2, "MEMBER");
  const use_info &use = use_named(profile.actions, call.word(3, "ACTION"), profile.name);
  const record_memory record = parse_parameters(*use.action, call.words.subspan(4), source_of(call.chosen));
  function_call write(function_for(family_id::modify_member, use), call.where());
  write.give(mbr_hdl, member).give(action_spec, record.data());
  call.carry_out(write, "modifying " + member_text(profile, member));
}

void delete_member(const invocation &call, const profile_info &profile)
{
  call.expect_at_most(3);
  const std::uint32_t member = handle_word(call, 2, "MEMBER");
  function_call write(function_for(family_id::del_member, profile, mbr_hdl), call.where());
  call.carry_out(write.give(mbr_hdl, member), "deleting " + member_text(profile, member));
}

void write_new_group(const invocation &call, const profile_info &profile)
{
  const std::uint32_t size = handle_word(call, 2, "SIZE");
  const std::optional<std::string> name = name_for_new(call, call.words.subspan(3));
  if (call.only_checked(std::string("creating a group of ") + profile.name)) return;
  const std::uint32_t group = create_group(call, profile, size);
  if (name) call.shell.names[*name] = group;
  call.made("group", group);
}

void drop_group(const invocation &call, const profile_info &profile)
{
  call.expect_at_most(3);
  const std::uint32_t group = handle_word(call, 2, "GROUP");
  if (call.only_checked("deleting group " + std::to_string(group) + " of " + profile.name)) return;
  delete_group(call, profile, group);
}

template <family_id family>
void change_membership(const invocation &call, const profile_info &profile)
{
  call.expect_at_most(4);
  const std::uint32_t group = handle_word(call, 2, "GROUP");
  const std::uint32_t member = handle_word(call, 3, "MEMBER");
  function_call write(function_for(family, profile, grp_hdl), call.where());
  write.give(grp_hdl, group).give(mbr_hdl, member);
  write.give(member_state, call.words[1] == "enable" ? P4_PD_GRP_MBR_STATE_ACTIVE : P4_PD_GRP_MBR_STATE_INACTIVE);
  call.carry_out(write, call.words[1] + ' ' + member_text(profile, member) + " in group " + std::to_string(group));
}

void write_fallback(const invocation &call, const profile_info &profile)
{
  call.expect_at_most(3);
  std::optional<std::uint32_t> member;
  if (call.word(2, "MEMBER") != "none") member = handle_word(call, 2, "MEMBER");
  if (call.only_checked(std::string("setting the fallback member of ") + profile.name)) return;
  set_fallback(call, profile, member);
}

constexpr profile_verb member_verbs[] = {{"add", add_member}, {"modify", modify_member}, {"delete", delete_member}};
constexpr profile_verb group_verbs[] = {
    {"create", write_new_group},
    {"delete", drop_group},
    {"add", change_membership<family_id::add_member_to_group>},
    {"remove", change_membership<family_id::del_member_from_group>},
    {"enable", change_membership<family_id::group_member_state_set>},
    {"disable", change_membership<family_id::group_member_state_set>},
    {"fallback", write_fallback},
};

/// What an entry refers to: exactly one of member= and group=.
struct reference {
  argument_kind kind;
  std::uint32_t handle;
};

reference reference_of(const own_words &own)
{
  const auto member = own.number("member", 32);
  const auto group = own.number("group", 32);
  if (member.has_value() == group.has_value()) throw argument_error("give one of member= and group=");
  return {member ? mbr_hdl : grp_hdl, static_cast<std::uint32_t>(member ? *member : *group)};
}

entry_words parse_indirect(const invocation &call, const table_info &table, bool by_handle)
{
  std::vector<std::string_view> allowed = {"member", "group"};
  if (by_handle) allowed.push_back("handle");
  if (table.kind == table_kind::ternary) allowed.push_back("priority");
  entry_words words = parse_entry_words(table, call.words.subspan(2), {}, allowed, source_of(call.chosen));
  if (words.has_key) require_priority(table, words);
  return words;
}

void add_indirect(const invocation &call, const table_info &table)
{
  const entry_words words = parse_indirect(call, table, false);
  const reference to = reference_of(words.own);
  std::uint32_t handle = 0;
  function_call write(function_for(family_id::add_indirect_entry, table, to.kind), call.where());
  write.give(match_spec, words.key.data()).give(priority, words.priority()).give(to.kind, to.handle);
  write.give(entry_hdl_out, &handle);
  const std::string what = std::string("adding an entry to ") + table.name;
  if (call.only_checked(what)) return;
  require_added(write.status(), what, table, words.key, words.priority(), call.where());
  call.made("entry", handle);
}

void modify_indirect(const invocation &call, const table_info &table)
{
  const entry_words words = parse_indirect(call, table, true);
  const reference to = reference_of(words.own);
  const auto handle = words.own.number("handle", 32);
  const auto family = handle ? family_id::modify_indirect_entry : family_id::modify_indirect_entry_by_match_spec;
  function_call write(function_for(family, table, to.kind), call.where());
  write.give(match_spec, words.key.data()).give(priority, words.priority()).give(entry_hdl, handle.value_or(0));
  call.carry_out(write.give(to.kind, to.handle), "modifying " + entry_name(table, words));
}

void set_indirect_default(const invocation &call, const table_info &table)
{
  static constexpr std::array<std::string_view, 2> allowed = {"member", "group"};
  const reference to = reference_of(parse_own_words(call.words.subspan(2), allowed));
  std::uint32_t handle = 0;
  function_call write(function_for(family_id::set_indirect_default, table, to.kind), call.where());
  write.give(to.kind, to.handle).give(entry_hdl_out, &handle);
  if (call.carry_out(write, std::string("setting the default of ") + table.name)) {
    call.made("entry", handle);
  }
}

constexpr table_verb entry_verbs[] = {
    {"add", add_indirect}, {"modify", modify_indirect}, {"set-default", set_indirect_default}};

}  // namespace

exit_code show_members(const invocation &call)
{
  call.expect_at_most(1);
  const profile_info &profile = profile_named(call.word(0, "PROFILE"));
  member_reader reader(profile, call.where(), call.chosen.hardware);
  handle_walk walk = handle_walk::members(profile, call.where());
  std::optional<std::uint32_t> member = walk.next();
  report rows(call.out, call.chosen, "members",
              {{"member", 10}, {"action", longest_name(action_names(profile.actions))}, {"parameters"}},
              {{"profile", profile.name}});
  parameter_pairs parameters(call.chosen.raw);
  for (; member; member = walk.next()) {
    call.shell.check_interrupt();
    const profile_member *const found = reader.read_if_there(*member);
    if (found == nullptr) continue;
    rows.number(*member).cell(found->action->name);
    parameters.show(rows, *found->action, found->parameters.data());
    rows.end_row();
  }
  rows.finish();
  return exit_code::ok;
}

exit_code show_groups(const invocation &call)
{
  call.expect_at_most(1);
  const profile_info &profile = profile_named(call.word(0, "PROFILE"));
  handle_walk walk = handle_walk::groups(profile, call.where());
  std::optional<std::uint32_t> group = walk.next();
  report rows(call.out, call.chosen, "groups", {{"group", 10}, {"members"}}, {{"profile", profile.name}});
  group_reader members(profile, call.where());
  std::string text;
  std::string json;
  for (; group; group = walk.next()) {
    call.shell.check_interrupt();
    const auto there = members.members_if_there(*group);
    if (!there) continue;
    text.clear();
    json = "[";
    for (const group_member &each : *there) {
      const std::string id = std::to_string(each.id);
      if (!text.empty()) text += ' ';
      text += id + (each.active ? "=active" : "=inactive");
      if (json.size() > 1) json += ',';
      json += "{\"member\":" + id + ",\"active\":" + (each.active ? "true}" : "false}");
    }
    rows.number(*group).cell_as(text, json += ']').end_row();
  }
  rows.finish();
  return exit_code::ok;
}

exit_code write_member(const invocation &call)
{
  const profile_info &profile = profile_named(call.word(0, "PROFILE"));
  return run_verb<profile_info>(member_verbs, call, call.word(1, "VERB"), profile);
}

exit_code write_group(const invocation &call)
{
  const profile_info &profile = profile_named(call.word(0, "PROFILE"));
  return run_verb<profile_info>(group_verbs, call, call.word(1, "VERB"), profile);
}

exit_code write_indirect_entry(const invocation &call)
{
  const table_info &table = table_named(call.word(0, "TABLE"));
  if (table.profile == nullptr) {
    throw usage_error(std::string(table.name) + " is not indirect: use the commands add, modify and set-default");
  }
  return run_verb<table_info>(entry_verbs, call, call.word(1, "VERB"), table);
}

}  // namespace tarvex::shell
