// The system allocator of the driver, with a count of live blocks and a failure on demand.
//
// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <cstdlib>

#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace {

std::atomic<std::size_t> live_blocks{0};
std::atomic<std::uint32_t> calls_to_failure{0};  // 0: none

/// Counts a call down; true for the one that is to fail.
bool fails_now()
{
  std::uint32_t left = calls_to_failure.load(std::memory_order_relaxed);
  while (left != 0)
    if (calls_to_failure.compare_exchange_weak(left, left - 1)) return left == 1;
  return false;
}

}  // namespace

void *bf_sys_calloc(size_t count, size_t size)
{
  if (fails_now()) return nullptr;
  void *const block = std::calloc(count, size);
  if (block != nullptr) ++live_blocks;
  return block;
}

void bf_sys_free(void *block)
{
  if (block == nullptr) return;
  --live_blocks;
  std::free(block);
}

void standin_fail_calloc(uint32_t nth) { calls_to_failure = nth; }

size_t standin_live_blocks(void) { return live_blocks; }
