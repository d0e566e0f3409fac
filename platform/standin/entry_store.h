// Entries of one match table in memory: records of one size, laid out for what the table has, in slabs that never move.
// Measured at a million entries with handles and index: 111 bytes an entry beyond key, mask and action data in a table
// with a direct meter, whose value and reference take 68 of them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "pipeline_rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::standin {

// For the driver functions, which stand outside of the namespace.
namespace rows = tarvex::rows;
using tarvex::resource_kind;

/// What every entry has in front.
struct entry_head {
  std::uint32_t priority;
  std::uint32_t partition;
  std::uint32_t reference;  // member or group of an indirect table
  std::uint8_t action;      // index into the table's actions
  std::uint8_t kind;        // DRV_ACT_DATA, DRV_ACT_MEMBER or DRV_ACT_GROUP
  std::uint8_t resources;   // told of, attached or not
  std::uint8_t meter_attached : 1;
  std::uint8_t hit : 1;     // since the last update of the hit state
  std::uint8_t active : 1;  // the hit state as of that update
};

struct idle_cell {
  std::uint32_t ttl;  // milliseconds, 0: does not age
  std::uint32_t left;
};

struct counter_cell {
  drv_stat_data_t counted;  // by the pipeline
  drv_stat_data_t synced;   // as readers see it
};

struct resource_reference {
  std::uint32_t handle;
  std::uint32_t index;
  std::uint32_t tag;
};

/// Where the parts of an entry stand; a part that the table lacks takes no room.
struct entry_layout {
  entry_layout(const rows::table_info &row, std::span<const rows::resource_info> all);
  entry_layout(const entry_layout &) = delete;
  entry_layout &operator=(const entry_layout &) = delete;

  const rows::resource_info *direct(resource_kind kind) const { return direct_[static_cast<std::size_t>(kind)]; }
  const rows::resource_info *resource(std::uint32_t handle) const;

  std::vector<rows::resource_info> resources;  // of this table
  std::size_t idle = 0;
  std::size_t counter = 0;
  std::size_t meter = 0;
  std::size_t register_value = 0;
  std::size_t references = 0;
  std::size_t value = 0;
  std::size_t mask = 0;
  std::size_t data = 0;
  std::size_t size = 0;
  std::uint16_t key_bytes = 0;
  bool stores_mask = false;  // the masks of an exact table are all ones

 private:
  const rows::resource_info *direct_[4] = {};
};

/// One entry. A part may be asked for only where the layout has it.
class entry_view {
 public:
  entry_view(std::byte *at, const entry_layout &layout) : at_(at), layout_(&layout) {}

  entry_head &head() const { return part<entry_head>(0); }
  idle_cell &idle() const { return part<idle_cell>(layout_->idle); }
  counter_cell &counter() const { return part<counter_cell>(layout_->counter); }
  drv_meter_spec_t &meter() const { return part<drv_meter_spec_t>(layout_->meter); }
  std::uint64_t &register_value() const { return part<std::uint64_t>(layout_->register_value); }
  std::span<resource_reference> references() const
  {
    return {&part<resource_reference>(layout_->references), layout_->resources.size()};
  }
  std::uint8_t *value() const { return &part<std::uint8_t>(layout_->value); }
  std::uint8_t *mask() const { return &part<std::uint8_t>(layout_->mask); }
  std::uint8_t *data() const { return &part<std::uint8_t>(layout_->data); }

  const entry_layout &layout() const { return *layout_; }

 private:
  template <class T>
  T &part(std::size_t offset) const
  {
    return *reinterpret_cast<T *>(at_ + offset);
  }

  std::byte *at_;
  const entry_layout *layout_;
};

/// The slabs. Slot numbers are those of a slot_pool.
class entry_store {
 public:
  explicit entry_store(const entry_layout &layout) : layout_(&layout) {}

  void prepare(std::size_t slots);
  entry_view at(std::uint32_t slot) const { return {bytes_at(slot), *layout_}; }
  void clear(std::uint32_t slot);

 private:
  static constexpr std::size_t slab_entries = 256;

  std::byte *bytes_at(std::uint32_t slot) const
  {
    return slabs_[(slot - 1) / slab_entries].get() + (slot - 1) % slab_entries * layout_->size;
  }

  const entry_layout *layout_;
  std::vector<std::unique_ptr<std::byte[]>> slabs_;
};

}  // namespace tarvex::standin
