// The library has the driver read placement data, and makes its own records of it.
//
// SPDX-License-Identifier: Apache-2.0
#include "placed_contents.h"

#include <cstring>

#include "tarvex_pd/actions.h"

namespace tarvex::shell {

using enum argument_kind;

table_entry placed_entry_of(const table_info &table, std::span<const std::byte> placement, const target &where)
{
  table_entry entry;
  plcmt_action_t action{};
  std::uint8_t no_key = 0;
  std::uint8_t is_member = 0;
  std::uint8_t is_group = 0;
  const bool indirect = table.profile != nullptr;
  function_call read(
      function_for(indirect ? family_id::get_indirect_entry_from_plcmt_data : family_id::get_entry_from_plcmt_data,
                   table),
      where);
  read.give(plcmt_data, static_cast<const void *>(placement.data()))
      .give(match_spec_out, entry.key.data())
      .give(priority_out, &entry.priority)
      .give(member_action_out, &action)
      .give(mbr_hdl_out, &entry.member)
      .give(grp_hdl_out, &entry.group)
      .give(is_member_out, &is_member)
      .give(is_group_out, &is_group)
      .give(no_key_out, &no_key)
      .must(std::string("reading placement data of ") + table.name);
  entry.has_key = no_key == 0 && !table.fields.empty();
  entry.is_group = is_group != 0;
  if (!indirect) {
    entry.action = &calls::actions[action.action];
    std::memcpy(entry.parameters.data(), action.parameters, entry.action->record_size);
  }
  return entry;
}

profile_member placed_member_of(const profile_info &profile, std::span<const std::byte> placement, const target &where)
{
  plcmt_action_t action{};
  function_call(function_for(family_id::get_member_from_plcmt_data, profile, member_action_out), where)
      .give(plcmt_data, static_cast<const void *>(placement.data()))
      .give(member_action_out, &action)
      .must(std::string("reading placement data of ") + profile.name);
  profile_member member;
  member.action = &calls::actions[action.action];
  std::memcpy(member.parameters.data(), action.parameters, member.action->record_size);
  return member;
}

}  // namespace tarvex::shell
