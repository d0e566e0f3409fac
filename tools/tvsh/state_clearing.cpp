// Takes the state off a switch.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
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

/// Deletes entries, defaults, groups and members, and counts.
class object_deleter {
 public:
  explicit object_deleter(const invocation &call) : call_(call)
  {
    for (const table_info &table : calls::tables) {
      if (!table.fields.empty()) total_ += entry_count(table, call.where());
      if (default_entry(table, call.where())) ++total_;
    }
    for (const profile_info &profile : calls::profiles) {
      total_ += all_of(handle_walk::groups(profile, call.where())).size();
      total_ += all_of(handle_walk::members(profile, call.where())).size();
    }
  }

  /// From the last to the first, so that a switch that gives free places out again, the latest first, has the next
  /// entries in the same order.
  void delete_entries(const table_info &table)
  {
    function_call remove(function_for(family_id::entry_delete, table), call_.where());
    for (const std::uint32_t handle : all_of(handle_walk::entries(table, call_.where())) | std::views::reverse) {
      next();
      found_there(remove.give(entry_hdl, handle).status(),
                  [&] { return "deleting entry " + std::to_string(handle) + " of " + table.name; });
    }
  }

  void reset_default(const table_info &table)
  {
    if (!default_entry(table, call_.where())) return;
    next();
    function_call(function_for(family_id::reset_default_entry, table), call_.where())
        .must(std::string("resetting the default of ") + table.name);
  }

  void delete_members(const profile_info &profile)
  {
    for (const std::uint32_t group : all_of(handle_walk::groups(profile, call_.where())) | std::views::reverse) {
      next();
      delete_group(call_, profile, group);
    }
    function_call remove(function_for(family_id::del_member, profile, mbr_hdl), call_.where());
    for (const std::uint32_t member : all_of(handle_walk::members(profile, call_.where())) | std::views::reverse) {
      next();
      found_there(remove.give(mbr_hdl, member).status(),
                  [&] { return "deleting member " + std::to_string(member) + " of " + profile.name; });
    }
  }

  /// "3 of 10 entries, groups and members deleted, 7 not"
  std::string text() const
  {
    const std::uint64_t done = begun_ == 0 ? 0 : begun_ - 1;
    return std::to_string(done) + " of " + std::to_string(total_) + " entries, groups and members deleted, " +
           std::to_string(total_ - std::min(done, total_)) + " not";
  }

 private:
  /// Before each.
  void next()
  {
    ++begun_;
    call_.shell.check_interrupt();
    if (begun_ % 8192 == 0) call_.out.progress("clearing", begun_, total_);
  }

  const invocation &call_;
  std::uint64_t begun_ = 0;
  std::uint64_t total_ = 0;
};

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

namespace {

/// What is no entry, group or member.
void clear_settings(const invocation &call, const own_writes &written, std::uint32_t cells)
{
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

}  // namespace

void clear_state(const invocation &call, std::uint32_t cells)
{
  // Cells that cannot be read are found out now, while the switch holds all that it held.
  state_counter readable;
  read_live_cells(call, {cells}, readable);
  const own_writes written = *call.shell.written();
  object_deleter objects(call);
  try {
    for (const table_info &table : calls::tables | std::views::reverse) {
      if (!table.fields.empty()) objects.delete_entries(table);
      objects.reset_default(table);
    }
    for (const profile_info &profile : calls::profiles) {
      if (written.fallback_members.contains(profile.selector_table)) {
        take_off_remembered(
            call, [&] { set_fallback(call, profile, std::nullopt); },
            [&](own_writes &now) { now.fallback_members.erase(profile.selector_table); });
      }
      objects.delete_members(profile);
    }
  } catch (const shell_error &error) {
    throw shell_error(error.code(), std::string(error.what()) + "; " + objects.text());
  }
  try {
    clear_settings(call, written, cells);
  } catch (const shell_error &error) {
    throw shell_error(error.code(), std::string(error.what()) +
                                        "; all entries, groups and members are deleted, and not all cells and settings "
                                        "are as they were at first");
  }
}

}  // namespace tarvex::shell
