// Bytes go into the structures that a caller of the library would see, and their values are shown as the shell does.
//
// SPDX-License-Identifier: Apache-2.0
#include "decode.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "records.h"
#include "value_text.h"

namespace tarvex::trace {

namespace {

/// A field or parameter has its value most significant byte first; a caller's structure has up to 32 bits as a number
/// of the machine, and more as bytes.
void put_member(shell::record_memory &record, std::size_t at, std::size_t size, const std::uint8_t *bytes,
                std::size_t byte_count)
{
  if (size > 4) {
    std::memcpy(record.data() + at, bytes, std::min(size, byte_count));
    return;
  }
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < byte_count; ++i) value = value << 8 | bytes[i];
  if constexpr (std::endian::native == std::endian::big) value <<= 8 * (4 - size);
  std::memcpy(record.data() + at, &value, size);
}

/// How long the prefix is that a mask keeps; beyond its width where it keeps none.
unsigned prefix_length(const std::uint8_t *mask, unsigned bytes)
{
  unsigned length = 0;
  while (length < 8 * bytes && (mask[length / 8] >> (7 - length % 8) & 1) != 0) ++length;
  for (unsigned bit = length; bit < 8 * bytes; ++bit) {
    if ((mask[bit / 8] >> (7 - bit % 8) & 1) != 0) return 8 * bytes + 1;
  }
  return length;
}

void write_field(value_writer &to, std::string &text, const shell::shown_field &field,
                 const shell::record_memory &record)
{
  text.clear();
  shell::append_match(text, field, record.data(), false);
  to.member(field.name).name(text);
}

}  // namespace

bool is_key_of(const rows::table_info &table, const drv_match_spec_t &key)
{
  if (key.key_bytes != table.key_bytes || table.fields.empty()) return false;
  if (key.key_value == nullptr || key.key_mask == nullptr) return false;
  return std::ranges::all_of(table.fields, [&](const rows::field_info &field) {
    return field.match != match_kind::lpm ||
           prefix_length(key.key_mask + field.key_at, field.key_size) <= 8u * field.key_size;
  });
}

void write_fields(value_writer &to, const rows::table_info &table, const drv_match_spec_t &key)
{
  shell::record_memory record;
  for (const rows::field_info &field : table.fields) {
    const std::uint8_t *const mask = key.key_mask + field.key_at;
    if (field.match == match_kind::partition) {
      std::array<std::uint8_t, 4> partition{};
      for (unsigned i = 0; i < 4; ++i) partition[i] = static_cast<std::uint8_t>(key.partition_index >> (24 - 8 * i));
      put_member(record, field.member, field.member_size, partition.data(), partition.size());
    } else {
      put_member(record, field.member, field.member_size, key.key_value + field.key_at, field.key_size);
    }
    if (field.match == match_kind::ternary) {
      put_member(record, field.companion, field.member_size, mask, field.key_size);
    } else if (field.match == match_kind::lpm) {
      const auto length = static_cast<std::uint16_t>(prefix_length(mask, field.key_size));
      std::memcpy(record.data() + field.companion, &length, sizeof length);
    }
  }
  std::string text;
  for (const shell::shown_field &field : fields_of(table)) write_field(to, text, field, record);
}

bool is_data_of(const rows::action_info &action, const drv_act_data_t &data)
{
  return data.data_bytes == action.data_bytes && data.data != nullptr;
}

void write_parameters(value_writer &to, const rows::action_info &action, const drv_act_data_t &data,
                      std::span<const drv_res_spec_t> resources)
{
  shell::record_memory record;
  for (const rows::param_info &parameter : action.params) {
    if (!parameter.resource_index) {
      put_member(record, parameter.member, parameter.member_size, data.data + parameter.data_at, parameter.data_size);
      continue;
    }
    for (const drv_res_spec_t &resource : resources) {
      if (std::ranges::find(action.index_resources, resource.res_hdl) == action.index_resources.end()) continue;
      std::memcpy(record.data() + parameter.member, &resource.res_index, parameter.member_size);
    }
  }
  std::string text;
  for (const shell::shown_field &field : fields_of(action)) write_field(to, text, field, record);
}

}  // namespace tarvex::trace
