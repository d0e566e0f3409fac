// Answers made of bytes.
//
// SPDX-License-Identifier: Apache-2.0
#include "hostile_driver.h"

#include <algorithm>
#include <cstdlib>

#include "pd_calls.h"

namespace tarvex::fuzz {

namespace {

constexpr std::size_t read_data_bytes = 28;  // room for action data in every read

std::span<const std::uint8_t> behind(const std::uint8_t *pointer, std::size_t count)
{
  return pointer != nullptr ? std::span(pointer, count) : std::span<const std::uint8_t>();
}

void keep(bytes &to, std::span<const std::uint8_t> from) { to.assign(from.begin(), from.end()); }

}  // namespace

hostile_driver &driver()
{
  thread_local hostile_driver the_driver;
  return the_driver;
}

void hostile_driver::begin(std::span<const std::uint8_t> answers, std::vector<std::uint32_t> handles,
                           register_shape shape)
{
  input_ = byte_source(answers);
  handles_ = std::move(handles);
  handles_.insert(handles_.end(), {0, 0xffffffff});
  shape_ = shape;
  shape_told_ = false;
}

std::size_t hostile_driver::end()
{
  const std::size_t left = blocks_.size();
  for (const auto &[block, size] : blocks_) std::free(block);
  blocks_.clear();
  lists_.clear();
  memory_ = 0;
  return left;
}

void *hostile_driver::take(std::size_t count, std::size_t size)
{
  if (count > most_memory || count * size > most_memory - memory_) return nullptr;
  if (input_.now_and_then(1)) return nullptr;
  void *const block = std::calloc(count, size);
  blocks_[block] = count * size;
  memory_ += count * size;
  return block;
}

void hostile_driver::give_back(void *block)
{
  const auto found = blocks_.find(block);
  if (found == blocks_.end()) std::abort();  // none of ours, or given back twice
  memory_ -= found->second;
  blocks_.erase(found);
  std::free(block);
}

reply::reply(const driver::call_row &row) : row_(row) { seen().add(row.name); }

std::uint64_t reply::status() { return input().now_and_then(32) ? input().number<std::uint32_t>() : 0; }

void reply::to(std::uint32_t *number)
{
  last_count_ = number;
  if (number == nullptr || input().now_and_then(16)) return;  // not written
  *number = input().now_and_then(64) ? input().number<std::uint32_t>() : input().one_of(driver().handles_);
}

void reply::to(std::uint64_t *number) { fill(number, sizeof *number); }

// Rows first, then values: nothing else is asked for in this type.
void reply::to(std::int32_t *number)
{
  *number = driver().shape_told_ ? driver().shape_.values : driver().shape_.rows;
  driver().shape_told_ = true;
}

void reply::to(drv_match_spec_t *key)
{
  seen().add_record(key->partition_index);
  seen().add_record(key->key_bits);
  seen().add_record(key->priority);
  if (!fills()) {
    driver().key = *key;
    keep(driver().key_value, behind(key->key_value, key->key_bytes));
    keep(driver().key_mask, behind(key->key_mask, key->key_bytes));
    seen().add(driver().key_value);
    seen().add(driver().key_mask);
    return;
  }
  if (key->key_value != nullptr) fill(key->key_value, key->key_bytes);
  if (key->key_mask != nullptr) fill(key->key_mask, key->key_bytes);
  if (input().now_and_then(64)) key->key_value = nullptr;
  if (input().now_and_then(32)) key->key_mask = nullptr;
  if (input().now_and_then(64)) key->key_bits = input().number<std::uint16_t>();
  if (input().now_and_then(64)) key->key_bytes = input().number<std::uint16_t>();
  key->partition_index = input().number<std::uint32_t>();
  key->priority = input().number<std::uint32_t>();
}

void reply::fill_data(drv_act_data_t &data)
{
  seen().add_record(data.data_bytes);
  if (data.data != nullptr) fill(data.data, read_data_bytes);
  if (input().now_and_then(64)) data.data = nullptr;
  if (input().now_and_then(64)) data.data_bits = input().number<std::uint16_t>();
  if (input().now_and_then(64)) data.data_bytes = input().number<std::uint16_t>();
}

void reply::to(drv_act_data_t *data) { fill_data(*data); }

void reply::to(drv_action_spec_t *action)
{
  if (!fills()) {
    driver().action = *action;
    keep(driver().data, behind(action->act_data.data, action->act_data.data_bytes));
    drv_action_spec_t shown = *action;
    shown.act_data.data = nullptr;
    seen().add_record(shown);
    seen().add(driver().data);
    return;
  }
  fill_data(action->act_data);
  constexpr std::uint8_t kinds[] = {DRV_ACT_DATA, DRV_ACT_MEMBER, DRV_ACT_GROUP};
  action->act_kinds = input().now_and_then(32) ? input().number<std::uint8_t>() : input().one_of(kinds);
  fill(&action->mbr_hdl, sizeof action->mbr_hdl);
  fill(&action->grp_hdl, sizeof action->grp_hdl);
  action->res_count = input().now_and_then(16) ? input().number<std::uint32_t>() : input().in_range(0u, 5u);
  for (std::size_t i = 0; i < std::min<std::size_t>(action->res_count, DRV_ACTION_MAX_RES); ++i) {
    to(&action->res[i].res_hdl);
    fill(&action->res[i].res_index, sizeof action->res[i].res_index);
    action->res[i].res_tag = input().in_range(0u, 3u);
  }
}

// Slots are written where the library has asked for the shape and made room for it.
void reply::to(drv_stful_query_t *queries)
{
  const std::uint64_t count = argument().room == driver::no_argument ? 1 : numbers_[argument().room];
  for (std::uint64_t k = 0; k < count && !input().empty(); ++k) {
    for (std::int32_t i = 0; driver().shape_told_ && i < driver().shape_.rows; ++i)
      for (std::int32_t j = 0; j < driver().shape_.values; ++j) fill(&queries[k].rows[i][j], 1);
    queries[k].row_count = input().number<std::int16_t>();
    queries[k].values_per_row = input().number<std::int16_t>();
    if (input().yes()) queries[k].rows = nullptr;
  }
}

void reply::to(pd_res_spec_t **list)
{
  const std::uint32_t count = input().in_range(0u, 5u);
  *last_count_ = count;
  auto &made = driver().lists_.emplace_back(new pd_res_spec_t[count]());
  for (std::uint32_t i = 0; i < count; ++i) {
    to(&made[i].res_hdl);
    fill(&made[i].res_index, sizeof made[i].res_index);
  }
  *list = input().now_and_then(64) ? nullptr : made.get();
}

void reply::to(void *memory)
{
  if (argument().kind == driver::value_kind::capture) fill(memory, 256);
  if (argument().kind == driver::value_kind::trigger)
    seen().add(behind(static_cast<std::uint8_t *>(memory), calls::pd::snapshot_field_bytes));
}

template <>
void *driver_call<&bf_sys_calloc>(size_t count, size_t size)
{
  return fuzz::driver().take(count, size);
}

template <>
void driver_call<&bf_sys_free>(void *block)
{
  fuzz::driver().give_back(block);
}

}  // namespace tarvex::fuzz

using tarvex::fuzz::driver_call;

#include "driver_definitions.inc"
