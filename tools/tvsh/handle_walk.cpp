// Handles come from the driver in batches.
//
// SPDX-License-Identifier: Apache-2.0
#include "handle_walk.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "driver_statuses.h"
#include "status_text.h"
#include "tarvex_standin/standin.h"

namespace tarvex::shell {

using enum argument_kind;

handle_walk::handle_walk(const exported_function &first, argument_kind out_kind, const exported_function &next,
                         argument_kind handle_kind, std::uint32_t group, std::string what, const target &where)
    : first_(first, where), next_(next, where), out_kind_(out_kind), handle_kind_(handle_kind), what_(std::move(what))
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
          std::string("the entries of ") + table.name,
          where};
}

handle_walk handle_walk::members(const profile_info &profile, const target &where)
{
  return {function_for(family_id::get_first_of_profile, profile, mbr_hdl_out),
          mbr_hdl_out,
          function_for(family_id::get_next_of_profile, profile, mbr_hdl),
          mbr_hdl,
          0,
          std::string("the members of ") + profile.name,
          where};
}

handle_walk handle_walk::groups(const profile_info &profile, const target &where)
{
  return {function_for(family_id::get_first_of_profile, profile, grp_hdl_out),
          grp_hdl_out,
          function_for(family_id::get_next_of_profile, profile, grp_hdl),
          grp_hdl,
          0,
          std::string("the groups of ") + profile.name,
          where};
}

handle_walk handle_walk::group_members(const profile_info &profile, std::uint32_t group, const target &where)
{
  return {function_for(family_id::get_first_group_member, profile, mbr_hdl_out),
          mbr_hdl_out,
          function_for(family_id::get_next_group_members, profile, mbr_hdl),
          mbr_hdl,
          group,
          "the members of group " + std::to_string(group) + " of " + profile.name,
          where};
}

pd_status_t handle_walk::fetch_behind(std::uint32_t handle)
{
  // A driver that says nothing of a place leaves it as the end of the walk.
  std::ranges::fill(handles_, STANDIN_NO_HANDLE);
  next_.give(handle_kind_, handle).give(handle_count, batch);
  for (const argument_kind out : {next_entry_hdls_out, next_mbr_hdls_out, next_grp_hdls_out})
    next_.give(out, handles_.data());
  return static_cast<pd_status_t>(next_.make());
}

pd_status_t handle_walk::fetch_first()
{
  std::ranges::fill(handles_, STANDIN_NO_HANDLE);
  return static_cast<pd_status_t>(first_.give(out_kind_, handles_.data()).make());
}

pd_status_t handle_walk::fetch()
{
  if (size_ == 0) return fetch_first();
  const std::vector<std::uint32_t> passed(handles_.begin(), handles_.begin() + static_cast<std::ptrdiff_t>(size_));
  pd_status_t status = fetch_behind(passed.back());
  // Others may have deleted the one that the walk stood at: it goes on from one ahead of it, or begins anew.
  for (std::size_t at = passed.size() - 1; says_gone(status) && at > 0; --at) {
    went_back_ = true;
    status = fetch_behind(passed[at - 1]);
  }
  if (!says_gone(status)) return status;
  went_back_ = true;
  return fetch_first();
}

std::optional<std::uint32_t> handle_walk::next()
{
  for (;;) {
    while (at_ < size_) {
      const std::uint32_t handle = handles_[at_++];
      if (went_back_ && met_.holds(handle)) continue;
      met_.add({handle, handle});
      return handle;
    }
    const pd_status_t status = fetch();
    if (!ends_walk(status)) require_success(status, "walking " + what_);
    at_ = 0;
    size_ = static_cast<std::size_t>(std::ranges::find(handles_, STANDIN_NO_HANDLE) - handles_.begin());
    if (size_ == 0) return std::nullopt;
  }
}

}  // namespace tarvex::shell
