// SPDX-License-Identifier: Apache-2.0
#include "group_reader.h"

#include "handle_walk.h"
#include "tarvex_pd/actions.h"

namespace tarvex::shell {

using enum argument_kind;

group_reader::group_reader(const profile_info &profile, const target &where)
    : profile_(profile),
      where_(where),
      state_(function_for(family_id::group_member_state_get, profile, member_state_out), where)
{
  state_.give(member_state_out, &found_);
}

std::vector<group_member> group_reader::members(std::uint32_t group)
{
  std::vector<group_member> all;
  handle_walk walk = handle_walk::group_members(profile_, group, where_);
  while (const auto member = walk.next()) {
    state_.give(grp_hdl, group).give(mbr_hdl, *member);
    state_.must("reading the state of member " + std::to_string(*member) + " of " + profile_.name);
    all.push_back({*member, found_ == P4_PD_GRP_MBR_STATE_ACTIVE});
  }
  return all;
}

}  // namespace tarvex::shell
