// Driver functions that write the entries of match tables and their default entries.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"
#include "entry_action.h"
#include "entry_record.h"
#include "idle_ageing.h"

namespace tarvex::standin {
namespace {

void tell(device &dev, const match_table &table, std::uint32_t handle, std::uint32_t event)
{
  if (table.updated.function == nullptr) return;
  dev.notify<standin_update_cb_t>(table.updated, dev.id, table.row().handle, handle, event,
                                  placement_of(record_of(table, handle)));
}

/// Handle of the entry with a key, the key being looked at first.
pd_status_t find_entry(match_table &table, const drv_match_spec_t *key, std::uint32_t *handle)
{
  if (const pd_status_t status = table.check_key(key)) return status;
  return table.find(*key, handle);
}

pd_status_t set_action(device &dev, match_table &table, std::uint32_t handle, std::uint32_t act_hdl,
                       const drv_action_spec_t *spec)
{
  if (const pd_status_t status = check_action(dev, table, act_hdl, spec, action_place::entry)) return status;
  apply_action(dev, table, table.at(handle), act_hdl, *spec);
  tell(dev, table, handle, STANDIN_CHANGED);
  return success;
}

pd_status_t erase(device &dev, match_table &table, std::uint32_t handle)
{
  tell(dev, table, handle, STANDIN_DELETED);
  release_reference(dev, table, table.at(handle));
  table.erase(handle);
  return success;
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_mat_ent_add(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, drv_match_spec_t *match_spec,
                                 uint32_t act_hdl, drv_action_spec_t *action_spec, uint32_t ttl, uint32_t,
                                 pd_entry_hdl_t *entry_hdl)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (entry_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
    if (const pd_status_t status = table.check_key(match_spec)) return status;
    if (const pd_status_t status = check_action(dev, table, act_hdl, action_spec, action_place::entry)) return status;
    if (const pd_status_t status = check_ttl(table, ttl)) return status;
    if (const pd_status_t status = table.insert(*match_spec, entry_hdl)) return status;
    const entry_view entry = table.at(*entry_hdl);
    apply_action(dev, table, entry, act_hdl, *action_spec);
    if (table.row().idle_time) start_ttl(table, entry, ttl);
    tell(dev, table, *entry_hdl, STANDIN_ADDED);
    return success;
  });
}

pd_status_t pipe_mgr_mat_ent_set_action(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                        uint32_t act_hdl, drv_action_spec_t *action_spec, uint32_t)
{
  return serve_table(__func__, dev_id, tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (!table.slots().holds(entry_hdl)) return STANDIN_NO_ENTRY;
    return set_action(dev, table, entry_hdl, act_hdl, action_spec);
  });
}

pd_status_t pipe_mgr_mat_ent_set_action_by_match_spec(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                      drv_match_spec_t *match_spec, uint32_t act_hdl,
                                                      drv_action_spec_t *action_spec, uint32_t)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &dev, match_table &table) {
    std::uint32_t handle = 0;
    const pd_status_t status = find_entry(table, match_spec, &handle);
    return status != BF_SUCCESS ? status : set_action(dev, table, handle, act_hdl, action_spec);
  });
}

pd_status_t pipe_mgr_mat_ent_del(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, uint32_t)
{
  return serve_table(__func__, dev_id, tbl_hdl, [&](device &dev, match_table &table) {
    return table.slots().holds(entry_hdl) ? erase(dev, table, entry_hdl) : pd_status_t{STANDIN_NO_ENTRY};
  });
}

pd_status_t pipe_mgr_mat_ent_del_by_match_spec(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                               drv_match_spec_t *match_spec, uint32_t)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &dev, match_table &table) {
    std::uint32_t handle = 0;
    const pd_status_t status = find_entry(table, match_spec, &handle);
    return status != BF_SUCCESS ? status : erase(dev, table, handle);
  });
}

pd_status_t pipe_mgr_match_spec_to_ent_hdl(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                           drv_match_spec_t *match_spec, pd_entry_hdl_t *entry_hdl)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &, match_table &table) {
    return entry_hdl == nullptr ? pd_status_t{STANDIN_BAD_ARGUMENT} : find_entry(table, match_spec, entry_hdl);
  });
}

pd_status_t pipe_mgr_mat_default_entry_set(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, uint32_t act_hdl,
                                           drv_action_spec_t *action_spec, uint32_t, pd_entry_hdl_t *entry_hdl)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (entry_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
    if (const pd_status_t status = check_action(dev, table, act_hdl, action_spec, action_place::default_entry))
      return status;
    *entry_hdl = table.make_default();
    apply_action(dev, table, table.at(*entry_hdl), act_hdl, *action_spec);
    tell(dev, table, *entry_hdl, STANDIN_DEFAULT_SET);
    return success;
  });
}

pd_status_t pipe_mgr_mat_tbl_default_entry_reset(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, uint32_t)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    const std::uint32_t handle = table.default_handle();
    if (handle == 0) return success;
    tell(dev, table, handle, STANDIN_DEFAULT_RESET);
    release_reference(dev, table, table.at(handle));
    table.drop_default();
    return success;
  });
}

pd_status_t pipe_mgr_table_get_default_entry_handle(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                    pd_entry_hdl_t *entry_hdl)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &, match_table &table) -> pd_status_t {
    if (entry_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
    if (table.default_handle() == 0) return STANDIN_NO_ENTRY;
    *entry_hdl = table.default_handle();
    return success;
  });
}
