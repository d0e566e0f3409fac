// SPDX-License-Identifier: Apache-2.0
#include "remembered_writes.h"

#include "pd_calls.h"
#include "session.h"
#include "status_text.h"
#include "tarvex_pd/driver_records.h"
#include "tarvex_standin/standin.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

std::string cell_text(const resource_info &resource, std::uint32_t index)
{
  return std::string(resource.name) + ", cell " + std::to_string(index);
}

}  // namespace

std::uint32_t create_group(const invocation &call, const profile_info &profile, std::uint32_t size)
{
  std::uint32_t group = 0;
  function_call(function_for(family_id::create_group, profile, max_grp_size), call.where())
      .give(max_grp_size, size)
      .give(grp_hdl_out, &group)
      .must(std::string("creating a group of ") + profile.name);
  call.shell.written()->group_sizes[{profile.selector_table, group}] = size;
  return group;
}

void delete_group(const invocation &call, const profile_info &profile, std::uint32_t group)
{
  function_call(function_for(family_id::del_group, profile, grp_hdl), call.where())
      .give(grp_hdl, group)
      .must("deleting group " + std::to_string(group) + " of " + profile.name);
  call.shell.written()->group_sizes.erase({profile.selector_table, group});
}

void set_fallback(const invocation &call, const profile_info &profile, std::optional<std::uint32_t> member)
{
  function_call(member ? function_for(family_id::set_fallback_member, profile, mbr_hdl)
                       : function_for(family_id::reset_fallback_member, profile, dev_tgt),
                call.where())
      .give(mbr_hdl, member.value_or(0))
      .must(std::string("setting the fallback member of ") + profile.name);
  const auto written = call.shell.written();
  if (member) {
    written->fallback_members[profile.selector_table] = *member;
  } else {
    written->fallback_members.erase(profile.selector_table);
  }
}

void enable_idle_time(const invocation &call, const table_info &table, const idle_setting &setting)
{
  pd_idle_params_t parameters{};
  parameters.word_0 = setting.notify ? STANDIN_IDLE_NOTIFY : STANDIN_IDLE_POLL;
  parameters.word_1 = setting.interval;
  parameters.word_2 = setting.largest_ttl;
  function_call(function_for(family_id::idle_tmo_enable, table), call.where())
      .give(idle_params, &parameters)
      .must(std::string("enabling the idle time of ") + table.name);
  call.shell.written()->idle[table.handle] = setting;
}

void disable_idle_time(const invocation &call, const table_info &table)
{
  function_call(function_for(family_id::idle_tmo_disable, table), call.where())
      .must(std::string("disabling the idle time of ") + table.name);
  call.shell.written()->idle.erase(table.handle);
}

void write_cell(const invocation &call, const resource_info &resource, const cell_state &state)
{
  static constexpr std::array families = {family_id::counter_write, family_id::meter_set, family_id::wred_set,
                                          family_id::register_write};
  const family_id family =
      state.index ? families[static_cast<std::size_t>(resource.kind)] : family_id::register_write_all;
  function_call write(function_for(family, resource), call.where());
  write.give(cell_index, state.index.value_or(0));
  // Given where the function takes it.
  std::visit(
      [&](const auto &value) {
        for (const argument_kind kind : {counter_value, meter_value, wred_value, register_value})
          write.give(kind, &value);
      },
      state.value);
  write.must("writing " + (state.index ? cell_text(resource, *state.index) : std::string(resource.name)));
  const auto written = call.shell.written();
  if (state.index) {
    written->cells[resource.handle].add({*state.index, *state.index});
  } else {
    written->cells.erase(resource.handle);
    written->register_rests.erase(resource.handle);
    if (!is_blank(state.value)) written->register_rests[resource.handle] = std::get<std::uint8_t>(state.value);
  }
}

void reset_register(const invocation &call, const resource_info &reg, std::optional<cell_range> cells)
{
  function_call write(function_for(cells ? family_id::register_range_reset : family_id::register_reset_all, reg),
                      call.where());
  const cell_range range = cells.value_or(cell_range{});
  write.give(first_index, range.first).give(range_count, range.last - range.first + 1);
  write.must(std::string("resetting ") + reg.name);
  const auto written = call.shell.written();
  if (cells) {
    written->cells[reg.handle].add(range);
  } else {
    written->cells.erase(reg.handle);
    written->register_rests.erase(reg.handle);
  }
}

std::uint32_t add_to_value_set(const invocation &call, const value_set_entry &entry)
{
  the_value_set();
  const pd_parser_tgt_t where = {call.where().device, entry.scope, entry.index, entry.sub_index};
  std::uint32_t handle = 0;
  function_call(function_for(family_id::value_set_entry_add), call.where())
      .give(argument_kind::parser_tgt, &where)
      .give(argument_kind::parser_value, entry.value)
      .give(argument_kind::parser_value, entry.mask, 1)
      .give(argument_kind::pvs_entry_hdl_out, &handle)
      .must("adding an entry to the value set");
  call.shell.written()->value_set[handle] = entry;
  return handle;
}

void modify_in_value_set(const invocation &call, std::uint32_t handle, std::uint32_t value, std::uint32_t mask)
{
  the_value_set();
  function_call(function_for(family_id::value_set_entry_modify), call.where())
      .give(argument_kind::pvs_entry_hdl, handle)
      .give(argument_kind::parser_value, value)
      .give(argument_kind::parser_value, mask, 1)
      .must("modifying entry " + std::to_string(handle) + " of the value set");
  const auto written = call.shell.written();
  value_set_entry &kept = written->value_set[handle];
  kept.value = value;
  kept.mask = mask;
}

void delete_from_value_set(const invocation &call, std::uint32_t handle)
{
  the_value_set();
  function_call(function_for(family_id::value_set_entry_delete), call.where())
      .give(argument_kind::pvs_entry_hdl, handle)
      .must("deleting entry " + std::to_string(handle) + " of the value set");
  call.shell.written()->value_set.erase(handle);
}

void set_learning_timeout(const invocation &call, std::uint32_t timeout)
{
  require_success(calls::pd::set_learning_timeout(call.where().session, call.where().device, timeout),
                  "setting the learning timeout");
  call.shell.written()->learning_timeout = timeout;
}

}  // namespace tarvex::shell
