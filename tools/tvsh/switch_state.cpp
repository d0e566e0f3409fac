// What the parts of a state have in common with each other and with the rows.
//
// SPDX-License-Identifier: Apache-2.0
#include "switch_state.h"

#include <algorithm>
#include <cstring>
#include <tuple>

namespace tarvex::shell {

namespace {

struct cell_parts {
  auto operator()(const pd_counter_value_t &value) const { return std::tuple(value.packets, value.bytes); }
  auto operator()(const pd_meter_spec_t &value) const
  {
    return std::tuple(value.cir, value.cburst, value.pir, value.pburst);
  }
  auto operator()(const pd_wred_spec_t &value) const
  {
    return std::tuple(value.time_constant, value.min_threshold, value.max_threshold, value.max_probability);
  }
  auto operator()(std::uint8_t value) const { return std::tuple(value); }
};

}  // namespace

bool is_blank(const cell_value &value)
{
  // A meter without rates is blank, whatever kind of meter the driver calls it.
  return std::visit([](const auto &held) { return cell_parts{}(held) == decltype(cell_parts{}(held)){}; }, value);
}

bool same_meter(const pd_meter_spec_t &left, const pd_meter_spec_t &right)
{
  return cell_parts{}(left) == cell_parts{}(right) && left.meter_type == right.meter_type;
}

bool same_cell(const cell_value &left, const cell_value &right)
{
  if (is_blank(left) || is_blank(right)) return is_blank(left) == is_blank(right);
  if (const auto *const meter = std::get_if<pd_meter_spec_t>(&left)) {
    return same_meter(*meter, std::get<pd_meter_spec_t>(right));
  }
  return std::visit(
      [&](const auto &held) {
        return cell_parts{}(held) == cell_parts{}(std::get<std::decay_t<decltype(held)>>(right));
      },
      left);
}

bool has_meter(const use_info &use)
{
  return std::ranges::count(use.resources, resource_form::direct_meter, &calls::resource_use_info::form) != 0;
}

const resource_info *direct_counter(const table_info &table)
{
  const auto found = std::ranges::find_if(calls::resources, [&](const resource_info &each) {
    return each.direct && each.kind == resource_kind::counter && each.table == table.handle;
  });
  return found == calls::resources.end() ? nullptr : &*found;
}

const use_info &use_of(std::span<const use_info> uses, const action_info &action)
{
  return *std::ranges::find(uses, &action, &use_info::action);
}

}  // namespace tarvex::shell
