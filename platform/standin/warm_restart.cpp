// The replay of members, groups and memberships after a warm restart of the client.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"

using namespace tarvex::standin;

pd_status_t pipe_mgr_hitless_ha_restore_virtual_dev_state(uintptr_t first, uintptr_t second, uintptr_t, uintptr_t,
                                                          uintptr_t, drv_adt_sel_restore_t restore)
{
  const auto sess_hdl = static_cast<pd_sess_hdl_t>(first);
  return serve(__func__, static_cast<std::uint32_t>(second), 0, [&](device &dev) -> pd_status_t {
    if (restore == nullptr) return STANDIN_BAD_ARGUMENT;
    const auto replay = [&](const profile &from, std::uint32_t act_hdl, pd_grp_hdl_t grp_hdl, pd_mbr_hdl_t mbr_hdl,
                            std::uint32_t update_groups) {
      dev.events.push_back([=, dev_id = dev.id, adt_hdl = from.row->action_data_table] {
        restore(sess_hdl, dev_id, adt_hdl, act_hdl, grp_hdl, mbr_hdl, update_groups);
      });
    };
    for (profile &each : dev.profiles) {
      each.members.each([&](pd_mbr_hdl_t handle, const member &m) { replay(each, m.use->handle, 0, handle, 0); });
      each.groups.each([&](pd_grp_hdl_t handle, const group &) { replay(each, 0, handle, 0, 0); });
      // In the order in which the members joined, so that a group ends with the action of the last one.
      each.groups.each([&](pd_grp_hdl_t handle, const group &g) {
        for (const membership &m : g.members)
          replay(each, each.members.find(m.member)->use->handle, handle, m.member, 1);
      });
    }
    return success;
  });
}
