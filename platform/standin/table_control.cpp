// Control functions on tables: the lookup of packets, limits, and the names of statuses.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"

using namespace tarvex::standin;

pd_status_t standin_lookup(pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, const uint8_t *key, size_t key_bytes,
                           uint32_t partition_index, pd_entry_hdl_t *entry_hdl)
{
  return on_table(device_of(dev_tgt), tbl_hdl, [&](device &, match_table &table) -> pd_status_t {
    if (entry_hdl == nullptr || (key == nullptr && key_bytes != 0)) return STANDIN_BAD_ARGUMENT;
    if (key_bytes != table.row().key_bytes) return STANDIN_BAD_KEY;
    const pd_status_t status = table.lookup(key, partition_index, entry_hdl);
    if (status != BF_SUCCESS) *entry_hdl = table.default_handle() != 0 ? table.default_handle() : STANDIN_NO_HANDLE;
    return status;
  });
}

pd_status_t standin_size_limit(uint32_t dev_id, uint32_t hdl, uint32_t limit)
{
  return on_device(dev_id, [&](device &dev) -> pd_status_t {
    if (slot_pool *const pool = dev.slots(hdl)) {
      pool->limit(limit);
      return success;
    }
    for (indirect_resource &each : dev.resources)
      if (each.row->handle == hdl) {
        each.limit = limit;
        return success;
      }
    return STANDIN_NO_OBJECT;
  });
}

const char *standin_status_name(pd_status_t status)
{
  static constexpr const char *names[] = {
      "STANDIN_NO_DEVICE",    "STANDIN_NO_CLIENT",     "STANDIN_NO_OBJECT",    "STANDIN_NO_ACTION",
      "STANDIN_NO_ENTRY",     "STANDIN_NO_MEMBER",     "STANDIN_NO_GROUP",     "STANDIN_NO_PROPERTY",
      "STANDIN_NO_SNAPSHOT",  "STANDIN_EXISTS",        "STANDIN_FULL",         "STANDIN_IN_USE",
      "STANDIN_BAD_ARGUMENT", "STANDIN_BAD_KEY",       "STANDIN_BAD_ACTION",   "STANDIN_BAD_RESOURCE",
      "STANDIN_BAD_INDEX",    "STANDIN_BAD_PLACEMENT", "STANDIN_BAD_DOCUMENT", "STANDIN_NOT_DEFAULT",
      "STANDIN_NOT_ENABLED",  "STANDIN_NOT_TRIGGERED", "STANDIN_END",          "STANDIN_NO_MEMORY",
  };
  static_assert(std::size(names) == STANDIN_NO_MEMORY - STANDIN_NO_DEVICE + 1);
  if (status == BF_SUCCESS) return "BF_SUCCESS";
  return status - STANDIN_NO_DEVICE < std::size(names) ? names[status - STANDIN_NO_DEVICE] : nullptr;
}
