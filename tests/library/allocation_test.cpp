// Memory from the C library: writes take none, and functions that take some give it back and can do without.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <string>

#include "plausible.h"

extern "C" {
// The C library's own functions, behind the ones below.
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);
}

namespace tarvex::test {

namespace {

// Blocks that the library has taken itself and nobody has freed.
std::array<void *, 64> held;
unsigned taken = 0;
unsigned refused = 0;  // the n-th from now on, it alone; 0 for none

void *noted(void *block)
{
  if (block != nullptr) *std::ranges::find(held, nullptr) = block;
  return block;
}

/// Whether a block is asked for by the library, and whether it is the one to refuse.
bool is_the_librarys() { return call::under_way && driver().inside == 0 && ++taken != 0; }
bool is_refused() { return refused != 0 && --refused == 0; }

struct without_block {
  explicit without_block(unsigned nth) { refused = nth; }
  without_block(const without_block &) = delete;
  without_block &operator=(const without_block &) = delete;
  ~without_block() { refused = 0; }
};

TEST(allocation, writes_take_no_memory)
{
  using enum calls::family_id;
  for (const exported_function &function : calls::functions) {
    const bool entry = function.family >= entry_add && function.family <= reset_default_entry;
    const bool member = function.family >= add_member && function.family <= reset_fallback_member;
    const bool indirect = function.family >= add_indirect_entry && function.family <= set_indirect_default;
    if (!entry && !member && !indirect) continue;
    const unsigned before = taken;
    EXPECT_EQ(outcome_of(function).blocks, 0u) << function.name;
    EXPECT_EQ(taken, before) << function.name;
  }
}

TEST(allocation, every_block_may_be_refused)
{
  unsigned failed = 0;
  for (const exported_function &function : calls::functions) {
    const unsigned before = taken;
    const outcome good = outcome_of(function);
    const unsigned blocks = taken - before;
    EXPECT_TRUE(std::ranges::all_of(held, [](void *block) { return block == nullptr; })) << function.name;
    const bool is_log = function.family == calls::family_id::lifecycle;  // a document short of something
    for (unsigned nth = 1; nth <= blocks; ++nth, ++failed) {
      {
        const without_block gone(nth);
        const outcome bad = outcome_of(function);
        EXPECT_EQ(bad.result, is_log ? 0u : std::uint64_t{PD_STATUS_INVALID_ARG}) << function.name << ' ' << nth;
        EXPECT_TRUE(bad.wrote_nothing() && bad.stop.empty()) << function.name << ' ' << nth;
        EXPECT_EQ(bad.wrong, "") << function.name << ' ' << nth;
      }
      // What found no place in the document is lost.
      for (void *const block : held)
        if (is_log && block != nullptr) std::free(block);
      ASSERT_TRUE(std::ranges::all_of(held, [](void *block) { return block == nullptr; })) << function.name << nth;
      EXPECT_EQ(difference(good, outcome_of(function)), "") << function.name << ' ' << nth;
    }
  }
  std::cout << failed << " blocks of the C library refused\n";
  EXPECT_GT(failed, 0u) << "the C library's allocations do not come by here";
}

}  // namespace

}  // namespace tarvex::test

// Every allocation of the process comes by here.
extern "C" {

void *malloc(std::size_t size)
{
  using namespace tarvex::test;
  if (!is_the_librarys()) return __libc_malloc(size);
  return is_refused() ? nullptr : noted(__libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size)
{
  using namespace tarvex::test;
  if (!is_the_librarys()) return __libc_calloc(count, size);
  return is_refused() ? nullptr : noted(__libc_calloc(count, size));
}

void *realloc(void *block, std::size_t size)
{
  using namespace tarvex::test;
  if (!is_the_librarys()) return __libc_realloc(block, size);
  if (is_refused()) return nullptr;
  void *const moved = __libc_realloc(block, size);
  if (moved != nullptr && block != nullptr) std::ranges::replace(held, block, moved);
  return block != nullptr ? moved : noted(moved);
}

void free(void *block)
{
  using namespace tarvex::test;
  if (block != nullptr) std::ranges::replace(held, block, static_cast<void *>(nullptr));
  __libc_free(block);
}

}  // extern "C"
