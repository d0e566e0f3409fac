// Memory from the C library: writes take none, and functions that take some give it back and can do without.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <string>

#include "caller.h"
#include "recorder.h"
#include "tarvex_pd/tarvex_pd.h"

extern "C" {
// The C library's own functions, behind the ones below.
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);
}

namespace tarvex::test {

namespace {

std::atomic<unsigned> blocks = 0;
std::atomic<unsigned> blocks_freed = 0;
std::atomic<bool> refusal_is_due = false;  // in the call to come
std::atomic<bool> refuse_next = false;

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

// The hash functions by name work on copies of the records.
TEST(allocation, hash_functions_by_name_give_back_and_do_without)
{
  using enum argument_kind;
  struct example {
    std::uint32_t count;
    bool refused;
    std::array<std::uint32_t, 3> fields;
    std::uint32_t list;  // of the driver
    std::uint32_t status;
  };
  constexpr std::uint32_t own = 0x2100003c, invalid = PD_STATUS_INVALID_ARG;
  const example examples[] = {
      {3, false, {0, 2, 1}, own, 0},
      {3, false, {0, 2, 1}, 7, invalid},
      {3, false, {1, 3, 1}, own, invalid},
      {0, false, {0, 2, 1}, own, invalid},
      {3, true, {0, 2, 1}, own, invalid},
      {0x10000001, false, {0, 2, 1}, own, invalid},  // 16 bytes of each make 16 when cut to 32 bits
      {0x80000000, false, {0, 2, 1}, own, invalid},
      {0xffffffff, false, {0, 2, 1}, own, invalid},
  };
  for (const bool is_set : {true, false}) {
    for (const example &example : examples) {
      if (!is_set && example.fields[1] == 3) continue;  // names no fields
      const char calculation[] = "hashOuterIpv4Hdr";
      hash_calc_attr_t attrs[3] = {};
      for (std::size_t i = 0; i < 3; ++i) attrs[i].field = example.fields[i];
      call call(function_named(std::string("p4_pd_tarvex_switch_hash_calc_input_field_attribute_") +
                               (is_set ? "set" : "get")));
      call.give(calc_name, reinterpret_cast<std::uint64_t>(calculation));
      call.give(is_set ? hash_attr_count : hash_attr_max, example.count);
      if (is_set) call.give(hash_attrs, reinterpret_cast<std::uint64_t>(attrs));
      unsigned driver_calls = 0;
      driver().reset();
      driver().answer = [&](const recorded_call &recorded) {
        ++driver_calls;
        if (!recorded.function.ends_with("_set")) recorded.at<std::uint32_t>(3) = example.list;
        return 0;
      };
      refusal_is_due = example.refused;
      call.counter = [] {
        driver().calls = std::vector<recorded_call>();  // the recorder's blocks are none of the library's
        refuse_next = refusal_is_due.exchange(false);
        return blocks - blocks_freed;
      };
      EXPECT_EQ(call.run(), example.status) << call.function().name << ", " << example.count;
      EXPECT_EQ(call.counted, 0u) << call.function().name << " keeps a block";
      if (!example.refused && example.count <= 3) continue;
      EXPECT_EQ(driver_calls, 0u) << call.function().name << ", " << example.count;
      EXPECT_EQ(call.unexpected_bytes(), "") << call.function().name << ", " << example.count;
    }
  }
}

}  // namespace

}  // namespace tarvex::test

// Every allocation of the process comes by here.
extern "C" {

void *malloc(std::size_t size)
{
  if (tarvex::test::refuse_next.exchange(false)) return nullptr;
  ++tarvex::test::blocks;
  return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
  if (tarvex::test::refuse_next.exchange(false)) return nullptr;
  ++tarvex::test::blocks;
  return __libc_calloc(count, size);
}

void *realloc(void *block, std::size_t size)
{
  ++tarvex::test::blocks;
  if (block != nullptr) ++tarvex::test::blocks_freed;
  return __libc_realloc(block, size);
}

void free(void *block)
{
  if (block != nullptr) ++tarvex::test::blocks_freed;
  __libc_free(block);
}

}  // extern "C"
