// An entry or a member as it is read back.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_record.h"

#include <cstring>

namespace tarvex::standin {
namespace {

drv_res_spec_t resource_spec(entry_view entry, const resource_reference &reference)
{
  drv_res_spec_t spec{};
  spec.res_hdl = reference.handle;
  spec.res_index = reference.index;
  spec.res_tag = reference.tag;
  const entry_layout &layout = entry.layout();
  const auto is = [&](resource_kind kind) {
    return layout.direct(kind) != nullptr && layout.direct(kind)->handle == reference.handle;
  };
  if (reference.tag != DRV_RES_ATTACHED) return spec;
  if (is(resource_kind::meter)) spec.res_value.meter = entry.meter();
  if (is(resource_kind::register_)) spec.res_value.register_value = entry.register_value();
  return spec;
}

}  // namespace

entry_record record_of(const match_table &table, std::uint32_t handle)
{
  const entry_view entry = table.at(handle);
  const entry_head &head = entry.head();
  entry_record record;
  record.has_key = !table.is_default(handle);
  if (record.has_key) {
    record.key_bits = table.row().key_bits;
    record.key_bytes = table.row().key_bytes;
    record.value = entry.value();
    record.mask = table.layout().stores_mask ? entry.mask() : nullptr;
    record.partition = head.partition;
    record.priority = head.priority;
  }
  record.kind = head.kind;
  record.reference = head.reference;
  const rows::use_info &use = table.row().uses()[head.action];
  record.action.action = use.handle;
  if (head.kind == DRV_ACT_DATA) {
    record.action.data_bits = use.action->data_bits;
    record.action.data_bytes = use.action->data_bytes;
    record.action.data = entry.data();
  }
  record.resource_count = head.resources;
  for (std::size_t i = 0; i < head.resources; ++i) record.resources[i] = resource_spec(entry, entry.references()[i]);
  return record;
}

action_record record_of(const member &which)
{
  const rows::action_info &action = *which.use->action;
  return {which.use->handle, action.data_bits, action.data_bytes, which.data.data()};
}

pd_status_t deliver(const action_record &record, drv_act_data_t *data, std::uint32_t *act_hdl)
{
  if (data == nullptr || act_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
  if (record.data_bytes > data->data_bytes || (record.data_bytes != 0 && data->data == nullptr))
    return STANDIN_BAD_ACTION;
  data->data_bits = record.data_bits;
  data->data_bytes = record.data_bytes;
  if (record.data_bytes != 0) std::memcpy(data->data, record.data, record.data_bytes);
  *act_hdl = record.action;
  return success;
}

pd_status_t deliver(const entry_record &record, drv_match_spec_t *key, drv_action_spec_t *action,
                    std::uint32_t *act_hdl)
{
  if (key == nullptr || action == nullptr || act_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
  if (record.has_key && (key->key_bytes < record.key_bytes || key->key_value == nullptr || key->key_mask == nullptr))
    return STANDIN_BAD_KEY;
  if (const pd_status_t status = deliver(record.action, &action->act_data, act_hdl)) return status;

  key->partition_index = record.partition;
  key->priority = record.priority;
  if (record.has_key) {
    key->key_bits = record.key_bits;
    key->key_bytes = record.key_bytes;
    std::memcpy(key->key_value, record.value, record.key_bytes);
    if (record.mask != nullptr)
      std::memcpy(key->key_mask, record.mask, record.key_bytes);
    else
      std::memset(key->key_mask, 0xff, record.key_bytes);
  } else {
    key->key_value = nullptr;
    key->key_mask = nullptr;
  }

  action->act_kinds = record.kind;
  action->mbr_hdl = record.kind == DRV_ACT_MEMBER ? record.reference : 0;
  action->grp_hdl = record.kind == DRV_ACT_GROUP ? record.reference : 0;
  action->res_count = record.resource_count;
  for (std::uint32_t i = 0; i < record.resource_count; ++i) action->res[i] = record.resources[i];
  return success;
}

}  // namespace tarvex::standin
