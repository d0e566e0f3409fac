// Handles come from the driver in batches.
//
// SPDX-License-Identifier: Apache-2.0
#include "handle_walk.h"

#include <algorithm>

#include "status_text.h"
#include "tarvex_standin/standin.h"

namespace tarvex::shell {

using enum argument_kind;

handle_walk::handle_walk(const exported_function &first, argument_kind out_kind, const exported_function &next,
                         argument_kind handle_kind, std::uint32_t group, const target &where)
    : first_(first, where), next_(next, where), out_kind_(out_kind), handle_kind_(handle_kind)
{
  first_.give(grp_hdl, group);
  if (handle_kind != grp_hdl) next_.give(grp_hdl, group);
}

handle_walk handle_walk::entries(const table_info &table, const target &where)
{
  return {function_for(family_id::get_first_entry_handle, table),
          entry_hdl_out,
          function_for(family_id::get_next_entry_handles, table),
          entry_hdl,
          0,
          where};
}

handle_walk handle_walk::members(const profile_info &profile, const target &where)
{
  return {function_for(family_id::get_first_of_profile, profile, mbr_hdl_out),
          mbr_hdl_out,
          function_for(family_id::get_next_of_profile, profile, mbr_hdl),
          mbr_hdl,
          0,
          where};
}

handle_walk handle_walk::groups(const profile_info &profile, const target &where)
{
  return {function_for(family_id::get_first_of_profile, profile, grp_hdl_out),
          grp_hdl_out,
          function_for(family_id::get_next_of_profile, profile, grp_hdl),
          grp_hdl,
          0,
          where};
}

handle_walk handle_walk::group_members(const profile_info &profile, std::uint32_t group, const target &where)
{
  return {function_for(family_id::get_first_group_member, profile, mbr_hdl_out),
          mbr_hdl_out,
          function_for(family_id::get_next_group_members, profile, mbr_hdl),
          mbr_hdl,
          group,
          where};
}

std::optional<std::uint32_t> handle_walk::next()
{
  if (at_ == size_) {
    // A driver that says nothing of a place leaves it as the end of the walk.
    std::fill(handles_.begin(), handles_.end(), STANDIN_NO_HANDLE);
    function_call &call = begun_ ? next_ : first_;
    if (begun_) {
      call.give(handle_kind_, last_).give(handle_count, batch).give(next_entry_hdls_out, handles_.data());
    } else {
      call.give(out_kind_, handles_.data());
    }
    const auto status = static_cast<pd_status_t>(call.make());
    if (status != STANDIN_END) require_success(status, "walking the handles");
    at_ = 0;
    size_ = static_cast<std::size_t>(std::ranges::find(handles_, STANDIN_NO_HANDLE) - handles_.begin());
    if (size_ == 0) return std::nullopt;
    begun_ = true;
    last_ = handles_[size_ - 1];
  }
  return handles_[at_++];
}

}  // namespace tarvex::shell
