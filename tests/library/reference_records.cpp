// Bytes of keys and actions, by the rules of the driver's records.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>

#include "reference.h"

namespace tarvex::test {

namespace {

using calls::match_kind;
using calls::table_kind;

std::size_t bytes_for(std::size_t bits) { return (bits + 7) / 8; }

// Most significant byte first; what does not fit falls off. Fields of 16 bytes are in network order already.
bytes field_bytes(std::span<const std::uint8_t> structure, std::size_t member, std::size_t member_size,
                  std::size_t bits)
{
  const std::size_t size = bytes_for(bits);
  if (size == 16)
    return bytes(structure.begin() + static_cast<std::ptrdiff_t>(member),
                 structure.begin() + static_cast<std::ptrdiff_t>(member + 16));
  bytes result;
  const std::uint64_t number = number_at(structure, member, member_size);
  for (std::size_t i = size; i-- > 0;) result.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
  return result;
}

// The inverse.
void put_field(bytes &structure, std::size_t member, const std::uint8_t *from, std::size_t bits)
{
  const std::size_t size = bytes_for(bits);
  for (std::size_t i = 0; i < size; ++i) structure.at(member + (size == 16 ? i : size - 1 - i)) = from[i];
}

std::size_t prefix_of_mask(const std::uint8_t *mask, std::size_t width)
{
  for (std::size_t length = width; length > 0; --length) {
    const std::size_t bit = length - 1;  // counted from the most significant
    if ((mask[bit / 8] >> (7 - bit % 8) & 1) != 0) return length;
  }
  return 0;
}

enum class write { add, modify, by_default };

struct named_resource {
  std::uint32_t handle;
  std::uint32_t index;
  std::uint32_t tag;
};

// What an entry write tells the driver of resources; the direct meter stands apart.
std::vector<named_resource> resources_of(const call &call, write how)
{
  using calls::resource_form;
  std::vector<named_resource> named;
  for (const calls::resource_use_info &resource : call.function().use->resources) {
    switch (resource.form) {
      case resource_form::direct_counter:
        if (how != write::modify) named.push_back({resource.handle, 0, 1});
        break;
      case resource_form::indexed: {
        const auto &params = call.function().action->params;
        const auto index = std::ranges::find(params, true, &calls::param_info::resource_index);
        const auto cell = number_at(call.memory(argument_kind::action_spec), index->member, 4);
        named.push_back({resource.handle, static_cast<std::uint32_t>(cell), 1});
        break;
      }
      case resource_form::detached: named.push_back({resource.handle, 0, 2}); break;
      default: named.push_back({resource.handle, 0, 1});
    }
  }
  return named;
}

// The direct meter, with a value or without.
void put_direct_meter(drv_action_spec_t &record, const call &call, write how)
{
  record.res_count = 1;
  record.res[0].res_hdl = direct_meter_of(call.function())->handle;
  if (call.value(argument_kind::meter_spec) == 0) {
    record.res[0].res_tag = how == write::modify ? 0 : 2;
    return;
  }
  const auto &given = call.memory(argument_kind::meter_spec);
  const std::uint32_t color_mode = 1;
  record.res[0].res_tag = 1;
  std::memcpy(record.res[0].res_value.bytes, &color_mode, sizeof color_mode);
  for (std::size_t i = 0; i < 4; ++i) {
    const std::uint64_t rate_or_burst = number_at(given, 4 * i, 4);
    constexpr std::size_t places[] = {16, 24, 40, 48};
    std::memcpy(record.res[0].res_value.bytes + places[i], &rate_or_burst, 8);
  }
}

bytes parameters_of(const call &call, std::uint16_t &bits)
{
  bytes data;
  for (const calls::param_info &param : call.function().action->params) {
    const auto &structure = call.memory(argument_kind::action_spec);
    bytes field = field_bytes(structure, param.member, param.member_size, param.bits);
    if (param.resource_index) field.assign(field.size(), 0);
    data.insert(data.end(), field.begin(), field.end());
    bits = static_cast<std::uint16_t>(bits + param.bits);
  }
  return data;
}

bytes with_parameters(drv_action_spec_t record, const call &call)
{
  bytes data = parameters_of(call, record.act_data.data_bits);
  record.act_data.data_bytes = static_cast<std::uint16_t>(data.size());
  data.push_back(0);  // a place to point at, for an action without parameters too
  record.act_data.data = data.data();
  return copy_of(&record);
}

}  // namespace

std::uint64_t number_at(std::span<const std::uint8_t> structure, std::size_t at, std::size_t size)
{
  std::uint64_t number = 0;
  std::memcpy(&number, &structure[at], size);
  return number;
}

bytes expected_key(const call &call)
{
  const calls::table_info &table = *call.function().table;
  const auto &structure = call.memory(argument_kind::match_spec);
  drv_match_spec_t key{};
  key.priority = static_cast<std::uint32_t>(call.value(argument_kind::priority));
  bytes value, mask;
  std::size_t bits = 0;
  for (const calls::field_info &field : table.fields) bits += field.bits;

  for (const calls::field_info &field : table.fields) {
    bytes field_value = field_bytes(structure, field.member, field.member_size, field.bits);
    bytes field_mask(field_value.size(), 0xff);
    if (field.match == match_kind::partition) {
      key.partition_index = static_cast<std::uint32_t>(number_at(structure, field.member, 2));
      field_value.assign(2, 0);
    }
    if (field.match == match_kind::ternary) {
      field_mask = field_bytes(structure, field.companion, field.member_size, field.bits);
      for (std::size_t i = 0; i < field_value.size(); ++i) field_value[i] &= field_mask[i];
    }
    if (table.kind == table_kind::ternary && field.bits % 8 != 0) {
      field_mask[0] &= static_cast<std::uint8_t>((1 << field.bits % 8) - 1);
    }
    if (field.match == match_kind::lpm) {
      const std::uint64_t prefix = number_at(structure, field.companion, 2);
      if (prefix > field.bits) {
        key.priority = static_cast<std::uint32_t>(bits + 1);
      } else {
        key.priority = static_cast<std::uint32_t>(field.bits - prefix);
        // The partition stands first in the key.
        if (table.fields[0].match == match_kind::partition) mask[0] = mask[1] = 0;
        for (std::size_t bit = prefix; bit < field.bits; ++bit) {
          field_mask[bit / 8] = static_cast<std::uint8_t>(field_mask[bit / 8] & ~(0x80 >> bit % 8));
        }
        for (std::size_t i = 0; i < field_value.size(); ++i) field_value[i] &= field_mask[i];
      }
    }
    value.insert(value.end(), field_value.begin(), field_value.end());
    mask.insert(mask.end(), field_mask.begin(), field_mask.end());
  }
  key.key_bits = static_cast<std::uint16_t>(bits);
  key.key_bytes = static_cast<std::uint16_t>(value.size());
  key.key_value = value.data();
  key.key_mask = mask.data();
  return copy_of(&key);
}

bytes expected_action(const call &call)
{
  using enum calls::family_id;
  const auto family = call.function().family;
  drv_action_spec_t record{};
  if (call.function().table->profile != nullptr) {
    record.act_kinds = call.takes(argument_kind::mbr_hdl) ? 2 : 4;
    record.mbr_hdl = static_cast<std::uint32_t>(call.value(argument_kind::mbr_hdl));
    record.grp_hdl = static_cast<std::uint32_t>(call.value(argument_kind::grp_hdl));
    return copy_of(&record);
  }
  const write how = family == entry_add ? write::add : family == set_default_action ? write::by_default : write::modify;
  record.act_kinds = 1;
  if (call.takes(argument_kind::meter_spec)) {
    put_direct_meter(record, call, how);
  } else {
    for (const named_resource &resource : resources_of(call, how)) {
      auto &place = record.res[record.res_count++];
      place.res_hdl = resource.handle;
      place.res_index = resource.index;
      place.res_tag = resource.tag;
    }
  }
  return with_parameters(record, call);
}

bytes expected_member(const call &call) { return with_parameters({}, call); }

bytes key_structure(const calls::table_info &table, const bytes &value, const bytes &mask,
                    std::uint32_t partition_index, bool with_masks)
{
  bytes structure(table.record_size);
  std::size_t at = 0;
  for (const calls::field_info &field : table.fields) {
    if (field.match == match_kind::partition) {
      const auto index = static_cast<std::uint16_t>(partition_index);
      std::memcpy(&structure[field.member], &index, sizeof index);
    } else {
      put_field(structure, field.member, &value[at], field.bits);
    }
    if (with_masks && field.match == match_kind::ternary) put_field(structure, field.companion, &mask[at], field.bits);
    if (with_masks && field.match == match_kind::lpm) {
      const auto prefix = static_cast<std::uint16_t>(prefix_of_mask(&mask[at], field.bits));
      std::memcpy(&structure[field.companion], &prefix, sizeof prefix);
    }
    at += bytes_for(field.bits);
  }
  return structure;
}

bytes parameter_structure(const calls::action_info &action, const bytes &data, const std::vector<pd_res_spec_t> &list)
{
  bytes structure(action.record_size);
  std::size_t at = 0;
  for (const calls::param_info &param : action.params) {
    if (!param.resource_index) {
      put_field(structure, param.member, &data[at], param.bits);
    } else {
      std::uint32_t index = list.empty() ? 0xffffffff : 0;
      for (const std::uint32_t handle : action.index_resources) {
        for (const pd_res_spec_t &element : list) {
          if (element.res_hdl == handle) index = element.res_index;
        }
      }
      std::memcpy(&structure[param.member], &index, sizeof index);
    }
    at += bytes_for(param.bits);
  }
  return structure;
}

}  // namespace tarvex::test
