// Writes take no memory: neither from the C library nor from the driver's allocator.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>

#include "caller.h"
#include "recorder.h"

extern "C" {
// The C library's own functions, behind the ones below.
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
}

namespace tarvex::test {

namespace {

std::atomic<unsigned> blocks = 0;

TEST(allocation, writes_take_no_memory)
{
  using enum calls::family_id;
  for (const exported_function &function : calls::functions) {
    switch (function.family) {
      case entry_add:
      case entry_modify:
      case entry_modify_by_match_spec:
      case entry_delete:
      case entry_delete_by_match_spec:
      case match_spec_to_entry_hdl:
      case set_default_action:
      case reset_default_entry:
      case add_member:
      case modify_member:
      case del_member:
      case create_group:
      case add_member_to_group:
      case add_indirect_entry:
      case modify_indirect_entry:
      case modify_indirect_entry_by_match_spec:
      case set_indirect_default: break;
      default: continue;
    }
    call call(function);
    driver().reset();
    driver().quiet = true;
    call.counter = [] { return blocks.load(); };
    call.run();
    EXPECT_EQ(call.counted, 0u) << function.name;
    EXPECT_EQ(driver().blocks_taken, 0u) << function.name;
  }
  driver().reset();
  EXPECT_GT(blocks, 0u) << "the C library's allocations do not come by here";
}

}  // namespace

}  // namespace tarvex::test

// Every allocation of the process comes by here.
extern "C" {

void *malloc(std::size_t size)
{
  ++tarvex::test::blocks;
  return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
  ++tarvex::test::blocks;
  return __libc_calloc(count, size);
}

void *realloc(void *block, std::size_t size)
{
  ++tarvex::test::blocks;
  return __libc_realloc(block, size);
}

}  // extern "C"
