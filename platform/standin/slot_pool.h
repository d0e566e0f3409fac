// Handles for things that come and go: a slot number in the low 24 bits, from 1, and above it how often the slot was
// given out before, so that a handle that was given back is known as stale.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "status.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace tarvex::standin {

class slot_pool {
 public:
  static constexpr std::uint32_t most_slots = 0xfffffe;

  static std::uint32_t slot_of(std::uint32_t handle) { return handle & 0xffffff; }

  /// Status of one more slot: STANDIN_FULL at the limit. After success the next `take` cannot fail.
  pd_status_t prepare();
  std::uint32_t take();
  void give_back(std::uint32_t slot);

  bool holds(std::uint32_t handle) const
  {
    const std::uint32_t slot = slot_of(handle);
    return slot - 1 < uses_.size() && uses_[slot - 1] == (handle >> 24 | in_use);
  }

  std::uint32_t handle_at(std::uint32_t slot) const
  {
    return static_cast<std::uint32_t>(uses_[slot - 1] & ~in_use) << 24 | slot;
  }

  /// Handle of the first slot in use behind a slot, 0 from the start; STANDIN_NO_HANDLE where there is none.
  std::uint32_t after(std::uint32_t slot) const;

  pd_status_t first(std::uint32_t *handle) const;
  /// The next n handles behind one; what is left of the array is filled up with STANDIN_NO_HANDLE.
  pd_status_t next(std::uint32_t handle, std::uint32_t n, std::uint32_t *handles) const;

  std::uint32_t size() const { return size_; }
  /// Highest slot that was ever made ready.
  std::size_t reach() const { return uses_.size(); }
  void limit(std::uint32_t count) { limit_ = count; }

 private:
  static constexpr std::uint8_t in_use = 0x80;

  std::vector<std::uint8_t> uses_;  // of each slot: times given out, modulo 128, and whether it is in use
  std::vector<std::uint32_t> free_;
  std::uint32_t size_ = 0;
  std::uint32_t limit_ = most_slots;
};

/// A pool with a value for each handle.
template <class T>
class slot_map {
 public:
  slot_pool slots;

  pd_status_t add(T value, std::uint32_t *handle)
  {
    if (const pd_status_t status = slots.prepare()) return status;
    if (values_.size() < slots.reach()) values_.resize(slots.reach());
    *handle = slots.take();
    values_[slot_pool::slot_of(*handle) - 1] = std::move(value);
    return success;
  }

  T *find(std::uint32_t handle) { return slots.holds(handle) ? &values_[slot_pool::slot_of(handle) - 1] : nullptr; }

  void erase(std::uint32_t handle)
  {
    values_[slot_pool::slot_of(handle) - 1] = T{};
    slots.give_back(slot_pool::slot_of(handle));
  }

  /// Calls visit(handle, value) for each, in the order of the walk.
  template <class Visit>
  void each(Visit visit)
  {
    for (std::uint32_t at = slots.after(0); at != STANDIN_NO_HANDLE; at = slots.after(slot_pool::slot_of(at)))
      visit(at, values_[slot_pool::slot_of(at) - 1]);
  }

 private:
  std::vector<T> values_;
};

}  // namespace tarvex::standin
