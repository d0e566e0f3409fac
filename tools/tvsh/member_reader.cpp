// SPDX-License-Identifier: Apache-2.0
#include "member_reader.h"

#include <cstring>

#include "status_text.h"

namespace tarvex::shell {

using enum argument_kind;

member_reader::member_reader(const profile_info &profile, const target &where, bool from_hardware)
    : profile_(profile), call_(function_for(family_id::get_member, profile, member_action_out), where)
{
  call_.give(read_from_hw, std::uint64_t{from_hardware}).give(member_action_out, &found_);
}

const profile_member *member_reader::read_if_there(std::uint32_t handle)
{
  const pd_status_t status = call_.give(mbr_hdl, handle).status();
  if (!found_there(status, [&] { return "reading member " + std::to_string(handle) + " of " + profile_.name; })) {
    return nullptr;
  }
  member_.id = handle;
  member_.action = &calls::actions[found_.action];
  std::memcpy(member_.parameters.data(), found_.parameters, member_.action->record_size);
  return &member_;
}

}  // namespace tarvex::shell
