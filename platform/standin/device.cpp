// A device with all that it holds.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"

namespace tarvex::standin {

device::device(std::uint32_t its_id) : id(its_id)
{
  for (const rows::table_info &row : rows::tables) tables.emplace_back(row, rows::resources);
  for (const rows::profile_info &row : rows::profiles) profiles.emplace_back(row);
  // A register has cells by index in any case: on a keyless table there is but the default entry to name it.
  for (const rows::resource_info &row : rows::resources)
    if (!row.direct || row.kind == resource_kind::register_) resources.emplace_back(row);
}

match_table *device::table(std::uint32_t handle)
{
  // Handles of match tables are dense but for a few gaps, so a table stands at most that much ahead of its number.
  if (tables.empty() || handle < tables.front().row().handle) return nullptr;
  std::size_t at = std::min<std::size_t>(handle - tables.front().row().handle, tables.size() - 1);
  while (tables[at].row().handle > handle) --at;
  return tables[at].row().handle == handle ? &tables[at] : nullptr;
}

profile *device::profile_of(const match_table &table)
{
  for (profile &each : profiles)
    if (each.row->table == table.row().handle) return &each;
  return nullptr;
}

profile *device::profile_of_members(std::uint32_t adt_hdl)
{
  for (profile &each : profiles)
    if (each.row->action_data_table == adt_hdl) return &each;
  return nullptr;
}

profile *device::profile_of_groups(std::uint32_t sel_hdl)
{
  for (profile &each : profiles)
    if (each.row->selector_table == sel_hdl) return &each;
  return nullptr;
}

indirect_resource *device::resource(std::uint32_t handle, resource_kind kind)
{
  for (indirect_resource &each : resources)
    if (each.row->handle == handle && each.row->kind == kind) return &each;
  return nullptr;
}

slot_pool *device::slots(std::uint32_t handle)
{
  if (match_table *const found = table(handle)) return &found->slots();
  if (profile *const found = profile_of_members(handle)) return &found->members.slots;
  if (profile *const found = profile_of_groups(handle)) return &found->groups.slots;
  return nullptr;
}

device_place *place_of(std::uint32_t dev_id)
{
  static std::array<device_place, most_devices> places;
  return dev_id < most_devices ? &places[dev_id] : nullptr;
}

}  // namespace tarvex::standin
