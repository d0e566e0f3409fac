// Driver functions that read entries, walk handles and keep the properties and update callbacks of match tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"
#include "entry_record.h"

using namespace tarvex::standin;

namespace {

/// A driver function on the handles of a match, action data or selector table: body(pool).
template <class Body>
pd_status_t serve_slots(const char *function, pd_dev_tgt_t dev_tgt, std::uint32_t tbl_hdl, Body body)
{
  return serve(function, device_of(dev_tgt), tbl_hdl, [&](device &dev) {
    slot_pool *const pool = dev.slots(tbl_hdl);
    return pool == nullptr ? pd_status_t{STANDIN_NO_OBJECT} : body(*pool);
  });
}

}  // namespace

pd_status_t pipe_mgr_get_entry(pd_sess_hdl_t, uint32_t tbl_hdl, uint32_t dev_id, pd_entry_hdl_t entry_hdl,
                               drv_match_spec_t *match_spec, drv_action_spec_t *action_spec, uint32_t *act_hdl,
                               uint32_t)
{
  return serve_entry(__func__, dev_id, tbl_hdl, entry_hdl, [&](device &, match_table &table, entry_view) {
    return deliver(record_of(table, entry_hdl), match_spec, action_spec, act_hdl);
  });
}

pd_status_t pipe_mgr_get_entry_count(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, uint32_t, uint32_t *count)
{
  return serve_slots(__func__, dev_tgt, tbl_hdl, [&](const slot_pool &pool) -> pd_status_t {
    if (count == nullptr) return STANDIN_BAD_ARGUMENT;
    *count = pool.size();
    return success;
  });
}

pd_status_t pipe_mgr_get_first_entry_handle(pd_sess_hdl_t, uint32_t tbl_hdl, pd_dev_tgt_t dev_tgt, uint32_t *first_hdl)
{
  return serve_slots(__func__, dev_tgt, tbl_hdl, [&](const slot_pool &pool) {
    return first_hdl == nullptr ? pd_status_t{STANDIN_BAD_ARGUMENT} : pool.first(first_hdl);
  });
}

pd_status_t pipe_mgr_get_next_entry_handles(pd_sess_hdl_t, uint32_t tbl_hdl, pd_dev_tgt_t dev_tgt, uint32_t hdl,
                                            uint32_t n, uint32_t *next_hdls)
{
  return serve_slots(__func__, dev_tgt, tbl_hdl, [&](const slot_pool &pool) -> pd_status_t {
    if (next_hdls == nullptr) return STANDIN_BAD_ARGUMENT;
    return pool.holds(hdl) ? pool.next(hdl, n, next_hdls) : pd_status_t{STANDIN_NO_ENTRY};
  });
}

pd_status_t pipe_mgr_tbl_set_property(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, uint32_t property,
                                      uint32_t value, uint32_t argument)
{
  return serve_table(__func__, dev_id, tbl_hdl, [&](device &, match_table &table) {
    table.properties[property] = {value, argument};
    return success;
  });
}

pd_status_t pipe_mgr_tbl_get_property(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, uint32_t property,
                                      uint32_t *value, uint32_t *argument)
{
  return serve_table(__func__, dev_id, tbl_hdl, [&](device &, match_table &table) -> pd_status_t {
    if (value == nullptr || argument == nullptr) return STANDIN_BAD_ARGUMENT;
    const auto found = table.properties.find(property);
    if (found == table.properties.end()) return STANDIN_NO_PROPERTY;
    *value = found->second.first;
    *argument = found->second.second;
    return success;
  });
}

pd_status_t pipe_register_mat_update_cb(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_callback_t cb,
                                        void *cookie)
{
  return serve_table(__func__, dev_id, tbl_hdl, [&](device &, match_table &table) {
    table.updated = {cb, cookie};
    return success;
  });
}
