// Changes of what the hardware holds that no client is told of, as a fault would make them.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"
#include "entry_action.h"

using namespace tarvex::standin;

pd_status_t standin_corrupt_entry(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, uint32_t bit)
{
  return on_table(dev_id, tbl_hdl, [&](device &, match_table &table) -> pd_status_t {
    if (!table.holds(entry_hdl)) return STANDIN_NO_ENTRY;
    const entry_view entry = table.at(entry_hdl);
    if (entry.head().kind != DRV_ACT_DATA) return STANDIN_BAD_ACTION;
    const std::uint32_t bytes = table.row().uses()[entry.head().action].action->data_bytes;
    if (bit / 8 >= bytes) return STANDIN_BAD_INDEX;
    std::uint8_t &byte = entry.data()[bytes - 1 - bit / 8];
    byte = static_cast<std::uint8_t>(byte ^ 1u << bit % 8);
    return success;
  });
}

pd_status_t standin_lose_entry(uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl)
{
  return on_table(dev_id, tbl_hdl, [&](device &dev, match_table &table) -> pd_status_t {
    if (!table.slots().holds(entry_hdl)) return STANDIN_NO_ENTRY;
    release_reference(dev, table, table.at(entry_hdl));
    table.erase(entry_hdl);
    return success;
  });
}
