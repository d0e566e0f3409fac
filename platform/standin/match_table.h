// One match table of a device: its entries by handle and by key, its default entry, and the lookup of packets.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "entry_store.h"
#include "key_index.h"
#include "pipeline_rows.h"
#include "slot_pool.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace tarvex::standin {

/// A callback that a client left, with its cookie.
struct client_callback {
  pd_callback_t function = nullptr;
  void *cookie = nullptr;
};

/// Idle time of a table.
struct idle_setting {
  bool enabled = false;
  std::uint32_t mode = STANDIN_IDLE_POLL;
  std::uint32_t interval = 0;  // of the ageing
  std::uint32_t largest_ttl = 0;
  std::uint32_t waiting = 0;  // time passed since the last ageing
  client_callback expired;
};

class match_table {
 public:
  match_table(const rows::table_info &row, std::span<const rows::resource_info> resources);
  match_table(const match_table &) = delete;
  match_table &operator=(const match_table &) = delete;

  const rows::table_info &row() const { return *row_; }
  const entry_layout &layout() const { return layout_; }
  const slot_pool &slots() const { return slots_; }
  slot_pool &slots() { return slots_; }

  /// Whether a key record fits the table.
  pd_status_t check_key(const drv_match_spec_t *key) const;
  /// Handle of the entry with the key, or STANDIN_NO_ENTRY. The key has been checked.
  pd_status_t find(const drv_match_spec_t &key, std::uint32_t *handle);
  /// An entry with the key and zeros in everything else. The key has been checked.
  pd_status_t insert(const drv_match_spec_t &key, std::uint32_t *handle);
  /// The handle is of an entry that is not the default.
  void erase(std::uint32_t handle);
  /// The best entry for the key bytes of a packet, or STANDIN_NO_ENTRY.
  pd_status_t lookup(const std::uint8_t *key, std::uint32_t partition, std::uint32_t *handle);

  /// The default entry, made where there is none.
  std::uint32_t make_default();
  void drop_default() { default_handle_ = 0; }
  /// 0 where there is none.
  std::uint32_t default_handle() const { return default_handle_; }

  bool is_default(std::uint32_t handle) const { return handle != 0 && handle == default_handle_; }
  bool holds(std::uint32_t handle) const { return slots_.holds(handle) || is_default(handle); }
  /// The handle is held.
  entry_view at(std::uint32_t handle) const
  {
    return is_default(handle) ? entry_view(default_entry_.get(), layout_) : store_.at(slot_pool::slot_of(handle));
  }

  /// Calls visit(handle, entry) for each entry but the default.
  template <class Visit>
  void each(Visit visit) const
  {
    for (std::uint32_t at = slots_.after(0); at != STANDIN_NO_HANDLE; at = slots_.after(slot_pool::slot_of(at)))
      visit(at, store_.at(slot_pool::slot_of(at)));
  }

  client_callback updated;
  idle_setting idle;
  std::map<std::uint32_t, std::pair<std::uint32_t, std::uint32_t>> properties;

 private:
  /// Entries that share a live mask.
  struct mask_group {
    key_index index;
    std::uint32_t best_priority = 0xffffffff;  // none is smaller; it is not raised by deletes
  };

  /// More bits first, so that the first hit in an lpm table is the longest prefix.
  struct more_bits_first {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };
  using mask_groups = std::map<std::string, mask_group, more_bits_first>;

  const std::uint8_t *mask_of(entry_view entry) const { return layout_.stores_mask ? entry.mask() : live_.data(); }
  /// Leaves the live mask of the key in the scratch bytes; the next two read it.
  std::string_view live_mask(const std::uint8_t *mask);
  std::uint32_t hash_under(std::string_view mask, const std::uint8_t *value, std::uint32_t partition);
  std::uint32_t find_in(const mask_group &group, std::string_view mask, std::uint32_t hash,
                        const drv_match_spec_t &key) const;
  bool same_key(std::uint32_t slot, std::string_view mask, const std::uint8_t *value, std::uint32_t partition) const;

  const rows::table_info *row_;
  std::vector<std::uint8_t> live_;    // bits of the key that the pipeline matches on
  std::uint32_t live_partition_ = 0;  // and those of the partition index; 0 where the table has none
  entry_layout layout_;
  entry_store store_;
  slot_pool slots_;
  mask_groups groups_;
  std::string mask_scratch_;
  std::vector<std::uint8_t> value_scratch_;
  std::unique_ptr<std::byte[]> default_entry_;
  std::uint32_t default_handle_ = 0;
  std::uint32_t defaults_made_ = 0;
};

}  // namespace tarvex::standin
