// The command that holds what updates said was meant against what the hardware holds.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <chrono>
#include <set>
#include <thread>

#include "commands.h"
#include "counted.h"
#include "entry_contents.h"
#include "group_reader.h"
#include "handle_walk.h"
#include "member_reader.h"
#include "pd_calls.h"
#include "placed_contents.h"
#include "report.h"
#include "session.h"
#include "time_text.h"
#include "verbs.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

using namespace std::chrono_literals;

/// Where meant and held may differ: an entry, or a member or group of a profile.
struct suspect {
  const table_info *table = nullptr;
  const profile_info *profile = nullptr;
  bool is_group = false;
  std::uint32_t handle = 0;
};

struct profile_readers {
  profile_readers(const profile_info &profile, const target &where)
      : members(profile, where, true), groups(profile, where)
  {
  }

  member_reader members;
  group_reader groups;
};

struct finding {
  std::string_view what;
  std::string meant;
  std::string hardware;
};

/// What is meant changes while the hardware is read: what seems to differ at first is looked at again, one by one, and
/// again after pauses, as a write is told of only once it was done.
class auditor {
 public:
  auditor(const invocation &call, const update_record &record, const meant_state &meant)
      : call_(call), record_(record), meant_(meant)
  {
  }

  exit_code audit()
  {
    for (const table_info &table : calls::tables) suspect_entries(table);
    for (const profile_info &profile : calls::profiles) suspect_members(profile);
    for (const profile_info &profile : calls::profiles) suspect_groups(profile);
    const std::vector<finding> findings = settle();
    if (!record_.is_since(meant_.since)) throw usage_error("the record of updates was ended meanwhile");
    report rows(call_.out, call_.chosen, "differences",
                {{"of", 26}, {"handle", 10}, {"what", 9}, {"meant", 60}, {"hardware"}});
    for (std::size_t i = 0; i < findings.size(); ++i) {
      const suspect &of = suspects_[i];
      rows.cell(of.table != nullptr ? of.table->name : of.profile->name).number(of.handle);
      rows.cell(findings[i].what).cell(findings[i].meant).cell(findings[i].hardware).end_row();
    }
    rows.finish();
    call_.out.note(counted(meant_.updates, "update") + " since " + time_text(meant_.since) + "; " +
                   std::to_string(compared_) + " compared, " + std::to_string(findings.size()) + " different");
    if (untold_ != 0) {
      call_.out.note(counted(untold_, "was", "were") + " there by then, and only whether they still are is known");
    }
    return findings.empty() ? exit_code::ok : exit_code::differences;
  }

 private:
  const meant_objects &objects_of(std::uint32_t source) const
  {
    static const meant_objects none;
    const auto found = meant_.objects.find(source);
    return found == meant_.objects.end() ? none : found->second;
  }

  /// Handles against handles: what the hardware has and nobody told of, and what went without a word.
  void suspect_handles(const suspect &of, const meant_objects &objects, handle_walk walk)
  {
    std::unordered_set<std::uint32_t> missing = objects.untold;
    untold_ += missing.size();
    while (const auto handle = walk.next()) {
      call_.shell.check_interrupt();
      if (missing.erase(*handle) == 0 && !objects.placed.contains(*handle)) add(of, *handle);
    }
    for (const std::uint32_t handle : missing) add(of, handle);
  }

  void add(suspect of, std::uint32_t handle)
  {
    of.handle = handle;
    suspects_.push_back(of);
  }

  /// Suspects it where it differs at first sight.
  void check(const suspect &of, std::uint32_t handle)
  {
    call_.shell.check_interrupt();
    add(of, handle);
    if (!find(suspects_.back())) suspects_.pop_back();
  }

  void suspect_entries(const table_info &table)
  {
    const suspect of{.table = &table};
    const meant_objects &objects = objects_of(table.handle);
    for (const auto &[handle, placement] : objects.placed) {
      if (++compared_ % 1024 == 0) call_.shell.check_interrupt();
      if (!same_in_hardware(table, handle, placement)) add(of, handle);
    }
    if (!table.fields.empty()) suspect_handles(of, objects, handle_walk::entries(table, call_.where()));
  }

  void suspect_members(const profile_info &profile)
  {
    const suspect of{.profile = &profile};
    const meant_objects &objects = objects_of(profile.action_data_table);
    for (const auto &[handle, placement] : objects.placed) {
      ++compared_;
      check(of, handle);
    }
    suspect_handles(of, objects, handle_walk::members(profile, call_.where()));
  }

  void suspect_groups(const profile_info &profile)
  {
    const suspect of{.profile = &profile, .is_group = true};
    std::set<std::uint32_t> groups;
    for (const auto &[key, members] : meant_.groups) {
      if (key.first == profile.selector_table) groups.insert(key.second);
    }
    compared_ += groups.size();
    handle_walk walk = handle_walk::groups(profile, call_.where());
    while (const auto group = walk.next()) groups.insert(*group);
    for (const std::uint32_t group : groups) check(of, group);
  }

  /// Leaves the suspects that differ each time that they are looked at, with what was found the last time.
  std::vector<finding> settle()
  {
    static constexpr std::array<std::chrono::milliseconds, 4> pauses = {0ms, 10ms, 30ms, 90ms};
    std::vector<finding> findings;
    for (const std::chrono::milliseconds pause : pauses) {
      if (suspects_.empty()) break;
      std::this_thread::sleep_for(pause);
      findings.clear();
      std::vector<suspect> left;
      for (const suspect &each : suspects_) {
        call_.shell.check_interrupt();
        std::optional<finding> found = find(each);
        if (!found) continue;
        left.push_back(each);
        findings.push_back(std::move(*found));
      }
      suspects_ = std::move(left);
    }
    return findings;
  }

  /// Nothing where meant and held agree by now.
  std::optional<finding> find(const suspect &of)
  {
    if (of.table != nullptr) return find_entry(*of.table, of.handle);
    return of.is_group ? find_group(*of.profile, of.handle) : find_member(*of.profile, of.handle);
  }

  /// Reads the hardware while what is meant stands still: what a write changed meanwhile is read anew. What never
  /// stands still is written all the time, and so is not left different.
  template <typename Meant, typename Compare>
  static std::optional<finding> find_between(Meant meant, Compare compare)
  {
    constexpr int most_readings = 100;
    auto before = meant();
    for (int i = 0; i < most_readings; ++i) {
      std::optional<finding> found = compare(before);
      if (!found) return found;
      auto behind = meant();
      if (before == behind) return found;
      before = std::move(behind);
    }
    return std::nullopt;
  }

  /// Of an entry or a member: `text` of what is in the hardware, nothing where it is not there; `placed_text` of what
  /// was told, and whether that is the same.
  template <typename Text, typename Placed, typename Same>
  std::optional<finding> find_object(std::uint32_t source, std::uint32_t handle, Text text, Placed placed_text,
                                     Same same)
  {
    return find_between(
        [&] { return record_.object(source, handle); },
        [&](const update_record::known_object &meant) -> std::optional<finding> {
          if (!meant.placed.empty() && same(meant.placed)) return std::nullopt;
          const std::optional<std::string> there = text();
          if (!meant.placed.empty()) {
            return finding{there ? "different" : "lost", placed_text(meant.placed), there.value_or("nothing")};
          }
          if (meant.untold == there.has_value()) return std::nullopt;
          return meant.untold ? finding{"lost", "(unknown)", "nothing"} : finding{"untold", "", *there};
        });
  }

  bool same_in_hardware(const table_info &table, std::uint32_t handle, const std::vector<std::byte> &placement) const
  {
    return calls::pd::plcmt_data_eq_to_hw(call_.where().session, static_cast<pd_dev_id_t>(call_.where().device),
                                          table.handle, handle, placement.data()) != 0;
  }

  std::optional<finding> find_entry(const table_info &table, std::uint32_t handle)
  {
    if (table_ != &table) {
      table_ = &table;
      entries_.emplace(table, call_.where(), true);
    }
    return find_object(
        table.handle, handle,
        [&]() -> std::optional<std::string> {
          const table_entry *const entry = entries_->read_if_there(handle);
          return entry != nullptr ? std::optional(texts_.entry(table, *entry)) : std::nullopt;
        },
        [&](const auto &placement) { return texts_.entry(table, placed_entry_of(table, placement, call_.where())); },
        [&](const auto &placement) { return same_in_hardware(table, handle, placement); });
  }

  profile_readers &readers_of(const profile_info &profile)
  {
    return of_profiles_.try_emplace(&profile, profile, call_.where()).first->second;
  }

  std::optional<finding> find_member(const profile_info &profile, std::uint32_t handle)
  {
    member_reader &reader = readers_of(profile).members;
    const auto text_of_member = [&](const profile_member &member) {
      return texts_.action(*member.action, member.parameters).substr(1);
    };
    return find_object(
        profile.action_data_table, handle,
        [&]() -> std::optional<std::string> {
          const profile_member *const member = reader.read_if_there(handle);
          return member != nullptr ? std::optional(text_of_member(*member)) : std::nullopt;
        },
        [&](const auto &placement) { return text_of_member(placed_member_of(profile, placement, call_.where())); },
        [&](const auto &placement) {
          const profile_member *const member = reader.read_if_there(handle);
          const profile_member meant = placed_member_of(profile, placement, call_.where());
          return member != nullptr && meant.action == member->action &&
                 same_parameters(*meant.action, meant.parameters.data(), member->parameters.data());
        });
  }

  bool same_parameters(const action_info &action, const void *left, const void *right) const
  {
    if (action.params.empty()) return true;
    const exported_function *const compare = find_function(family_id::action_specs_are_equal, &action);
    function_call call(*compare, call_.where());
    return (call.give(action_spec, left).give(action_spec, right, 1).make() & 0xff) != 0;
  }

  static std::string text_of(const std::optional<group_members> &members)
  {
    if (!members) return "nothing";
    std::string text = "group of";
    for (const auto &[member, active] : *members) text += ' ' + std::to_string(member) + (active ? "" : " (inactive)");
    return text;
  }

  std::optional<finding> find_group(const profile_info &profile, std::uint32_t handle)
  {
    return find_between([&] { return record_.group(profile.selector_table, handle); },
                        [&](const std::optional<group_members> &meant) -> std::optional<finding> {
                          std::optional<group_members> members;
                          if (const auto there = readers_of(profile).groups.members_if_there(handle)) {
                            members.emplace();
                            for (const group_member &each : *there) members->emplace(each.id, each.active);
                          }
                          if (meant == members) return std::nullopt;
                          return finding{!meant     ? "untold"
                                         : !members ? "lost"
                                                    : "different",
                                         meant ? text_of(meant) : "", text_of(members)};
                        });
  }

  const invocation &call_;
  const update_record &record_;
  const meant_state &meant_;
  entry_texts texts_;
  std::vector<suspect> suspects_;
  const table_info *table_ = nullptr;  // of the reader
  std::optional<entry_reader> entries_;
  std::map<const profile_info *, profile_readers> of_profiles_;
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
  const exit_code code = auditor(call, memory.meant, *meant).audit();
  if (const std::size_t displaced = memory.updates.displaced(); displaced != 0) {
    call.out.note("the program put callbacks of its own in the place of " + std::to_string(displaced) +
                  " since: what they were told is missing; 'audit off' and 'audit on' begin anew");
  }
  return code;
}

}  // namespace tarvex::shell
