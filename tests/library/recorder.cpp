// The recorder's copies, and what every imported function does here.
//
// SPDX-License-Identifier: Apache-2.0
#include "recorder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>
#include <utility>

#include "call_table.h"
#include "driver_functions.h"

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
  static std::array<char, 64> places;
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
  return reinterpret_cast<std::uint64_t>(
      state_of_profile(states_made++ % std::max<std::size_t>(calls::profiles.size(), 1)));
}

namespace {

/// What every imported function does here.
template <auto Function, typename... Arguments>
driver::result_of<Function> driver_call(Arguments... arguments)
{
  return recorded<driver::result_of<Function>>(driver::row_of<Function>.name.data(), arguments...);
}

template <>
void *driver_call<&bf_sys_calloc>(size_t count, size_t size)
{
  recorder &here = test::driver();
  const recording inside;
  constexpr size_t largest = size_t{1} << 24;  // ends a request for a negative count before the sanitizers do
  here.asked_blocks.push_back({count, size, nullptr});
  if (here.refused_block != 0 && --here.refused_block == 0) return nullptr;
  // Resources, rows and register values of 8 bytes, and queries: anything else is a mistake.
  if ((size != 8 && size != sizeof(drv_stful_query_t)) || count > largest / size) return nullptr;
  ++here.blocks_taken;
  void *const block = *live_blocks.insert(std::calloc(count, size)).first;
  here.asked_blocks.back().address = block;
  return block;
}

template <>
void driver_call<&bf_sys_free>(void *block)
{
  const recording inside;
  if (block != nullptr) ++test::driver().blocks_given_back;
  test::driver().returned_blocks.push_back(block);
  live_blocks.erase(block);
  std::free(block);
}

}  // namespace
}  // namespace tarvex::test

using tarvex::test::driver_call;

// The whole register of a device, as bits above it must not reach a driver.
#include "driver_registers.inc"
