// Resources and services as the driver knows them: their handles, and the bytes of their records.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "reference.h"

namespace tarvex::test {

using enum argument_kind;

namespace {

// A direct resource goes by the handle of its match table.
std::uint32_t handle_of(const calls::resource_info &resource)
{
  return resource.direct ? resource.table : resource.handle;
}

constexpr std::size_t meter_places[] = {16, 24, 40, 48};  // of rate and burst, twice

void put(bytes &record, std::size_t at, std::uint64_t number, std::size_t size)
{
  std::memcpy(record.data() + at, &number, size);
}

bytes stat_record(const bytes &packets_and_bytes)
{
  bytes record = packets_and_bytes;
  std::rotate(record.begin(), record.begin() + 8, record.end());
  return record;
}

bytes meter_record(const call &call)
{
  const auto &given = call.memory(meter_value);
  const std::string_view name = call.function().name;
  const std::uint64_t unit = name.ends_with("_packets_meter_set") ? 1 : 0;
  bytes record(56);
  put(record, 0, number_at(given, 16, 4), 4);
  put(record, 8, unit, 4);
  put(record, 32, unit, 4);
  for (std::size_t i = 0; i < 4; ++i) put(record, meter_places[i], number_at(given, 4 * i, 4), 8);
  return record;
}

bytes attached(std::uint32_t handle, const bytes &value)
{
  bytes record(72);
  put(record, 0, handle, 4);
  std::ranges::copy(value, record.begin() + 8);
  put(record, 64, 1, 4);
  return record;
}

bytes first_bytes(const call &call, argument_kind kind, std::size_t size)
{
  const auto &memory = call.memory(kind);
  return bytes(memory.begin(), memory.begin() + static_cast<std::ptrdiff_t>(size));
}

// A direct meter by its own handle, which its resource record holds.
std::uint32_t meter_of(const call &call) { return call.function().resource->handle; }

}  // namespace

recorded_argument resource_argument(derived kind, const call &call)
{
  const auto parser = [&](std::size_t at, std::size_t size) { return number_at(call.memory(parser_tgt), at, size); };
  const auto for_number_0 = [&](std::uint32_t handle) { return call.value(hash_number) == 0 ? handle : 0; };
  switch (kind) {
    case derived::one: return {1, {}};
    case derived::untouched_target: return {call.value(dev_tgt), {}};
    case derived::target_device: return {call.value(dev_tgt) & 0xffff'ffff, {}};
    case derived::resource: return {handle_of(*call.function().resource), {}};
    case derived::hardware_bit: return {call.value(read_flags) & 1, {}};
    case derived::stat_record: return {anywhere, stat_record(first_bytes(call, counter_value, 16))};
    case derived::stat_answer: return {anywhere, {}};
    case derived::meter_record: return {anywhere, meter_record(call)};
    case derived::meter_answer: return {anywhere, bytes(56)};
    case derived::meter_resource: return {anywhere, attached(meter_of(call), meter_record(call))};
    case derived::wred_record: return {anywhere, first_bytes(call, wred_value, 16)};
    case derived::wred_answer: return {anywhere, bytes(16)};
    case derived::register_slot: {
      bytes slot(8);
      slot[0] = call.memory(register_value)[0] != 0;
      return {anywhere, slot};
    }
    case derived::register_resource:
      return {anywhere,
              attached(static_cast<std::uint32_t>(call.value(index_handle)), first_bytes(call, register_word, 8))};
    case derived::digest: return {calls::digests[0].handle, {}};
    case derived::value_set: return {calls::value_sets[0].handle, {}};
    case derived::parser_device: return {parser(0, 4), {}};
    case derived::parser_scope: return {parser(4, 4), {}};
    case derived::parser_index: return {parser(8, 2), {}};
    case derived::parser_sub_index: return {parser(10, 1), {}};
    case derived::calc: return {call.function().hash->handle, {}};
    case derived::input_list: return {for_number_0(call.function().hash->first_input), {}};
    case derived::algorithm: {
      const auto algorithms = call.function().hash->algorithms;
      const std::uint64_t number = call.value(hash_number);
      return {number < algorithms.size() ? algorithms[number] : 0, {}};
    }
    default: std::abort();
  }
}

std::size_t answer_size(const term &term)
{
  if (term.from_caller) return term.kind == seed_out ? 8 : 0;
  if (term.other == derived::meter_answer) return 56;
  return term.other == derived::stat_answer || term.other == derived::wred_answer ? 16 : 0;
}

bytes value_read(derived kind, const bytes &record)
{
  if (kind == derived::stat_answer) return stat_record(record);
  if (kind != derived::meter_answer) return record;
  bytes value(20);
  for (std::size_t i = 0; i < 4; ++i) put(value, 4 * i, number_at(record, meter_places[i], 4), 4);
  put(value, 16, number_at(record, 0, 4), 4);
  return value;
}

}  // namespace tarvex::test
