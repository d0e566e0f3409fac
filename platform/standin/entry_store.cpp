// Entries of one match table in memory.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_store.h"

#include <algorithm>
#include <cstring>

namespace tarvex::standin {

entry_layout::entry_layout(const rows::table_info &row, std::span<const rows::resource_info> all)
    : key_bytes(row.key_bytes), stores_mask(row.kind == table_kind::ternary || row.kind == table_kind::lpm)
{
  for (const rows::resource_info &each : all)
    if (each.table == row.handle) resources.push_back(each);
  for (const rows::resource_info &each : resources)
    if (each.direct) direct_[static_cast<std::size_t>(each.kind)] = &each;
  std::size_t data_bytes = 0;
  for (const rows::use_info &use : row.uses()) data_bytes = std::max<std::size_t>(data_bytes, use.action->data_bytes);

  size = sizeof(entry_head);
  const auto place = [this](std::size_t &offset, std::size_t bytes) {
    offset = size;
    size += bytes;
  };
  place(idle, row.idle_time ? sizeof(idle_cell) : 0);
  place(counter, direct(resource_kind::counter) != nullptr ? sizeof(counter_cell) : 0);
  place(meter, direct(resource_kind::meter) != nullptr ? sizeof(drv_meter_spec_t) : 0);
  place(register_value, direct(resource_kind::register_) != nullptr ? sizeof(std::uint64_t) : 0);
  place(references, resources.size() * sizeof(resource_reference));
  place(value, row.key_bytes);
  place(mask, stores_mask ? row.key_bytes : 0);
  place(data, row.profile == nullptr ? data_bytes : 0);
  size = (size + 7) / 8 * 8;
}

const rows::resource_info *entry_layout::resource(std::uint32_t handle) const
{
  for (const rows::resource_info &each : resources)
    if (each.handle == handle) return &each;
  return nullptr;
}

void entry_store::prepare(std::size_t slots)
{
  while (slabs_.size() * slab_entries < slots)
    slabs_.push_back(std::make_unique<std::byte[]>(slab_entries * layout_->size));
}

void entry_store::clear(std::uint32_t slot) { std::memset(bytes_at(slot), 0, layout_->size); }

}  // namespace tarvex::standin
