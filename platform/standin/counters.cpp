// Driver functions of the counters. The pipeline counts in a cell of its own; what a reader sees follows at a
// synchronisation.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"
#include "idle_ageing.h"
#include "resource_cells.h"

namespace tarvex::standin {
namespace {

/// A driver function on the direct counter of an entry: body(cell).
template <class Body>
pd_status_t serve_direct(const char *function, std::uint32_t dev_id, std::uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                         Body body)
{
  return serve_entry(function, dev_id, tbl_hdl, entry_hdl, [&](device &, match_table &table, entry_view entry) {
    const bool has = table.layout().direct(resource_kind::counter) != nullptr;
    return has ? body(entry.counter()) : pd_status_t{STANDIN_BAD_RESOURCE};
  });
}

/// A driver function on a cell of an indirect counter: body(cell).
template <class Body>
pd_status_t serve_indirect(const char *function, std::uint32_t dev_id, std::uint32_t stat_hdl, std::uint32_t index,
                           Body body)
{
  return serve_cell(function, dev_id, stat_hdl, resource_kind::counter, index,
                    [&](indirect_resource &counter) { return body(counter.counters[index]); });
}

auto reads(drv_stat_data_t *to)
{
  return [to](const counter_cell &cell) {
    if (to != nullptr) *to = cell.synced;
    return require(to != nullptr, STANDIN_BAD_ARGUMENT);
  };
}

auto writes(const drv_stat_data_t *from)
{
  return [from](counter_cell &cell) {
    if (from != nullptr) cell = {*from, *from};
    return require(from != nullptr, STANDIN_BAD_ARGUMENT);
  };
}

pd_status_t synchronise(counter_cell &cell)
{
  cell.synced = cell.counted;
  return success;
}

void count(counter_cell &cell, std::uint64_t packets, std::uint64_t bytes)
{
  cell.counted.packets += packets;
  cell.counted.bytes += bytes;
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_stat_ent_query(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl, uint32_t index,
                                    drv_stat_data_t *data)
{
  return serve_indirect(__func__, device_of(dev_tgt), stat_hdl, index, reads(data));
}

pd_status_t pipe_mgr_stat_ent_set(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl, uint32_t index,
                                  drv_stat_data_t *data)
{
  return serve_indirect(__func__, device_of(dev_tgt), stat_hdl, index, writes(data));
}

pd_status_t pipe_mgr_stat_ent_database_sync(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl, uint32_t index)
{
  return serve_indirect(__func__, device_of(dev_tgt), stat_hdl, index, synchronise);
}

pd_status_t pipe_mgr_stat_database_sync(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t stat_hdl, pd_callback_t cb,
                                        void *cookie)
{
  return serve_resource(__func__, device_of(dev_tgt), stat_hdl, resource_kind::counter,
                        [&](device &dev, indirect_resource &counter) {
                          for (auto &[index, cell] : counter.counters) synchronise(cell);
                          dev.notify<standin_done_cb_t>({cb, cookie}, dev.id, stat_hdl);
                          return success;
                        });
}

pd_status_t pipe_mgr_mat_ent_direct_stat_query(pd_sess_hdl_t, uint64_t dev_id, uint32_t tbl_hdl,
                                               pd_entry_hdl_t entry_hdl, drv_stat_data_t *data)
{
  return serve_direct(__func__, device_of(dev_id), tbl_hdl, entry_hdl, reads(data));
}

pd_status_t pipe_mgr_mat_ent_direct_stat_set(pd_sess_hdl_t, uint64_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                             drv_stat_data_t *data)
{
  return serve_direct(__func__, device_of(dev_id), tbl_hdl, entry_hdl, writes(data));
}

pd_status_t pipe_mgr_direct_stat_ent_database_sync(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                   pd_entry_hdl_t entry_hdl)
{
  return serve_direct(__func__, device_of(dev_tgt), tbl_hdl, entry_hdl, synchronise);
}

pd_status_t pipe_mgr_direct_stat_database_sync(pd_sess_hdl_t, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, pd_callback_t cb,
                                               void *cookie)
{
  return serve_table(__func__, device_of(dev_tgt), tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (table.layout().direct(resource_kind::counter) == nullptr) return STANDIN_BAD_RESOURCE;
    table.each([](std::uint32_t, entry_view entry) { synchronise(entry.counter()); });
    if (table.default_handle() != 0) synchronise(table.at(table.default_handle()).counter());
    dev.notify<standin_done_cb_t>({cb, cookie}, dev.id, tbl_hdl);
    return success;
  });
}

pd_status_t standin_count_packets(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, uint64_t packets,
                                  uint64_t bytes)
{
  return on_table(dev_id, tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (!table.holds(entry_hdl)) return STANDIN_NO_ENTRY;
    const entry_view entry = table.at(entry_hdl);
    if (table.row().idle_time && !table.is_default(entry_hdl)) hit(table, entry);
    if (table.layout().direct(resource_kind::counter) != nullptr) count(entry.counter(), packets, bytes);
    for (const resource_reference &each : entry.references().first(entry.head().resources)) {
      indirect_resource *const counter = dev.resource(each.handle, resource_kind::counter);
      if (counter != nullptr && each.tag == DRV_RES_ATTACHED) count(counter->counters[each.index], packets, bytes);
    }
    return success;
  });
}

pd_status_t standin_count_cell(uint32_t dev_id, uint32_t counter_hdl, uint32_t index, uint64_t packets, uint64_t bytes)
{
  return on_device(dev_id, [&](device &dev) -> pd_status_t {
    indirect_resource *const counter = dev.resource(counter_hdl, resource_kind::counter);
    if (counter == nullptr) return STANDIN_NO_OBJECT;
    if (index >= counter->limit) return STANDIN_BAD_INDEX;
    count(counter->counters[index], packets, bytes);
    return success;
  });
}
