// Takes the state off a switch.
//
// SPDX-License-Identifier: Apache-2.0
#include <ranges>

#include "handle_walk.h"
#include "live_state.h"
#include "remembered_writes.h"
#include "session.h"
#include "state_loader.h"
#include "status_text.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

std::vector<std::uint32_t> all_of(handle_walk walk)
{
  std::vector<std::uint32_t> handles;
  while (const auto handle = walk.next()) handles.push_back(*handle);
  return handles;
}

/// From the last to the first, so that a switch that gives free places out again, the latest first, has the next
/// entries in the same order.
void delete_entries(const invocation &call, const table_info &table)
{
  function_call remove(function_for(family_id::entry_delete, table), call.where());
  std::uint64_t done = 0;
  const std::vector<std::uint32_t> handles = all_of(handle_walk::entries(table, call.where()));
  for (const std::uint32_t handle : handles | std::views::reverse) {
    found_there(remove.give(entry_hdl, handle).status(),
                [&] { return "deleting entry " + std::to_string(handle) + " of " + table.name; });
    if (++done % 8192 != 0) continue;
    call.shell.check_interrupt();
    call.out.progress("clearing", done, handles.size());
  }
}

void delete_members(const invocation &call, const profile_info &profile)
{
  for (const std::uint32_t group : all_of(handle_walk::groups(profile, call.where())) | std::views::reverse) {
    delete_group(call, profile, group);
  }
  function_call remove(function_for(family_id::del_member, profile, mbr_hdl), call.where());
  for (const std::uint32_t member : all_of(handle_walk::members(profile, call.where())) | std::views::reverse) {
    found_there(remove.give(mbr_hdl, member).status(),
                [&] { return "deleting member " + std::to_string(member) + " of " + profile.name; });
  }
}

/// Takes off what only the shell's own memory tells of. It may be gone already, by another's hand: it is forgotten
/// then.
template <typename TakeOff, typename Forget>
void take_off_remembered(const invocation &call, TakeOff take_off, Forget forget)
{
  try {
    take_off();
  } catch (const refused_error &) {
    forget(*call.shell.written());
  }
}

/// Cells go blank as they are met; nothing else is looked at.
class cell_blanker : public state_counter {
 public:
  explicit cell_blanker(const invocation &call) : call_(call) {}

  void cell(const resource_info &resource, const cell_state &state) override
  {
    if (resource.kind == resource_kind::register_) return;
    cell_state blank{state.index, {}};
    if (resource.kind == resource_kind::counter) blank.value = pd_counter_value_t{};
    if (resource.kind == resource_kind::meter) blank.value = pd_meter_spec_t{0, 0, 0, 0, PD_METER_TYPE_COLOR_UNAWARE};
    if (resource.kind == resource_kind::wred) blank.value = pd_wred_spec_t{};
    write_cell(call_, resource, blank);
  }

 private:
  const invocation &call_;
};

}  // namespace

bool holds_state(const invocation &call)
{
  for (const table_info &table : calls::tables) {
    if (default_entry(table, call.where())) return true;
    if (!table.fields.empty() && entry_count(table, call.where()) != 0) return true;
  }
  for (const profile_info &profile : calls::profiles) {
    if (handle_walk::members(profile, call.where()).next() || handle_walk::groups(profile, call.where()).next())
      return true;
  }
  return false;
}

void clear_state(const invocation &call, std::uint32_t cells)
{
  // Cells that cannot be read are found out now, while the switch holds all that it held.
  state_counter readable;
  read_live_cells(call, {cells}, readable);
  for (const table_info &table : calls::tables | std::views::reverse) {
    if (!table.fields.empty()) delete_entries(call, table);
    if (!default_entry(table, call.where())) continue;
    function_call(function_for(family_id::reset_default_entry, table), call.where())
        .must(std::string("resetting the default of ") + table.name);
  }
  const own_writes written = *call.shell.written();
  for (const profile_info &profile : calls::profiles) {
    if (written.fallback_members.contains(profile.selector_table)) {
      take_off_remembered(
          call, [&] { set_fallback(call, profile, std::nullopt); },
          [&](own_writes &now) { now.fallback_members.erase(profile.selector_table); });
    }
    delete_members(call, profile);
  }
  for (const table_info &table : calls::tables) {
    if (!written.idle.contains(table.handle)) continue;
    take_off_remembered(
        call, [&] { disable_idle_time(call, table); }, [&](own_writes &now) { now.idle.erase(table.handle); });
  }
  cell_blanker blanker(call);
  read_live_cells(call, {cells}, blanker);
  for (const resource_info &resource : calls::resources) {
    if (resource.kind == resource_kind::register_) reset_register(call, resource, std::nullopt);
  }
  for (const auto &each : written.value_set) {
    take_off_remembered(
        call, [&] { delete_from_value_set(call, each.first); },
        [&](own_writes &now) { now.value_set.erase(each.first); });
  }
  if (written.learning_timeout) set_learning_timeout(call, 0);
  const auto now = call.shell.written();
  now->learning_timeout.reset();
  now->cells.clear();
  now->group_sizes.clear();
}

}  // namespace tarvex::shell
