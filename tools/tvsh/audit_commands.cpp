// The command that holds what updates said was meant against what the hardware holds.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>

#include "commands.h"
#include "entry_contents.h"
#include "group_reader.h"
#include "handle_walk.h"
#include "placed_contents.h"
#include "report.h"
#include "session.h"
#include "status_text.h"
#include "tarvex_pd/actions.h"
#include "tarvex_pd/dispatch.h"
#include "time_text.h"
#include "verbs.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

/// Rows of differences, the report begun with the first.
class difference_rows {
 public:
  explicit difference_rows(const invocation &call)
      : rows_(call.out, call.chosen, "differences",
              {{"of", 26}, {"handle", 10}, {"what", 9}, {"meant", 60}, {"hardware"}})
  {
  }

  void add(std::string_view of, std::uint32_t handle, std::string_view what, const std::string &meant,
           const std::string &hardware)
  {
    rows_.cell(of).number(handle).cell(what).cell(meant).cell(hardware).end_row();
    ++count_;
  }
  void finish() { rows_.finish(); }
  std::uint64_t count() const { return count_; }

 private:
  report rows_;
  std::uint64_t count_ = 0;
};

class auditor {
 public:
  auditor(const invocation &call, const meant_state &meant) : call_(call), meant_(meant), rows_(call) {}

  exit_code audit()
  {
    for (const table_info &table : calls::tables) audit_table(table);
    for (const profile_info &profile : calls::profiles) audit_members(profile);
    for (const profile_info &profile : calls::profiles) audit_groups(profile);
    rows_.finish();
    call_.out.note(std::to_string(meant_.updates) + " updates since " + time_text(meant_.since) + "; " +
                   std::to_string(compared_) + " compared, " + std::to_string(rows_.count()) + " different");
    if (untold_ != 0) {
      call_.out.note(std::to_string(untold_) + " were there by then, and only whether they still are is known");
    }
    return rows_.count() == 0 ? exit_code::ok : exit_code::differences;
  }

 private:
  const meant_objects &objects_of(std::uint32_t source) const
  {
    static const meant_objects none;
    const auto found = meant_.objects.find(source);
    return found == meant_.objects.end() ? none : found->second;
  }

  /// Handles against handles: what the hardware has and nobody told of, and what went without a word.
  template <typename Text>
  void compare_handles(std::string_view of, const meant_objects &objects, handle_walk walk, Text text)
  {
    std::unordered_set<std::uint32_t> missing = objects.untold;
    untold_ += missing.size();
    while (const auto handle = walk.next()) {
      call_.shell.check_interrupt();
      if (missing.erase(*handle) != 0 || objects.placed.contains(*handle)) continue;
      rows_.add(of, *handle, "untold", "", text(*handle));
    }
    for (const std::uint32_t handle : missing) rows_.add(of, handle, "lost", "(unknown)", "nothing");
  }

  std::string hardware_text(entry_reader &reader, const table_info &table, std::uint32_t handle)
  {
    try {
      return texts_.entry(table, reader.read(handle));
    } catch (const refused_error &error) {
      return "nothing: " + status_text(error.status());
    }
  }

  void audit_table(const table_info &table)
  {
    const meant_objects &objects = objects_of(table.handle);
    entry_reader reader(table, call_.where(), true);
    for (const auto &[handle, placement] : objects.placed) {
      if (++compared_ % 1024 == 0) call_.shell.check_interrupt();
      if (p4_pd_tarvex_switch_plcmt_data_eq_to_hw(call_.where().session, static_cast<pd_dev_id_t>(call_.where().device),
                                                  table.handle, handle, placement.data()) != 0) {
        continue;
      }
      const std::string hardware = hardware_text(reader, table, handle);
      rows_.add(table.name, handle, hardware.starts_with("nothing") ? "lost" : "different",
                texts_.entry(table, placed_entry_of(table, placement, call_.where())), hardware);
    }
    if (table.fields.empty()) return;
    compare_handles(table.name, objects, handle_walk::entries(table, call_.where()),
                    [&](std::uint32_t handle) { return hardware_text(reader, table, handle); });
  }

  void audit_members(const profile_info &profile)
  {
    const meant_objects &objects = objects_of(profile.action_data_table);
    plcmt_action_t found{};
    function_call read(function_for(family_id::get_member, profile, member_action_out), call_.where());
    read.give(read_from_hw, std::uint64_t{1}).give(member_action_out, &found);
    const auto hardware_of = [&](std::uint32_t handle) {
      const auto status = static_cast<pd_status_t>(read.give(mbr_hdl, handle).make());
      if (status != BF_SUCCESS) return "nothing: " + status_text(status);
      record_memory parameters;
      std::memcpy(parameters.data(), found.parameters, calls::actions[found.action].record_size);
      return texts_.action(calls::actions[found.action], parameters).substr(1);
    };
    for (const auto &[handle, placement] : objects.placed) {
      call_.shell.check_interrupt();
      ++compared_;
      const profile_member meant = placed_member_of(profile, placement, call_.where());
      const std::string hardware = hardware_of(handle);
      const bool there = !hardware.starts_with("nothing");
      if (there && meant.action == &calls::actions[found.action] &&
          same_parameters(*meant.action, meant.parameters.data(), found.parameters)) {
        continue;
      }
      rows_.add(profile.name, handle, there ? "different" : "lost",
                texts_.action(*meant.action, meant.parameters).substr(1), hardware);
    }
    compare_handles(profile.name, objects, handle_walk::members(profile, call_.where()), hardware_of);
  }

  bool same_parameters(const action_info &action, const void *left, const void *right) const
  {
    if (action.params.empty()) return true;
    const exported_function *const compare = find_function(
        family_id::action_specs_are_equal, [&](const exported_function &each) { return each.action == &action; });
    function_call call(*compare, call_.where());
    return (call.give(action_spec, left).give(action_spec, right, 1).make() & 0xff) != 0;
  }

  static std::string text_of(const std::map<std::uint32_t, bool> &members)
  {
    std::string text = "group of";
    for (const auto &[member, active] : members) text += ' ' + std::to_string(member) + (active ? "" : " (inactive)");
    return text;
  }

  void audit_groups(const profile_info &profile)
  {
    group_reader reader(profile, call_.where());
    std::map<std::uint32_t, std::map<std::uint32_t, bool>> hardware;
    handle_walk walk = handle_walk::groups(profile, call_.where());
    while (const auto group = walk.next()) {
      call_.shell.check_interrupt();
      std::map<std::uint32_t, bool> &members = hardware[*group];
      for (const group_member &each : reader.members(*group)) members[each.id] = each.active;
    }
    for (const auto &[key, members] : meant_.groups) {
      if (key.first != profile.selector_table) continue;
      ++compared_;
      const auto found = hardware.find(key.second);
      if (found == hardware.end()) {
        rows_.add(profile.name, key.second, "lost", text_of(members), "nothing");
        continue;
      }
      if (found->second != members) {
        rows_.add(profile.name, key.second, "different", text_of(members), text_of(found->second));
      }
      hardware.erase(found);
    }
    for (const auto &[group, members] : hardware) rows_.add(profile.name, group, "untold", "", text_of(members));
  }

  const invocation &call_;
  const meant_state &meant_;
  difference_rows rows_;
  entry_texts texts_;
  std::uint64_t compared_ = 0;
  std::uint64_t untold_ = 0;
};

}  // namespace

exit_code audit_hardware(const invocation &call)
{
  call.expect_at_most(1);
  device_memory &memory = call.shell.memory();
  if (call.has(0)) {
    const std::string &verb = call.words[0];
    if (verb == "on") {
      if (!call.only_checked("recording updates")) memory.meant.begin(call.where(), memory.updates);
    } else if (verb == "off") {
      if (!call.only_checked("ending the record of updates")) memory.meant.end(memory.updates);
    } else {
      throw usage_error("'" + verb + "' is neither on nor off");
    }
    return exit_code::ok;
  }
  const std::optional<meant_state> meant = memory.meant.state();
  if (!meant) throw usage_error("no updates are recorded, so nobody knows what was meant; 'audit on' begins it");
  return auditor(call, *meant).audit();
}

}  // namespace tarvex::shell
