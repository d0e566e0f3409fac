// What stands in front of every driver call: the listener, and the refusal that a test asked for.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

#include "tarvex_platform/driver.h"

namespace tarvex::standin {

namespace detail {
extern std::atomic<bool> gate_watched;  // whether there is a listener or a refusal
pd_status_t announce_watched(const char *function, std::uint32_t handle);
}  // namespace detail

/// Tells the listener of a call. A status other than 0 is what the call must answer, having done nothing.
inline pd_status_t announce(const char *function, std::uint32_t handle)
{
  if (!detail::gate_watched.load(std::memory_order_relaxed)) return BF_SUCCESS;
  return detail::announce_watched(function, handle);
}

/// Takes the listener off and disarms the refusal.
void reset_gate();

}  // namespace tarvex::standin
