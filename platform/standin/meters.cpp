// Driver functions of meters and the WRED block, and of the resources of an entry.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_action.h"
#include "resource_cells.h"

using namespace tarvex::standin;

namespace {

/// A direct register of an entry may be told by the handle of its table, which is the one its caller holds.
drv_res_spec_t by_own_handle(const match_table &table, drv_res_spec_t spec)
{
  const rows::resource_info *const reg = table.layout().direct(resource_kind::register_);
  if (spec.res_hdl == table.row().handle && reg != nullptr) spec.res_hdl = reg->handle;
  return spec;
}

}  // namespace

pd_status_t pipe_mgr_mat_ent_set_resource(pd_sess_hdl_t, uint64_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                          drv_res_spec_t *resources, uint32_t count, uint32_t)
{
  return serve_entry(__func__, device_of(dev_id), tbl_hdl, entry_hdl,
                     [&](device &dev, match_table &table, entry_view entry) -> pd_status_t {
                       if (resources == nullptr && count != 0) return STANDIN_BAD_ARGUMENT;
                       for (std::uint32_t i = 0; i < count; ++i)
                         if (const pd_status_t status = check_resource(dev, table, by_own_handle(table, resources[i])))
                           return status;
                       for (std::uint32_t i = 0; i < count; ++i)
                         apply_resource(entry, by_own_handle(table, resources[i]));
                       return success;
                     });
}

pd_status_t pipe_mgr_meter_ent_set(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl, uint32_t index,
                                   drv_meter_spec_t *spec, uint32_t)
{
  return serve_cell(__func__, device_of(dev_tgt), meter_hdl, resource_kind::meter, index,
                    [&](indirect_resource &meter) { return write_cell(meter.meters, index, spec); });
}

pd_status_t pipe_mgr_meter_read_entry_idx(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t meter_hdl, uint32_t index,
                                          drv_meter_spec_t *spec)
{
  return serve_cell(__func__, device_of(dev_tgt), meter_hdl, resource_kind::meter, index,
                    [&](const indirect_resource &meter) { return read_cell(meter.meters, index, spec); });
}

pd_status_t pipe_mgr_meter_read_entry(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                      drv_meter_spec_t *spec)
{
  return serve_entry(__func__, device_of(dev_tgt), tbl_hdl, entry_hdl,
                     [&](device &, match_table &, entry_view entry) -> pd_status_t {
                       if (spec == nullptr) return STANDIN_BAD_ARGUMENT;
                       if (!entry.head().meter_attached) return STANDIN_BAD_RESOURCE;
                       *spec = entry.meter();
                       return success;
                     });
}

pd_status_t pipe_mgr_wred_ent_set(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t wred_hdl, uint32_t index,
                                  drv_wred_spec_t *spec, uint32_t)
{
  return serve_cell(__func__, device_of(dev_tgt), wred_hdl, resource_kind::wred, index,
                    [&](indirect_resource &wred) { return write_cell(wred.wreds, index, spec); });
}

pd_status_t pipe_mgr_wred_read_entry_idx(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t wred_hdl, uint32_t index,
                                         drv_wred_spec_t *spec)
{
  return serve_cell(__func__, device_of(dev_tgt), wred_hdl, resource_kind::wred, index,
                    [&](const indirect_resource &wred) { return read_cell(wred.wreds, index, spec); });
}
