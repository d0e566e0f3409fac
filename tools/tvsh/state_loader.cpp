// Parts of a state as calls of the library.
//
// SPDX-License-Identifier: Apache-2.0
#include "state_loader.h"

#include <algorithm>

#include "entry_search.h"
#include "hash_settings.h"
#include "remembered_writes.h"
#include "session.h"
#include "status_text.h"
#include "tarvex_pd/actions.h"

namespace tarvex::shell {

using enum argument_kind;

state_loader::state_loader(const invocation &call) : call_(call)
{
  const auto there = call.shell.written()->value_set;
  for (const auto &[handle, entry] : there) value_sets_there_.insert(entry);
}

void state_loader::begin()
{
  partly_ = false;
  call_.shell.check_interrupt();
}

function_call &state_loader::call_of(const exported_function &function)
{
  std::unique_ptr<function_call> &made = calls_[&function];
  if (made == nullptr) made = std::make_unique<function_call>(function, call_.where());
  return *made;
}

void state_loader::member(const profile_info &profile, const profile_member &state)
{
  begin();
  std::uint32_t handle = 0;
  call_of(function_for(family_id::add_member, use_of(profile.actions, *state.action)))
      .give(action_spec, state.parameters.data())
      .give(mbr_hdl_out, &handle)
      .must(std::string("adding a member to ") + profile.name);
  handles_[&profile].members[state.id] = handle;
  ++written.members;
}

void state_loader::group(const profile_info &profile, const profile_group &state)
{
  begin();
  handles &known = handles_[&profile];
  const std::uint32_t size =
      state.size.value_or(std::max(std::uint32_t{1}, static_cast<std::uint32_t>(state.members.size())));
  const std::uint32_t handle = create_group(call_, profile, size);
  partly_ = true;
  // What the file did not tell is no more known now.
  if (!state.size) call_.shell.written()->group_sizes.erase({profile.selector_table, handle});
  known.groups[state.id] = handle;
  for (const group_member &each : state.members) {
    const std::uint32_t member = known.members.at(each.id);
    change_group(profile, handle, family_id::add_member_to_group, member, "adding");
    if (!each.active) change_group(profile, handle, family_id::group_member_state_set, member, "disabling");
  }
  if (state.members.empty()) known.never_filled.insert(handle);
  ++written.groups;
}

void state_loader::change_group(const profile_info &profile, std::uint32_t group, family_id family,
                                std::uint32_t member, const char *what)
{
  call_of(function_for(family, profile, grp_hdl))
      .give(grp_hdl, group)
      .give(mbr_hdl, member)
      .give(member_state, std::uint64_t{P4_PD_GRP_MBR_STATE_INACTIVE})
      .must(std::string(what) + " a member of a group of " + profile.name);
}

void state_loader::fill_once(const profile_info &profile, std::uint32_t group)
{
  handles &known = handles_[&profile];
  if (known.members.empty() || known.never_filled.erase(group) == 0) return;
  const std::uint32_t member = known.members.begin()->second;
  change_group(profile, group, family_id::add_member_to_group, member, "adding");
  partly_ = true;
  change_group(profile, group, family_id::del_member_from_group, member, "removing");
}

void state_loader::fallback(const profile_info &profile, std::uint32_t member)
{
  begin();
  set_fallback(call_, profile, handles_[&profile].members.at(member));
  ++written.settings;
}

void state_loader::idle(const table_info &table, const idle_setting &setting)
{
  begin();
  enable_idle_time(call_, table, setting);
  ++written.settings;
}

std::uint32_t state_loader::write_entry(const table_info &table, const entry_state &state, family_id direct,
                                        family_id indirect, const char *what)
{
  if (table_ != &table) {
    table_ = &table;
    of_actions_.clear();
  }
  function_call *&call = of_actions_[state.action];
  std::uint32_t reference = 0;
  const argument_kind kind = state.is_group ? grp_hdl : mbr_hdl;
  if (state.action != nullptr) {
    if (call == nullptr) call = &call_of(function_for(direct, use_of(table.actions, *state.action)));
  } else {
    const handles &known = handles_[table.profile];
    reference = state.is_group ? known.groups.at(state.group) : known.members.at(state.member);
    if (state.is_group) fill_once(*table.profile, reference);
    call = &call_of(function_for(indirect, table, kind));
  }
  std::uint32_t handle = 0;
  call->give(match_spec, state.key.data())
      .give(priority, state.priority)
      .give(action_spec, state.parameters.data())
      .give(kind, reference)
      .give(ttl, state.ttl.value_or(0))
      .give(meter_spec, state.meter ? &*state.meter : nullptr)
      .give(entry_hdl_out, &handle);
  const auto status = static_cast<pd_status_t>(call->make());
  const std::string attempt = std::string(what) + ' ' + table.name;
  if (state.has_key) require_added(status, attempt, table, state.key, state.priority, call_.where());
  require_success(status, attempt);
  if (state.counter) {
    partly_ = true;
    const resource_info &counter = *direct_counter(table);
    call_of(function_for(family_id::counter_write, counter))
        .give(entry_hdl, handle)
        .give(counter_value, &*state.counter)
        .must(std::string("writing ") + counter.name);
  }
  return handle;
}

void state_loader::default_entry(const table_info &table, const entry_state &state)
{
  begin();
  write_entry(table, state, family_id::set_default_action, family_id::set_indirect_default, "setting the default of");
  table_ = nullptr;  // entries are written by other functions
  ++written.defaults;
}

void state_loader::entry(const table_info &table, const entry_state &state)
{
  begin();
  write_entry(table, state, family_id::entry_add, family_id::add_indirect_entry, "adding an entry to");
  ++written.entries;
}

void state_loader::cell(const resource_info &resource, const cell_state &state)
{
  begin();
  write_cell(call_, resource, state);
  ++written.cells;
}

void state_loader::hash(const hash_info &hash, const hash_state &state)
{
  begin();
  write_hash_seed(hash, state.seed, call_.where());
  partly_ = true;
  write_hash_fields(hash, state.selected, call_.where());
  ++written.settings;
}

void state_loader::value_set(const value_set_entry &entry)
{
  begin();
  const auto there = value_sets_there_.find(entry);
  if (there == value_sets_there_.end()) {
    add_to_value_set(call_, entry);
  } else {
    value_sets_there_.erase(there);
  }
  ++written.settings;
}

void state_loader::learning_timeout(std::uint32_t timeout)
{
  begin();
  set_learning_timeout(call_, timeout);
  ++written.settings;
}

}  // namespace tarvex::shell
