// One match table of a device.
//
// SPDX-License-Identifier: Apache-2.0
#include "match_table.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <span>

namespace tarvex::standin {
namespace {

/// Default entries have handles of their own: this bit, which no slot's handle has, and a running number.
constexpr std::uint32_t default_bit = 0x80000000;

unsigned count_bits(std::string_view mask)
{
  unsigned bits = 0;
  for (const char each : mask) bits += static_cast<unsigned>(std::popcount(static_cast<std::uint8_t>(each)));
  return bits;
}

}  // namespace

bool match_table::more_bits_first::operator()(std::string_view a, std::string_view b) const
{
  const unsigned bits_a = count_bits(a);
  const unsigned bits_b = count_bits(b);
  return bits_a != bits_b ? bits_a > bits_b : a < b;
}

match_table::match_table(const rows::table_info &row, std::span<const rows::resource_info> resources)
    : row_(&row),
      live_(row.key_bytes),
      layout_(row, resources),
      store_(layout_),
      mask_scratch_(row.key_bytes, '\0'),
      value_scratch_(row.key_bytes)
{
  for (const rows::field_info &field : row.fields) {
    const std::span bits = field.live;
    if (field.match == match_kind::partition) {
      live_partition_ = static_cast<std::uint32_t>(bits[14] << 8 | bits[15]);
    } else {
      std::ranges::copy(bits.last(field.key_size), live_.begin() + field.key_at);
    }
  }
}

pd_status_t match_table::check_key(const drv_match_spec_t *key) const
{
  if (key == nullptr) return STANDIN_BAD_ARGUMENT;
  if (row_->kind == table_kind::keyless || key->key_bits != row_->key_bits || key->key_bytes != row_->key_bytes)
    return STANDIN_BAD_KEY;
  if (key->key_value == nullptr || key->key_mask == nullptr) return STANDIN_BAD_ARGUMENT;
  if (live_partition_ == 0 && key->partition_index != 0) return STANDIN_BAD_KEY;
  const bool full = std::all_of(key->key_mask, key->key_mask + key->key_bytes, [](auto byte) { return byte == 0xff; });
  return require(layout_.stores_mask || full, STANDIN_BAD_KEY);
}

std::string_view match_table::live_mask(const std::uint8_t *mask)
{
  for (std::size_t i = 0; i < mask_scratch_.size(); ++i) mask_scratch_[i] = static_cast<char>(mask[i] & live_[i]);
  return mask_scratch_;
}

std::uint32_t match_table::hash_under(std::string_view mask, const std::uint8_t *value, std::uint32_t partition)
{
  for (std::size_t i = 0; i < mask.size(); ++i)
    value_scratch_[i] = static_cast<std::uint8_t>(value[i] & static_cast<std::uint8_t>(mask[i]));
  return hash_key(value_scratch_.data(), value_scratch_.size(), partition & live_partition_);
}

bool match_table::same_key(std::uint32_t slot, std::string_view mask, const std::uint8_t *value,
                           std::uint32_t partition) const
{
  const entry_view entry = store_.at(slot);
  if (((entry.head().partition ^ partition) & live_partition_) != 0) return false;
  const std::uint8_t *own = entry.value();
  for (std::size_t i = 0; i < mask.size(); ++i)
    if (((own[i] ^ value[i]) & static_cast<std::uint8_t>(mask[i])) != 0) return false;
  return true;
}

std::uint32_t match_table::find_in(const mask_group &group, std::string_view mask, std::uint32_t hash,
                                   const drv_match_spec_t &key) const
{
  const bool by_priority = row_->kind == table_kind::ternary;
  return group.index.find(hash, [&](std::uint32_t slot) {
    return (!by_priority || store_.at(slot).head().priority == key.priority) &&
           same_key(slot, mask, key.key_value, key.partition_index);
  });
}

pd_status_t match_table::find(const drv_match_spec_t &key, std::uint32_t *handle)
{
  const std::string_view mask = live_mask(key.key_mask);
  const auto group = groups_.find(mask);
  if (group == groups_.end()) return STANDIN_NO_ENTRY;
  const std::uint32_t slot = find_in(group->second, mask, hash_under(mask, key.key_value, key.partition_index), key);
  if (slot == 0) return STANDIN_NO_ENTRY;
  *handle = slots_.handle_at(slot);
  return success;
}

pd_status_t match_table::insert(const drv_match_spec_t &key, std::uint32_t *handle)
{
  const std::string_view mask = live_mask(key.key_mask);
  const std::uint32_t hash = hash_under(mask, key.key_value, key.partition_index);
  auto group = groups_.find(mask);
  if (group != groups_.end() && find_in(group->second, mask, hash, key) != 0) return STANDIN_EXISTS;

  // All that may fail comes first; a group left empty by a failure is found again by the next entry under its mask.
  if (const pd_status_t status = slots_.prepare()) return status;
  store_.prepare(slots_.reach());
  if (group == groups_.end()) group = groups_.emplace(mask, mask_group{}).first;
  group->second.index.prepare();

  *handle = slots_.take();
  const std::uint32_t slot = slot_pool::slot_of(*handle);
  store_.clear(slot);
  const entry_view entry = store_.at(slot);
  entry.head().priority = key.priority;
  entry.head().partition = key.partition_index;
  std::memcpy(entry.value(), key.key_value, key.key_bytes);
  if (layout_.stores_mask) std::memcpy(entry.mask(), key.key_mask, key.key_bytes);
  group->second.index.put(hash, slot);
  group->second.best_priority = std::min(group->second.best_priority, key.priority);
  return success;
}

void match_table::erase(std::uint32_t handle)
{
  const std::uint32_t slot = slot_pool::slot_of(handle);
  const entry_view entry = store_.at(slot);
  const std::string_view mask = live_mask(mask_of(entry));
  const auto group = groups_.find(mask);
  group->second.index.remove(hash_under(mask, entry.value(), entry.head().partition), slot);
  if (group->second.index.size() == 0) groups_.erase(group);
  slots_.give_back(slot);
}

pd_status_t match_table::lookup(const std::uint8_t *key, std::uint32_t partition, std::uint32_t *handle)
{
  std::uint32_t best = 0;
  std::uint32_t best_priority = 0xffffffff;
  for (const auto &[mask, group] : groups_) {
    if (best != 0 && group.best_priority >= best_priority) continue;
    group.index.find(hash_under(mask, key, partition), [&](std::uint32_t slot) {
      const std::uint32_t priority = store_.at(slot).head().priority;
      if ((best == 0 || priority < best_priority) && same_key(slot, mask, key, partition)) {
        best = slot;
        best_priority = priority;
      }
      return false;  // others of the same key may have a better priority
    });
    if (best != 0 && row_->kind != table_kind::ternary) break;
  }
  if (best == 0) return STANDIN_NO_ENTRY;
  *handle = slots_.handle_at(best);
  return success;
}

std::uint32_t match_table::make_default()
{
  if (default_handle_ != 0) return default_handle_;
  if (default_entry_ == nullptr) default_entry_ = std::make_unique<std::byte[]>(layout_.size);
  std::memset(default_entry_.get(), 0, layout_.size);
  defaults_made_ = defaults_made_ % 0x7fffffe + 1;
  return default_handle_ = default_bit | defaults_made_;
}

}  // namespace tarvex::standin
