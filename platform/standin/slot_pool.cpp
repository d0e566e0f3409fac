// Handles for things that come and go.
//
// SPDX-License-Identifier: Apache-2.0
#include "slot_pool.h"

#include <algorithm>

namespace tarvex::standin {

pd_status_t slot_pool::prepare()
{
  if (size_ >= std::min(limit_, most_slots)) return STANDIN_FULL;
  if (free_.empty()) {
    uses_.reserve(uses_.size() + 1 > uses_.capacity() ? 2 * uses_.size() + 8 : 0);
    free_.reserve(uses_.capacity());  // so that giving back cannot fail
    uses_.push_back(0);
    free_.push_back(static_cast<std::uint32_t>(uses_.size()));
  }
  return success;
}

std::uint32_t slot_pool::take()
{
  const std::uint32_t slot = free_.back();
  free_.pop_back();
  uses_[slot - 1] |= in_use;
  ++size_;
  return handle_at(slot);
}

void slot_pool::give_back(std::uint32_t slot)
{
  free_.push_back(slot);
  std::uint8_t &uses = uses_[slot - 1];
  uses = static_cast<std::uint8_t>((uses + 1) & ~in_use);
  --size_;
}

std::uint32_t slot_pool::after(std::uint32_t slot) const
{
  for (; slot < uses_.size(); ++slot)
    if ((uses_[slot] & in_use) != 0) return handle_at(slot + 1);
  return STANDIN_NO_HANDLE;
}

pd_status_t slot_pool::first(std::uint32_t *handle) const
{
  *handle = after(0);
  return require(*handle != STANDIN_NO_HANDLE, STANDIN_END);
}

pd_status_t slot_pool::next(std::uint32_t handle, std::uint32_t n, std::uint32_t *handles) const
{
  std::uint32_t found = 0;
  for (std::uint32_t at = handle; found < n; ++found) {
    at = after(slot_of(at));
    if (at == STANDIN_NO_HANDLE) break;
    handles[found] = at;
  }
  std::fill(handles + found, handles + n, STANDIN_NO_HANDLE);
  return require(found != 0 || n == 0, STANDIN_END);
}

}  // namespace tarvex::standin
