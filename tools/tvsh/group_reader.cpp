// SPDX-License-Identifier: Apache-2.0
#include "group_reader.h"

#include "handle_walk.h"
#include "status_text.h"
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

std::optional<std::vector<group_member>> group_reader::members_if_there(std::uint32_t group)
{
  std::vector<group_member> all;
  handle_walk walk = handle_walk::group_members(profile_, group, where_);
  try {
    while (const auto member = walk.next()) {
      const pd_status_t status = state_.give(grp_hdl, group).give(mbr_hdl, *member).status();
      const auto what = [&] {
        return "reading the state of member " + std::to_string(*member) + " of " + profile_.name;
      };
      if (found_there(status, what)) all.push_back({*member, found_ == P4_PD_GRP_MBR_STATE_ACTIVE});
    }
  } catch (const refused_error &error) {
    if (!says_gone(error.status())) throw;
    return std::nullopt;
  }
  return all;
}

}  // namespace tarvex::shell
