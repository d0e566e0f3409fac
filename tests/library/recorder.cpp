// The recorder's copies and its allocator. The imported functions themselves are made from their declarations, at build
// time.
//
// SPDX-License-Identifier: Apache-2.0
#include "recorder.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>
#include <utility>

namespace tarvex::test {

namespace {

std::mutex one_at_a_time;

// Blocks that nobody has given back: a call that was stopped leaves some. They go with the next reset.
std::set<void *> live_blocks;

// Appends `count` bytes behind a pointer, if there is one.
void append(bytes &to, const std::uint8_t *from, std::size_t count)
{
  if (from != nullptr) to.insert(to.end(), from, from + count);
}

template <typename Record>
bytes plain_copy(const Record &record)
{
  bytes copy(sizeof record);
  std::memcpy(copy.data(), &record, sizeof record);
  return copy;
}

void flag_pointer(bytes &copy, std::size_t offset, const void *pointer)
{
  const std::uint64_t flag = pointer != nullptr ? 1 : 0;
  std::memcpy(copy.data() + offset, &flag, sizeof flag);
}

}  // namespace

bytes copy_of(const drv_match_spec_t *key)
{
  bytes copy = plain_copy(*key);
  flag_pointer(copy, offsetof(drv_match_spec_t, key_value), key->key_value);
  flag_pointer(copy, offsetof(drv_match_spec_t, key_mask), key->key_mask);
  append(copy, key->key_value, key->key_bytes);
  append(copy, key->key_mask, key->key_bytes);
  return copy;
}

bytes copy_of(const drv_action_spec_t *action)
{
  bytes copy = plain_copy(*action);
  flag_pointer(copy, offsetof(drv_action_spec_t, act_data.data), action->act_data.data);
  append(copy, action->act_data.data, action->act_data.data_bytes);
  return copy;
}

bytes copy_of(const drv_act_data_t *data)
{
  bytes copy = plain_copy(*data);
  flag_pointer(copy, offsetof(drv_act_data_t, data), data->data);
  append(copy, data->data, data->data_bytes);
  return copy;
}

bytes copy_of(const char *text) { return bytes(text, text + std::strlen(text)); }

recorder &driver()
{
  static recorder the_driver;
  return the_driver;
}

ms_state *state_of_profile(std::size_t index)
{
  static std::array<char, 5> places;
  return reinterpret_cast<ms_state *>(&places.at(index));
}

void recorder::reset()
{
  const unsigned under_way = inside;
  for (void *block : live_blocks) std::free(block);
  live_blocks.clear();
  *this = recorder();
  inside = under_way;
}

std::uint64_t recorder::note(recorded_call call)
{
  const std::lock_guard lock(one_at_a_time);
  calls.push_back(std::move(call));
  if (answer) return answer(calls.back());
  if (calls.back().function != "p4_pd_ms_init_state") return 0;
  static std::size_t states_made = 0;
  return reinterpret_cast<std::uint64_t>(state_of_profile(states_made++ % 5));
}

}  // namespace tarvex::test

extern "C" {

void *bf_sys_calloc(size_t count, size_t size)
{
  auto &driver = tarvex::test::driver();
  const tarvex::test::recording inside;
  constexpr size_t largest = size_t{1} << 24;  // ends a request for a negative count before the sanitizers do
  if (driver.refused_block != 0 && --driver.refused_block == 0) return nullptr;
  // Resources, rows and register values of 8 bytes, and queries: anything else is a mistake.
  if ((size != 8 && size != sizeof(drv_stful_query_t)) || count > largest / size) return nullptr;
  ++driver.blocks_taken;
  return *tarvex::test::live_blocks.insert(std::calloc(count, size)).first;
}

void bf_sys_free(void *block)
{
  const tarvex::test::recording inside;
  if (block != nullptr) ++tarvex::test::driver().blocks_given_back;
  tarvex::test::live_blocks.erase(block);
  std::free(block);
}

}  // extern "C"
