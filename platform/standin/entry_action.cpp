// What an action record does to an entry.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_action.h"

#include <cstring>

namespace tarvex::standin {
namespace {

pd_status_t check_reference(device &dev, match_table &table, const rows::use_info &action,
                            const drv_action_spec_t &spec)
{
  profile *const owner = dev.profile_of(table);
  if (owner == nullptr) return STANDIN_BAD_ACTION;
  if (spec.act_kinds == DRV_ACT_MEMBER) {
    const member *const found = owner->members.find(spec.mbr_hdl);
    if (found == nullptr) return STANDIN_NO_MEMBER;
    return require(found->use->handle == action.handle, STANDIN_BAD_ACTION);
  }
  if (spec.act_kinds != DRV_ACT_GROUP) return STANDIN_BAD_ACTION;
  return require(owner->groups.find(spec.grp_hdl) != nullptr, STANDIN_NO_GROUP);
}

/// Takes a reference off the list, keeping the order of the others.
void forget_resource(entry_view entry, std::size_t which)
{
  const auto list = entry.references();
  std::move(list.begin() + static_cast<std::ptrdiff_t>(which) + 1, list.begin() + entry.head().resources,
            list.begin() + static_cast<std::ptrdiff_t>(which));
  --entry.head().resources;
}

}  // namespace

pd_status_t check_resource(device &dev, const match_table &table, const drv_res_spec_t &spec)
{
  const rows::resource_info *const row = table.layout().resource(spec.res_hdl);
  if (row == nullptr || spec.res_tag > DRV_RES_DETACHED) return STANDIN_BAD_RESOURCE;
  if (row->direct || spec.res_tag != DRV_RES_ATTACHED) return success;
  const indirect_resource *const cells = dev.resource(row->handle, row->kind);
  return require(spec.res_index < cells->limit, STANDIN_BAD_INDEX);
}

pd_status_t check_action(device &dev, match_table &table, std::uint32_t act_hdl, const drv_action_spec_t *spec,
                         action_place place)
{
  if (spec == nullptr) return STANDIN_BAD_ARGUMENT;
  const rows::use_info *const use = find_use(table.row().uses(), act_hdl);
  if (use == nullptr) return STANDIN_NO_ACTION;
  if (table.row().profile != nullptr) {
    if (const pd_status_t status = check_reference(dev, table, *use, *spec)) return status;
  } else {
    if (place == action_place::default_entry && !use->is_default) return STANDIN_NOT_DEFAULT;
    if (spec->act_kinds != DRV_ACT_DATA) return STANDIN_BAD_ACTION;
    if (const pd_status_t status = check_data(*use->action, spec->act_data)) return status;
  }
  if (spec->res_count > DRV_ACTION_MAX_RES) return STANDIN_BAD_ARGUMENT;
  for (std::uint32_t i = 0; i < spec->res_count; ++i)
    if (const pd_status_t status = check_resource(dev, table, spec->res[i])) return status;
  return success;
}

void apply_resource(entry_view entry, const drv_res_spec_t &spec)
{
  if (spec.res_tag == DRV_RES_NOT_TOLD) return;
  entry_head &head = entry.head();
  const auto list = entry.references();
  std::size_t at = 0;
  while (at < head.resources && list[at].handle != spec.res_hdl) ++at;
  if (at == head.resources) ++head.resources;
  list[at] = {spec.res_hdl, spec.res_index, spec.res_tag};

  const rows::resource_info &row = *entry.layout().resource(spec.res_hdl);
  if (!row.direct) return;
  const bool attached = spec.res_tag == DRV_RES_ATTACHED;
  if (row.kind == resource_kind::meter) {
    head.meter_attached = attached ? 1 : 0;
    if (attached) entry.meter() = spec.res_value.meter;
  }
  if (row.kind == resource_kind::register_) entry.register_value() = attached ? spec.res_value.register_value : 0;
}

void release_reference(device &dev, match_table &table, entry_view entry)
{
  if (table.row().profile != nullptr && entry.head().kind != 0)
    --*dev.profile_of(table)->uses(entry.head().kind, entry.head().reference);
}

void apply_action(device &dev, match_table &table, entry_view entry, std::uint32_t act_hdl,
                  const drv_action_spec_t &spec)
{
  release_reference(dev, table, entry);
  const rows::use_info &use = *find_use(table.row().uses(), act_hdl);
  entry_head &head = entry.head();
  head.action = static_cast<std::uint8_t>(&use - table.row().uses().data());
  head.kind = spec.act_kinds;
  if (table.row().profile != nullptr) {
    head.reference = spec.act_kinds == DRV_ACT_MEMBER ? spec.mbr_hdl : spec.grp_hdl;
    ++*dev.profile_of(table)->uses(head.kind, head.reference);
  } else if (use.action->data_bytes != 0) {
    std::memcpy(entry.data(), spec.act_data.data, use.action->data_bytes);
  }
  for (std::size_t i = head.resources; i-- != 0;)
    if (!entry.layout().resource(entry.references()[i].handle)->direct) forget_resource(entry, i);
  for (std::uint32_t i = 0; i < spec.res_count; ++i) apply_resource(entry, spec.res[i]);
}

}  // namespace tarvex::standin
