// Driver functions of the idle time, and the clock that a test moves.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "device.h"
#include "idle_ageing.h"

namespace tarvex::standin {

void age(device &dev, match_table &table, std::uint32_t milliseconds)
{
  idle_setting &idle = table.idle;
  if (!idle.enabled || idle.mode != STANDIN_IDLE_NOTIFY) return;
  std::uint64_t passed = std::uint64_t{idle.waiting} + milliseconds;
  idle.waiting = idle.interval == 0 ? 0 : static_cast<std::uint32_t>(passed % idle.interval);
  passed -= idle.waiting;
  if (passed == 0) return;
  table.each([&](std::uint32_t handle, entry_view entry) {
    std::uint32_t &left = entry.idle().left;
    if (left == 0) return;  // does not age, or was told of
    left -= static_cast<std::uint32_t>(std::min<std::uint64_t>(left, passed));
    if (left == 0) dev.notify<standin_idle_cb_t>(idle.expired, dev.id, table.row().handle, handle);
  });
}

namespace {

/// A driver function on a table with idle time.
template <class Body>
pd_status_t serve_idle(const char *function, std::uint32_t dev_id, std::uint32_t tbl_hdl, Body body)
{
  return serve_table(function, dev_id, tbl_hdl, [&](device &dev, match_table &table) {
    return table.row().idle_time ? body(dev, table) : pd_status_t{STANDIN_NOT_ENABLED};
  });
}

/// A driver function on an entry of one.
template <class Body>
pd_status_t serve_idle_entry(const char *function, std::uint32_t dev_id, std::uint32_t tbl_hdl, std::uint32_t handle,
                             Body body)
{
  return serve_idle(function, dev_id, tbl_hdl, [&](device &, match_table &table) {
    return table.slots().holds(handle) ? body(table, table.at(handle)) : pd_status_t{STANDIN_NO_ENTRY};
  });
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_idle_tmo_enable(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_idle_params_t params)
{
  return serve_idle(__func__, dev_id, tbl_hdl, [&](device &, match_table &table) -> pd_status_t {
    if (params.word_0 > STANDIN_IDLE_NOTIFY) return STANDIN_BAD_ARGUMENT;
    idle_setting &idle = table.idle;
    idle.enabled = true;
    idle.mode = params.word_0;
    idle.interval = params.word_1;
    idle.largest_ttl = params.word_2;
    if (params.word_4 != 0)
      idle.expired = {reinterpret_cast<pd_callback_t>(params.word_4), reinterpret_cast<void *>(params.word_5)};
    return success;
  });
}

pd_status_t pipe_mgr_idle_tmo_disable(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl)
{
  return serve_idle(__func__, dev_id, tbl_hdl, [&](device &, match_table &table) -> pd_status_t {
    if (!table.idle.enabled) return STANDIN_NOT_ENABLED;
    table.idle.enabled = false;
    return success;
  });
}

pd_status_t pipe_mgr_idle_register_tmo_cb(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_callback_t cb,
                                          void *cookie)
{
  return serve_idle(__func__, dev_id, tbl_hdl, [&](device &, match_table &table) {
    table.idle.expired = {cb, cookie};
    return success;
  });
}

pd_status_t pipe_mgr_idle_time_update_hit_state(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, uintptr_t first,
                                                uintptr_t second)
{
  return serve_idle(__func__, dev_id, tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (!table.idle.enabled) return STANDIN_NOT_ENABLED;
    table.each([](std::uint32_t, entry_view entry) {
      entry.head().active = entry.head().hit;
      entry.head().hit = 0;
    });
    dev.notify<standin_done_cb_t>({reinterpret_cast<pd_callback_t>(first), reinterpret_cast<void *>(second)}, dev.id,
                                  tbl_hdl);
    return success;
  });
}

pd_status_t pipe_mgr_idle_time_get_hit_state(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                             uint32_t *hit_state)
{
  return serve_idle_entry(__func__, dev_id, tbl_hdl, entry_hdl,
                          [&](match_table &table, entry_view entry) -> pd_status_t {
                            if (hit_state == nullptr) return STANDIN_BAD_ARGUMENT;
                            if (!table.idle.enabled) return STANDIN_NOT_ENABLED;
                            *hit_state = entry.head().active;
                            return success;
                          });
}

pd_status_t pipe_mgr_mat_ent_set_idle_ttl(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                          uint32_t ttl, uint32_t)
{
  return serve_idle_entry(__func__, dev_id, tbl_hdl, entry_hdl, [&](match_table &table, entry_view entry) {
    const pd_status_t status = check_ttl(table, ttl);
    if (status == success) start_ttl(table, entry, ttl);
    return status;
  });
}

pd_status_t pipe_mgr_mat_ent_get_idle_ttl(pd_sess_hdl_t, uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                          uint32_t *ttl)
{
  return serve_idle_entry(__func__, dev_id, tbl_hdl, entry_hdl,
                          [&](match_table &table, entry_view entry) -> pd_status_t {
                            if (ttl == nullptr) return STANDIN_BAD_ARGUMENT;
                            *ttl = ttl_left(table, entry);
                            return success;
                          });
}

pd_status_t standin_idle_advance(uint32_t milliseconds)
{
  for (std::uint32_t dev_id = 0; dev_id < most_devices; ++dev_id) {
    const pd_status_t status = on_device(dev_id, [&](device &dev) {
      for (match_table &table : dev.tables) age(dev, table, milliseconds);
      return success;
    });
    if (status != BF_SUCCESS && status != STANDIN_NO_DEVICE) return status;
  }
  return success;
}

pd_status_t standin_entry_hit(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl)
{
  return on_table(dev_id, tbl_hdl, [&](device &, match_table &table) -> pd_status_t {
    if (!table.row().idle_time) return STANDIN_NOT_ENABLED;
    if (!table.slots().holds(entry_hdl)) return STANDIN_NO_ENTRY;
    hit(table, table.at(entry_hdl));
    return success;
  });
}
