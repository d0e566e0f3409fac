// Text leaves out what has been told as fields already; JSON has it all.
//
// SPDX-License-Identifier: Apache-2.0
#include "record_writer.h"

#include <algorithm>

#include "decode.h"

namespace tarvex::trace {

std::string_view record_writer::shown(std::string_view name) const
{
  if (to_.json()) return name;
  for (const std::string_view ending : {"_hdl", "_spec"}) {
    if (name.ends_with(ending)) return name.substr(0, name.size() - ending.size());
  }
  return name;
}

void record_writer::row_handle(std::string_view name, std::uint32_t value)
{
  const handle_meaning *const meaning = meaning_of(value);
  if (to_.json()) {
    to_.member(name).number(value);
    if (meaning != nullptr) to_.member(name.substr(0, name.rfind('_'))).name(meaning->name);
  } else if (meaning != nullptr) {
    to_.member(shown(name)).name(meaning->name);
  } else {
    to_.member(shown(name)).hexadecimal(value);
  }
}

void record_writer::members(std::span<const record_member> all, const std::uint8_t *record)
{
  to_.open();
  for (const record_member &each : all) {
    to_.member(each.name);
    if (each.real) {
      float value = 0;
      std::memcpy(&value, record + each.at, sizeof value);
      to_.real(value);
    } else if (each.size == 8) {
      std::uint64_t value = 0;
      std::memcpy(&value, record + each.at, sizeof value);
      to_.number(value);
    } else {
      std::uint32_t value = 0;
      std::memcpy(&value, record + each.at, sizeof value);
      to_.number(value);
    }
  }
  to_.close();
}

void record_writer::key(const drv_match_spec_t &key)
{
  to_.open();
  const bool known = table != nullptr && is_key_of(*table, key);
  if (to_.json() || !known) {
    if (to_.json()) {
      to_.member("partition_index").number(key.partition_index).member("key_bits").number(key.key_bits);
      to_.member("key_bytes").number(key.key_bytes).member("priority").number(key.priority);
    }
    if (key.key_value != nullptr) to_.member("value").bytes({key.key_value, key.key_bytes});
    if (key.key_mask != nullptr) to_.member("mask").bytes({key.key_mask, key.key_bytes});
  }
  if (known && to_.json()) to_.member("fields").open();
  if (known) write_fields(to_, *table, key);
  if (known && to_.json()) to_.close();
  if (!to_.json() && (table == nullptr || table->kind == table_kind::ternary)) {
    to_.member("priority").number(key.priority);
  }
  to_.close();
}

void record_writer::data(const drv_act_data_t &data, std::span<const drv_res_spec_t> resources)
{
  const bool known = action != nullptr && is_data_of(*action, data);
  if (to_.json()) to_.member("data_bits").number(data.data_bits);
  if ((to_.json() || !known) && data.data != nullptr) to_.member("data").bytes({data.data, data.data_bytes});
  if (known && to_.json()) to_.member("parameters").open();
  if (known) write_parameters(to_, *action, data, resources);
  if (known && to_.json()) to_.close();
}

void record_writer::action_record(const drv_action_spec_t &record)
{
  const std::span resources(record.res, std::min<std::size_t>(record.res_count, DRV_ACTION_MAX_RES));
  const bool refers = (record.act_kinds & (DRV_ACT_MEMBER | DRV_ACT_GROUP)) != 0;
  to_.open();
  if (to_.json()) {
    to_.member("act_kinds").number(record.act_kinds);
    to_.member("mbr_hdl").number(record.mbr_hdl).member("grp_hdl").number(record.grp_hdl);
  }
  if (!refers) {
    data(record.act_data, resources);
  } else if (to_.json()) {
    to_.member("data_bits").number(record.act_data.data_bits);  // bytes are not there to be read
  }
  if (!to_.json() && (record.act_kinds & DRV_ACT_MEMBER) != 0) to_.member("member").number(record.mbr_hdl);
  if (!to_.json() && (record.act_kinds & DRV_ACT_GROUP) != 0) to_.member("group").number(record.grp_hdl);
  if (to_.json() || !resources.empty()) {
    to_.member("resources");
    resource_list(resources);
  }
  to_.close();
}

void record_writer::resource_list(std::span<const drv_res_spec_t> resources)
{
  to_.open('[');
  for (const drv_res_spec_t &resource : resources) {
    to_.element().open();
    row_handle("res_hdl", resource.res_hdl);
    to_.member("index").number(resource.res_index).member("tag").number(resource.res_tag);
    const handle_meaning *const meaning = meaning_of(resource.res_hdl);
    const rows::resource_info *const row = meaning == nullptr ? nullptr : meaning->resource;
    if (to_.json()) to_.member("value").bytes(resource.res_value.bytes);
    if (row != nullptr && row->direct && row->kind == resource_kind::meter) {
      to_.member("meter");
      members(meter_members, resource.res_value.bytes);
    } else if (row != nullptr && row->direct && row->kind == resource_kind::register_) {
      to_.member("register").number(resource.res_value.register_value);
    }
    to_.close();
  }
  to_.close(']');
}

void record_writer::trigger_bytes(std::span<const std::uint8_t> bytes)
{
  if (to_.json()) {
    to_.bytes(bytes);
    return;
  }
  to_.open();
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (bytes[at] == 0) continue;
    const std::size_t from = at;
    while (at < bytes.size() && bytes[at] != 0) ++at;
    to_.element().number(from).name(":").bytes(bytes.subspan(from, at - from));
  }
  to_.close();
}

}  // namespace tarvex::trace
