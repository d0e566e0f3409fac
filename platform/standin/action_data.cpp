// Driver functions on the members of action data tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"
#include "entry_record.h"

namespace tarvex::standin {
namespace {

void tell(device &dev, profile &owner, pd_mbr_hdl_t handle, std::uint32_t event)
{
  if (owner.member_updated.function == nullptr) return;
  dev.notify<standin_update_cb_t>(owner.member_updated, dev.id, owner.row->action_data_table, handle, event,
                                  placement_of(record_of(*owner.members.find(handle))));
}

/// A driver function on a member: body(device, profile, member).
template <class Body>
pd_status_t serve_member(const char *function, std::uint32_t dev_id, std::uint32_t adt_hdl, pd_mbr_hdl_t mbr_hdl,
                         Body body)
{
  return serve_members(function, dev_id, adt_hdl, [&](device &dev, profile &owner) {
    member *const found = owner.members.find(mbr_hdl);
    return found == nullptr ? pd_status_t{STANDIN_NO_MEMBER} : body(dev, owner, *found);
  });
}

/// The action of a member write and its data, checked; a member record says nothing of kinds and resources.
pd_status_t read_action(const profile &owner, std::uint32_t act_hdl, const drv_action_spec_t *spec, member &to)
{
  if (spec == nullptr) return STANDIN_BAD_ARGUMENT;
  const rows::use_info *const use = find_use(owner.row->actions, act_hdl);
  if (use == nullptr) return STANDIN_NO_ACTION;
  if (const pd_status_t status = check_data(*use->action, spec->act_data)) return status;
  to.use = use;
  to.data.assign(spec->act_data.data, spec->act_data.data + use->action->data_bytes);
  return success;
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_adt_ent_add(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t adt_hdl, uint32_t act_hdl,
                                 drv_action_spec_t *action_spec, pd_mbr_hdl_t *mbr_hdl, uint32_t)
{
  return serve_members(__func__, device_of(dev_tgt), adt_hdl, [&](device &dev, profile &owner) -> pd_status_t {
    if (mbr_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
    member added;
    if (const pd_status_t status = read_action(owner, act_hdl, action_spec, added)) return status;
    if (const pd_status_t status = owner.members.add(std::move(added), mbr_hdl)) return status;
    tell(dev, owner, *mbr_hdl, STANDIN_ADDED);
    return success;
  });
}

pd_status_t pipe_mgr_adt_ent_set(pd_sess_hdl_t, uint32_t dev_id, uint32_t adt_hdl, pd_mbr_hdl_t mbr_hdl,
                                 uint32_t act_hdl, drv_action_spec_t *action_spec, uint32_t)
{
  return serve_member(__func__, dev_id, adt_hdl, mbr_hdl, [&](device &dev, profile &owner, member &which) {
    if (which.use->handle != act_hdl) return pd_status_t{STANDIN_BAD_ACTION};
    const pd_status_t status = read_action(owner, act_hdl, action_spec, which);
    if (status == success) tell(dev, owner, mbr_hdl, STANDIN_CHANGED);
    return status;
  });
}

pd_status_t pipe_mgr_adt_ent_del(pd_sess_hdl_t, uint32_t dev_id, uint32_t adt_hdl, pd_mbr_hdl_t mbr_hdl, uint32_t)
{
  return serve_member(__func__, dev_id, adt_hdl, mbr_hdl, [&](device &dev, profile &owner, const member &which) {
    if (which.uses != 0) return pd_status_t{STANDIN_IN_USE};
    tell(dev, owner, mbr_hdl, STANDIN_DELETED);
    owner.members.erase(mbr_hdl);
    return success;
  });
}

pd_status_t pipe_mgr_get_action_data_entry(uint32_t adt_hdl, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl,
                                           drv_act_data_t *act_data, uint32_t *act_hdl, uint32_t)
{
  return serve_member(__func__, dev_id, adt_hdl, mbr_hdl, [&](device &, profile &, const member &which) {
    return deliver(record_of(which), act_data, act_hdl);
  });
}

pd_status_t pipe_register_adt_update_cb(pd_sess_hdl_t, uint32_t dev_id, uint32_t adt_hdl, pd_callback_t cb,
                                        void *cookie)
{
  return serve_members(__func__, dev_id, adt_hdl, [&](device &, profile &owner) {
    owner.member_updated = {cb, cookie};
    return success;
  });
}
