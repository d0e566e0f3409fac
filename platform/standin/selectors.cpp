// Driver functions on the groups of selector tables: groups, memberships and the fallback member.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "device.h"

namespace tarvex::standin {
namespace {

void tell(device &dev, const profile &owner, pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl, std::uint32_t event)
{
  for (const client_callback &each : {owner.group_updated, owner.group_tracked})
    dev.notify<standin_selector_cb_t>(each, dev.id, owner.row->selector_table, grp_hdl, mbr_hdl, event);
}

/// A driver function on a group: body(device, profile, group).
template <class Body>
pd_status_t serve_group(const char *function, std::uint32_t dev_id, std::uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                        Body body)
{
  return serve_groups(function, dev_id, sel_hdl, [&](device &dev, profile &owner) {
    group *const found = owner.groups.find(grp_hdl);
    return found == nullptr ? pd_status_t{STANDIN_NO_GROUP} : body(dev, owner, *found);
  });
}

/// A driver function on a membership: body(device, profile, group, membership).
template <class Body>
pd_status_t serve_membership(const char *function, std::uint32_t dev_id, std::uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                             pd_mbr_hdl_t mbr_hdl, Body body)
{
  return serve_group(function, dev_id, sel_hdl, grp_hdl, [&](device &dev, profile &owner, group &which) {
    membership *const found = which.find(mbr_hdl);
    return found == nullptr ? pd_status_t{STANDIN_NO_MEMBER} : body(dev, owner, which, *found);
  });
}

pd_status_t switch_member(const char *function, std::uint32_t dev_id, std::uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                          pd_mbr_hdl_t mbr_hdl, bool active)
{
  return serve_membership(function, dev_id, sel_hdl, grp_hdl, mbr_hdl,
                          [&](device &dev, profile &owner, group &, membership &which) {
                            which.active = active;
                            tell(dev, owner, grp_hdl, mbr_hdl, active ? STANDIN_ENABLED : STANDIN_DISABLED);
                            return success;
                          });
}

void let_fallback_go(profile &owner)
{
  if (owner.fallback != 0) --owner.members.find(owner.fallback)->uses;
  owner.fallback = 0;
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_sel_grp_add(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t sel_hdl, uint32_t max_grp_size,
                                 pd_grp_hdl_t *grp_hdl, uint32_t)
{
  return serve_groups(__func__, device_of(dev_tgt), sel_hdl, [&](device &dev, profile &owner) -> pd_status_t {
    if (grp_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
    group added;
    added.most_members = max_grp_size;
    if (const pd_status_t status = owner.groups.add(std::move(added), grp_hdl)) return status;
    tell(dev, owner, *grp_hdl, 0, STANDIN_ADDED);
    return success;
  });
}

pd_status_t pipe_mgr_sel_grp_del(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_grp_hdl_t grp_hdl, uint32_t)
{
  return serve_group(__func__, dev_id, sel_hdl, grp_hdl, [&](device &dev, profile &owner, const group &which) {
    if (which.uses != 0) return pd_status_t{STANDIN_IN_USE};
    for (const membership &each : which.members) --owner.members.find(each.member)->uses;
    owner.groups.erase(grp_hdl);
    tell(dev, owner, grp_hdl, 0, STANDIN_DELETED);
    return success;
  });
}

pd_status_t pipe_mgr_sel_grp_mbr_add(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                                     uint32_t act_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t)
{
  return serve_group(__func__, dev_id, sel_hdl, grp_hdl, [&](device &dev, profile &owner, group &which) -> pd_status_t {
    member *const added = owner.members.find(mbr_hdl);
    if (added == nullptr) return STANDIN_NO_MEMBER;
    if (added->use->handle != act_hdl) return STANDIN_BAD_ACTION;
    if (which.find(mbr_hdl) != nullptr) return STANDIN_EXISTS;
    if (which.most_members != 0 && which.members.size() >= which.most_members) return STANDIN_FULL;
    which.members.push_back({mbr_hdl, true});
    ++added->uses;
    tell(dev, owner, grp_hdl, mbr_hdl, STANDIN_ADDED);
    return success;
  });
}

pd_status_t pipe_mgr_sel_grp_mbr_del(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                                     pd_mbr_hdl_t mbr_hdl, uint32_t)
{
  return serve_membership(__func__, dev_id, sel_hdl, grp_hdl, mbr_hdl,
                          [&](device &dev, profile &owner, group &which, const membership &gone) {
                            which.members.erase(which.members.begin() + (&gone - which.members.data()));
                            --owner.members.find(mbr_hdl)->uses;
                            tell(dev, owner, grp_hdl, mbr_hdl, STANDIN_DELETED);
                            return success;
                          });
}

pd_status_t pipe_mgr_sel_grp_mbr_enable(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                                        pd_mbr_hdl_t mbr_hdl, uint32_t)
{
  return switch_member(__func__, dev_id, sel_hdl, grp_hdl, mbr_hdl, true);
}

pd_status_t pipe_mgr_sel_grp_mbr_disable(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                                         pd_mbr_hdl_t mbr_hdl, uint32_t)
{
  return switch_member(__func__, dev_id, sel_hdl, grp_hdl, mbr_hdl, false);
}

pd_status_t pipe_mgr_sel_grp_mbr_state_get(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_grp_hdl_t grp_hdl,
                                           pd_mbr_hdl_t mbr_hdl, uint32_t *state)
{
  return serve_membership(__func__, dev_id, sel_hdl, grp_hdl, mbr_hdl,
                          [&](device &, profile &, group &, const membership &which) -> pd_status_t {
                            if (state == nullptr) return STANDIN_BAD_ARGUMENT;
                            *state = which.active ? 0 : 1;
                            return success;
                          });
}

pd_status_t pipe_mgr_sel_fallback_mbr_set(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t sel_hdl, pd_mbr_hdl_t mbr_hdl,
                                          uint32_t)
{
  return serve_groups(__func__, device_of(dev_tgt), sel_hdl, [&](device &, profile &owner) -> pd_status_t {
    member *const chosen = owner.members.find(mbr_hdl);
    if (chosen == nullptr) return STANDIN_NO_MEMBER;
    let_fallback_go(owner);
    owner.fallback = mbr_hdl;
    ++chosen->uses;
    return success;
  });
}

pd_status_t pipe_mgr_sel_fallback_mbr_reset(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t sel_hdl, uint32_t)
{
  return serve_groups(__func__, device_of(dev_tgt), sel_hdl, [](device &, profile &owner) {
    let_fallback_go(owner);
    return success;
  });
}

pd_status_t pipe_mgr_sel_tbl_register_cb(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_callback_t cb,
                                         void *cookie)
{
  return serve_groups(__func__, dev_id, sel_hdl, [&](device &, profile &owner) {
    owner.group_tracked = {cb, cookie};
    return success;
  });
}

pd_status_t pipe_register_sel_update_cb(pd_sess_hdl_t, uint32_t dev_id, uint32_t sel_hdl, pd_callback_t cb,
                                        void *cookie)
{
  return serve_groups(__func__, dev_id, sel_hdl, [&](device &, profile &owner) {
    owner.group_updated = {cb, cookie};
    return success;
  });
}

pd_status_t pipe_mgr_get_first_group_member(pd_sess_hdl_t, uint32_t sel_hdl, uint32_t dev_id, pd_grp_hdl_t grp_hdl,
                                            pd_mbr_hdl_t *first_hdl)
{
  return serve_group(__func__, dev_id, sel_hdl, grp_hdl, [&](device &, profile &, const group &which) -> pd_status_t {
    if (first_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
    *first_hdl = which.members.empty() ? STANDIN_NO_HANDLE : which.members.front().member;
    return require(!which.members.empty(), STANDIN_END);
  });
}

pd_status_t pipe_mgr_get_next_group_members(pd_sess_hdl_t, uint32_t sel_hdl, uint32_t dev_id, pd_grp_hdl_t grp_hdl,
                                            pd_mbr_hdl_t mbr_hdl, uint32_t n, pd_mbr_hdl_t *next_hdls)
{
  return serve_membership(__func__, dev_id, sel_hdl, grp_hdl, mbr_hdl,
                          [&](device &, profile &, const group &which, const membership &at) -> pd_status_t {
                            if (next_hdls == nullptr) return STANDIN_BAD_ARGUMENT;
                            const auto behind = static_cast<std::size_t>(&at - which.members.data()) + 1;
                            const auto found = std::min<std::size_t>(n, which.members.size() - behind);
                            for (std::size_t i = 0; i < found; ++i) next_hdls[i] = which.members[behind + i].member;
                            std::fill(next_hdls + found, next_hdls + n, STANDIN_NO_HANDLE);
                            return require(found != 0 || n == 0, STANDIN_END);
                          });
}
