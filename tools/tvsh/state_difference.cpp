// SPDX-License-Identifier: Apache-2.0
#include "state_difference.h"

#include <algorithm>
#include <cstring>
#include <ranges>
#include <unordered_map>

#include "cells.h"
#include "entry_contents.h"
#include "match_fault.h"
#include "profile_matching.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

/// Commands that are stamped with the line that the finder is at.
class operation_list {
 public:
  explicit operation_list(const std::uint64_t &line) : line_(line) {}

  void push_back(std::string command) { all_.push_back({std::move(command), line_}); }
  void move_to(std::vector<operation> &to) { std::ranges::move(all_, std::back_inserter(to)); }

 private:
  const std::uint64_t &line_;
  std::vector<operation> all_;
};

const model_table no_table;
const model_profile no_profile;
const model_resource no_resource;

template <typename Rows, typename Row, typename Model>
const Model &part_of(const Rows &rows, const Row &row, const Model &none)
{
  const auto found = rows.find(&row);
  return found == rows.end() ? none : found->second;
}

record_memory record_of(const record_bytes &bytes)
{
  record_memory record;
  std::memcpy(record.data(), bytes.data(), std::min(bytes.size(), record.bytes.size()));
  return record;
}

std::string meter_text(const pd_meter_spec_t &meter)
{
  return " cir=" + std::to_string(meter.cir) + " cburst=" + std::to_string(meter.cburst) +
         " pir=" + std::to_string(meter.pir) + " pburst=" + std::to_string(meter.pburst) +
         (meter.meter_type == PD_METER_TYPE_COLOR_AWARE ? " type=aware" : " type=unaware") +
         (needs_force(meter) ? " --force" : "");
}

std::string counter_text(const pd_counter_value_t &counter)
{
  return " packets=" + std::to_string(counter.packets) + " bytes=" + std::to_string(counter.bytes);
}

bool same_meters(const model_entry &left, const model_entry &right)
{
  if (left.meter == nullptr || right.meter == nullptr) return left.meter == right.meter;
  return same_meter(*left.meter, *right.meter);
}

class difference_finder {
 public:
  difference_finder(const state_model &there, const state_model &wanted, bool live)
      : there_(there), wanted_(wanted), live_(live)
  {
  }

  std::vector<operation> find()
  {
    for (const profile_info &profile : calls::profiles) compare_profile(profile);
    for (const table_info &table : calls::tables) compare_idle(table);
    for (const table_info &table : calls::tables) compare_table(table);
    for (const resource_info &resource : calls::resources) compare_resource(resource);
    compare_services();
    std::vector<operation> all;
    for (operation_list *const list : {&names_, &deleted_entries_, &members_, &groups_, &settings_, &entries_, &behind_,
                                       &deleted_groups_, &deleted_members_}) {
      list->move_to(all);
    }
    return all;
  }

 private:
  std::string name_there(const profile_info &profile, bool is_group, std::uint32_t id)
  {
    if (live_) return std::to_string(id);
    const std::string kind = is_group ? "group" : "member";
    const std::string name = kind + std::to_string(id) + '.' + profile.name;
    if (named_.insert(name).second) {
      const model_profile &model = part_of(there_.profiles, profile, no_profile);
      const auto position = is_group ? std::ranges::find(model.groups, id, &model_group::id) - model.groups.begin()
                                     : std::ranges::find(model.members, id, &model_member::id) - model.members.begin();
      names_.push_back("let " + name + ' ' + kind + ' ' + profile.name + ' ' + std::to_string(position + 1));
    }
    return '$' + name;
  }

  static std::string name_of_new(const profile_info &profile, bool is_group, std::uint32_t id)
  {
    return std::string(is_group ? "newgroup" : "newmember") + std::to_string(id) + '.' + profile.name;
  }

  /// The handle of a wanted member or group, or the name that it has by then.
  std::string handle_text(const profile_info &profile, bool is_group, std::uint32_t id)
  {
    const profile_matching &matching = matchings_[&profile];
    const auto &pairs = is_group ? matching.groups : matching.members;
    const auto found = pairs.find(id);
    return found != pairs.end() ? name_there(profile, is_group, found->second)
                                : '$' + name_of_new(profile, is_group, id);
  }

  /// Whether a reference of the state that is there is the wanted one.
  bool same_reference(const profile_info &profile, bool is_group, std::uint32_t there, std::uint32_t wanted)
  {
    const profile_matching &matching = matchings_[&profile];
    const auto &pairs = is_group ? matching.groups : matching.members;
    const auto found = pairs.find(wanted);
    return found != pairs.end() && found->second == there;
  }

  void compare_profile(const profile_info &profile)
  {
    const model_profile &there = part_of(there_.profiles, profile, no_profile);
    const model_profile &wanted = part_of(wanted_.profiles, profile, no_profile);
    const table_info &table = table_of(profile.table);
    matchings_[&profile] =
        match_profile(there, part_of(there_.tables, table, no_table), wanted, part_of(wanted_.tables, table, no_table));
    const profile_matching &matching = matchings_[&profile];
    const std::string of_profile = std::string(" ") + profile.name;

    std::map<std::uint32_t, const model_member *> members;
    for (const model_member &each : there.members) members[each.id] = &each;
    for (const model_member &each : wanted.members) {
      line_ = each.line;
      const auto pair = matching.members.find(each.id);
      if (pair == matching.members.end()) {
        members_.push_back("member" + of_profile + " add" + action_text(*each.action.action, each.action.parameters) +
                           " as=" + name_of_new(profile, false, each.id));
        continue;
      }
      if (members.at(pair->second)->action != each.action) {
        members_.push_back("member" + of_profile + " modify " + name_there(profile, false, pair->second) +
                           action_text(*each.action.action, each.action.parameters));
      }
      members.erase(pair->second);
    }
    line_ = 0;
    for (const auto &[id, member] : members | std::views::reverse) {
      deleted_members_.push_back("member" + of_profile + " delete " + name_there(profile, false, id));
    }

    std::map<std::uint32_t, const model_group *> groups;
    for (const model_group &each : there.groups) groups[each.id] = &each;
    for (const model_group &each : wanted.groups) {
      line_ = each.line;
      const auto pair = matching.groups.find(each.id);
      if (pair == matching.groups.end()) {
        const std::size_t size =
            each.size.value_or(std::max<std::uint32_t>(1, static_cast<std::uint32_t>(each.members.size())));
        groups_.push_back("group" + of_profile + " create " + std::to_string(size) +
                          " as=" + name_of_new(profile, true, each.id));
        compare_members(profile, profile_group{}, each);
        if (each.members.empty()) let_refer_to(profile, each.id, wanted);
      } else {
        const model_group &group = *groups.at(pair->second);
        compare_members(profile, group, each);
        if (group.members.empty() && each.members.empty() && !is_referred_to(there_, profile, group.id)) {
          let_refer_to(profile, each.id, wanted);
        }
        groups.erase(pair->second);
      }
    }
    line_ = 0;
    for (const auto &[id, group] : groups | std::views::reverse) {
      deleted_groups_.push_back("group" + of_profile + " delete " + name_there(profile, true, id));
    }
    compare_fallback(profile, there, wanted);
  }

  void compare_members(const profile_info &profile, const profile_group &there, const profile_group &wanted)
  {
    // Only what is written is named.
    const auto change = [&](const char *verb, const std::string &member) {
      groups_.push_back(std::string("group ") + profile.name + ' ' + verb + ' ' +
                        handle_text(profile, true, wanted.id) + ' ' + member);
    };
    std::map<std::uint32_t, bool> left;  // states, by number
    for (const group_member &each : there.members) left[each.id] = each.active;
    std::vector<const group_member *> added;
    for (const group_member &each : wanted.members) {
      const auto pair = matchings_[&profile].members.find(each.id);
      const auto same = pair == matchings_[&profile].members.end() ? left.end() : left.find(pair->second);
      if (same == left.end()) {
        added.push_back(&each);
        continue;
      }
      if (same->second != each.active) {
        change(each.active ? "enable" : "disable", handle_text(profile, false, each.id));
      }
      left.erase(same);
    }
    // A full group has no room for another before one has gone.
    for (const auto &[id, active] : left) change("remove", name_there(profile, false, id));
    for (const group_member *const each : added) {
      change("add", handle_text(profile, false, each->id));
      if (!each->active) change("disable", handle_text(profile, false, each->id));
    }
  }

  static bool is_referred_to(const state_model &state, const profile_info &profile, std::uint32_t group)
  {
    const model_table &table = part_of(state.tables, table_of(profile.table), no_table);
    const auto refers = [&](const model_entry &entry) { return entry.is_group && entry.reference == group; };
    return std::ranges::any_of(table.entries, refers) ||
           (table.default_entry != nullptr && refers(*table.default_entry));
  }

  /// No entry can refer to a group that never had a member: one that is empty has one for a moment.
  void let_refer_to(const profile_info &profile, std::uint32_t group, const model_profile &wanted)
  {
    if (!is_referred_to(wanted_, profile, group) || wanted.members.empty()) return;
    for (const char *const verb : {" add ", " remove "}) {
      groups_.push_back(std::string("group ") + profile.name + verb + handle_text(profile, true, group) + ' ' +
                        handle_text(profile, false, wanted.members.front().id));
    }
  }

  void compare_fallback(const profile_info &profile, const model_profile &there, const model_profile &wanted)
  {
    if (!there.fallback && !wanted.fallback) return;
    if (there.fallback && wanted.fallback && same_reference(profile, false, *there.fallback, *wanted.fallback)) return;
    line_ = wanted_.line_of(&profile);
    groups_.push_back(std::string("group ") + profile.name + " fallback " +
                      (wanted.fallback ? handle_text(profile, false, *wanted.fallback) : "none"));
  }

  void compare_idle(const table_info &table)
  {
    const auto &there = part_of(there_.tables, table, no_table).idle;
    const auto &wanted = part_of(wanted_.tables, table, no_table).idle;
    if (there == wanted) return;
    line_ = wanted_.line_of(&table);
    const std::string idle = std::string("idle ") + table.name;
    settings_.push_back(wanted ? idle + " enable mode=" + (wanted->notify ? "notify" : "poll") +
                                     " interval=" + std::to_string(wanted->interval) +
                                     " max-ttl=" + std::to_string(wanted->largest_ttl)
                               : idle + " disable");
  }

  std::string key_text(const table_info &table, const model_entry &entry)
  {
    std::uint32_t priority = 0;
    std::memcpy(&priority, entry.key.data() + table.record_size, sizeof priority);
    const record_memory key = record_of(entry.key.substr(0, table.record_size));
    return texts_.key(table, key, priority) + force(fields_.of(table), key);
  }

  std::string action_text(const action_info &action, const record_bytes &parameters)
  {
    const record_memory record = record_of(parameters);
    return texts_.action(action, record) + force(fields_.of(action), record);
  }

  /// Values that were read from a switch are written as they are.
  static const char *force(std::span<const shown_field> fields, const record_memory &record)
  {
    return needs_force(fields, record.data()) ? " --force" : "";
  }

  /// What an entry does, behind its key: action, parameters and meter, or what it refers to.
  std::string body_text(const table_info &table, const model_entry &entry)
  {
    if (table.profile == nullptr) {
      return action_text(*entry.action.action, entry.action.parameters) +
             (entry.meter != nullptr ? meter_text(*entry.meter) : "");
    }
    return (entry.is_group ? " group=" : " member=") + handle_text(*table.profile, entry.is_group, entry.reference);
  }

  bool same_body(const table_info &table, const model_entry &there, const model_entry &wanted)
  {
    if (table.profile == nullptr) return there.action == wanted.action && same_meters(there, wanted);
    return there.is_group == wanted.is_group &&
           same_reference(*table.profile, there.is_group, there.reference, wanted.reference);
  }

  static std::string verb(const table_info &table, const char *name)
  {
    return table.profile == nullptr ? std::string(name) + ' ' + table.name
                                    : std::string("entry ") + table.name + ' ' + name;
  }

  void compare_table(const table_info &table)
  {
    const model_table &there = part_of(there_.tables, table, no_table);
    const model_table &wanted = part_of(wanted_.tables, table, no_table);
    compare_default(table, there.default_entry.get(), wanted.default_entry.get());

    std::unordered_map<std::string_view, const model_entry *> by_key;
    by_key.reserve(there.entries.size());
    for (const model_entry &each : there.entries) by_key.emplace(each.key, &each);
    for (const model_entry &each : wanted.entries) {
      line_ = each.line;
      const auto found = by_key.find(each.key);
      if (found == by_key.end()) {
        std::string line = verb(table, "add") + key_text(table, each) + body_text(table, each);
        if (each.ttl != 0) line += " ttl=" + std::to_string(each.ttl);
        entries_.push_back(std::move(line));
        compare_counts(table, nullptr, each.counter.get(), [&] { return key_text(table, each); });
        continue;
      }
      if (!same_body(table, *found->second, each)) {
        entries_.push_back(verb(table, "modify") + key_text(table, each) + body_text(table, each));
      }
      compare_counts(table, found->second->counter.get(), each.counter.get(), [&] { return key_text(table, each); });
      if (wanted_.counts() && found->second->ttl != each.ttl) {
        behind_.push_back(std::string("idle ") + table.name + " ttl" + key_text(table, each) +
                          " ttl=" + std::to_string(each.ttl));
      }
      by_key.erase(found);
    }
    line_ = 0;
    if (by_key.empty()) return;
    for (const model_entry &each : there.entries | std::views::reverse) {
      const auto found = by_key.find(each.key);
      if (found != by_key.end() && found->second == &each) {
        deleted_entries_.push_back(std::string("delete ") + table.name + key_text(table, each));
      }
    }
  }

  void compare_default(const table_info &table, const model_entry *there, const model_entry *wanted)
  {
    line_ = wanted == nullptr ? 0 : wanted->line;
    if (wanted == nullptr) {
      if (there != nullptr) deleted_entries_.push_back(std::string("reset-default ") + table.name);
      return;
    }
    if (there == nullptr || !same_body(table, *there, *wanted)) {
      entries_.push_back(verb(table, "set-default") + body_text(table, *wanted));
    }
    compare_counts(table, there != nullptr ? there->counter.get() : nullptr, wanted->counter.get(),
                   [] { return std::string(" default"); });
  }

  template <typename Name>
  void compare_counts(const table_info &table, const pd_counter_value_t *there, const pd_counter_value_t *wanted,
                      Name name)
  {
    if (!wanted_.counts()) return;
    static constexpr pd_counter_value_t none{};
    const pd_counter_value_t &left = there != nullptr ? *there : none;
    const pd_counter_value_t &right = wanted != nullptr ? *wanted : none;
    if (same_cell(left, right)) return;
    behind_.push_back(std::string("counter ") + direct_counter(table)->name + name() + counter_text(right));
  }

  static std::string cell_command(const resource_info &resource, const std::string &index, const cell_value &value)
  {
    const bool unlikely = index != "all" && std::stoul(index) >= unlikely_index;
    const std::string of_cell = std::string(" ") + resource.name + ' ' + index + (unlikely ? " --force" : "");
    if (const auto *const counter = std::get_if<pd_counter_value_t>(&value)) {
      return "counter" + of_cell + counter_text(*counter);
    }
    if (const auto *const meter = std::get_if<pd_meter_spec_t>(&value)) return "meter" + of_cell + meter_text(*meter);
    if (const auto *const wred = std::get_if<pd_wred_spec_t>(&value)) {
      return "wred" + of_cell + " time=" + real_text(wred->time_constant) +
             " min=" + std::to_string(wred->min_threshold) + " max=" + std::to_string(wred->max_threshold) +
             " probability=" + real_text(wred->max_probability);
    }
    return "register" + of_cell + ' ' + std::to_string(std::get<std::uint8_t>(value));
  }

  static cell_value blank_of(const resource_info &resource)
  {
    switch (resource.kind) {
      case resource_kind::counter: return pd_counter_value_t{};
      case resource_kind::meter: return pd_meter_spec_t{0, 0, 0, 0, PD_METER_TYPE_COLOR_UNAWARE};
      case resource_kind::wred: return pd_wred_spec_t{};
      default: return std::uint8_t{0};
    }
  }

  void compare_resource(const resource_info &resource)
  {
    const model_resource &there = part_of(there_.resources, resource, no_resource);
    const model_resource &wanted = part_of(wanted_.resources, resource, no_resource);
    const cell_value blank = blank_of(resource);
    const cell_value rest_there = there.rest.value_or(blank);
    const cell_value rest = wanted.rest.value_or(blank);
    line_ = wanted_.line_of(&resource);
    std::map<std::uint32_t, cell_value> left;  // that is there once all cells have been set
    if (same_cell(rest_there, rest)) {
      left = there.cells;
    } else {
      behind_.push_back(cell_command(resource, "all", rest));
    }
    for (const auto &[index, value] : wanted.cells) {
      const auto line = wanted.lines.find(index);
      line_ = line == wanted.lines.end() ? 0 : line->second;
      const auto found = left.find(index);
      if (!same_cell(found != left.end() ? found->second : rest, value)) {
        behind_.push_back(cell_command(resource, std::to_string(index), value));
      }
      if (found != left.end()) left.erase(found);
    }
    line_ = 0;
    for (const auto &[index, value] : left) {
      if (!same_cell(value, rest)) behind_.push_back(cell_command(resource, std::to_string(index), rest));
    }
  }

  void compare_services()
  {
    for (const auto &[hash, wanted] : wanted_.hashes) {
      line_ = wanted_.line_of(hash);
      const auto there = there_.hashes.find(hash);
      const std::string calculation = std::string("hash ") + hash->name;
      if (there == there_.hashes.end() || there->second.seed != wanted.seed) {
        behind_.push_back(calculation + " seed " + hexadecimal(wanted.seed));
      }
      if (there != there_.hashes.end() && there->second.selected == wanted.selected) continue;
      std::string fields;
      for (std::size_t i = 0; i < wanted.selected.size(); ++i) {
        if (wanted.selected[i]) fields += ' ' + std::to_string(i);
      }
      behind_.push_back(calculation + " fields" + fields);
    }
    line_ = 0;
    compare_value_sets(there_.value_sets, wanted_.value_sets, " delete");
    line_ = wanted_.line_of(&wanted_.value_sets);
    compare_value_sets(wanted_.value_sets, there_.value_sets, " add");
    line_ = wanted_.line_of(&wanted_.timeout);
    if (wanted_.timeout && wanted_.timeout != there_.timeout) {
      behind_.push_back("digests timeout " + std::to_string(*wanted_.timeout));
    }
  }

  using value_set = std::multiset<value_set_entry>;

  void compare_value_sets(const value_set &with, const value_set &without, const char *verb)
  {
    std::vector<value_set_entry> entries;
    std::ranges::set_difference(with, without, std::back_inserter(entries));
    for (const value_set_entry &entry : entries) {
      behind_.push_back(std::string("value-set") + verb + " value=" + hexadecimal(entry.value) +
                        " mask=" + hexadecimal(entry.mask) + " scope=" + std::to_string(entry.scope) +
                        " index=" + std::to_string(entry.index) + " sub=" + std::to_string(entry.sub_index) +
                        ((entry.value & ~entry.mask) != 0 ? " --force" : ""));
    }
  }

  const state_model &there_;
  const state_model &wanted_;
  bool live_;
  std::map<const profile_info *, profile_matching> matchings_;
  std::set<std::string> named_;
  entry_texts texts_;
  known_fields fields_;
  std::uint64_t line_ = 0;  // of the wanted part that is compared; 0 where there is none
  operation_list names_{line_}, deleted_entries_{line_}, members_{line_}, groups_{line_}, settings_{line_},
      entries_{line_}, behind_{line_}, deleted_groups_{line_}, deleted_members_{line_};
};

}  // namespace

std::vector<operation> difference(const state_model &there, const state_model &wanted, bool live)
{
  return difference_finder(there, wanted, live).find();
}

}  // namespace tarvex::shell
