// Walks over members, groups, entries and cells; what cannot be read back comes from the shell's own writes.
//
// SPDX-License-Identifier: Apache-2.0
#include "live_state.h"

#include <algorithm>
#include <set>

#include "counted.h"
#include "group_reader.h"
#include "handle_walk.h"
#include "hash_settings.h"
#include "member_reader.h"
#include "session.h"
#include "status_text.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

constexpr std::uint64_t synchronise = 1;  // bit 0 of a counter's flags
constexpr std::size_t most_register_values = 65536;
constexpr std::uint64_t told_each = 8192;  // entries from one progress to the next

class live_reader {
 public:
  live_reader(const invocation &call, const live_reading &how, state_visitor &to)
      : call_(call), how_(how), to_(to), written_(*call.shell.written())
  {
  }

  void read_cells()
  {
    using enum resource_kind;
    for (const resource_kind kind : {counter, meter, wred, register_}) {
      for (const resource_info &resource : calls::resources) {
        if (resource.kind == kind) read_resource(resource);
      }
    }
  }

  void read()
  {
    for (const profile_info &profile : calls::profiles) read_members(profile);
    for (const profile_info &profile : calls::profiles) read_groups(profile);
    for (const profile_info &profile : calls::profiles) {
      const auto member = written_.fallback_members.find(profile.selector_table);
      if (member != written_.fallback_members.end()) hand_on_fallback(profile, member->second);
    }
    for (const table_info &table : calls::tables) {
      const auto setting = written_.idle.find(table.handle);
      if (setting != written_.idle.end()) to_.idle(table, setting->second);
    }
    for (const table_info &table : calls::tables) read_default(table);
    for (const table_info &table : calls::tables) total_ += entry_count(table, call_.where());
    for (const table_info &table : calls::tables) read_entries(table);
    read_cells();
    for (const hash_info &hash : calls::hashes) to_.hash(hash, read_hash(hash, call_.where()));
    // Handles come back in another order when the state is loaded.
    std::multiset<value_set_entry> value_set;
    for (const auto &[handle, entry] : written_.value_set) value_set.insert(entry);
    for (const value_set_entry &entry : value_set) to_.value_set(entry);
    if (written_.learning_timeout) to_.learning_timeout(*written_.learning_timeout);
    for (const std::string &each : notes_) call_.out.note(each);
  }

 private:
  /// What is read of an entry beside its key and action; the calls are prepared once for a table.
  class extras_reader {
   public:
    extras_reader(const table_info &table, const target &where) : table_(table)
    {
      if (table.idle_time) ttl_.emplace(function_for(family_id::get_ttl, table), where);
      if (const resource_info *const counter = direct_counter(table)) {
        counter_.emplace(function_for(family_id::counter_read, *counter), where);
        counter_->give(read_flags, synchronise).give(counter_value_out, &counter_value_);
      }
      for (const resource_info &resource : calls::resources) {
        if (!resource.direct || resource.kind != resource_kind::meter || resource.table != table.handle) continue;
        meter_.emplace(function_for(family_id::meter_read, resource), where);
        meter_->give(meter_value_out, &meter_value_);
      }
    }

    /// Whether the entry was there until all of it was read. Throws refused_error.
    bool read_if_there(entry_state &state)
    {
      state.ttl.reset();
      state.counter.reset();
      state.meter.reset();
      if (ttl_ && state.has_key) {
        std::uint32_t ttl_value = 0;
        if (!finds(ttl_->give(ttl_out, &ttl_value), "ttl", state)) return false;
        state.ttl = ttl_value;
      }
      if (counter_) {
        if (!finds(*counter_, "counter", state)) return false;
        if (!is_blank(counter_value_)) state.counter = counter_value_;
      }
      if (meter_ && has_meter(use_of(table_.actions, *state.action))) {
        if (!finds(*meter_, "meter", state)) return false;
        state.meter = meter_value_;
      }
      return true;
    }

   private:
    bool finds(function_call &call, const char *part, const entry_state &state) const
    {
      return found_there(call.give(entry_hdl, state.handle).status(), [&] {
        return std::string("reading the ") + part + " of entry " + std::to_string(state.handle) + " of " + table_.name;
      });
    }

    const table_info &table_;
    std::optional<function_call> ttl_, counter_, meter_;
    pd_counter_value_t counter_value_{};
    pd_meter_spec_t meter_value_{};
  };

  void read_members(const profile_info &profile)
  {
    member_reader reader(profile, call_.where(), call_.chosen.hardware);
    handle_walk walk = handle_walk::members(profile, call_.where());
    while (const auto handle = walk.next()) {
      call_.shell.check_interrupt();
      const profile_member *const member = reader.read_if_there(*handle);
      if (member == nullptr) continue;
      given_[&profile].members.insert(*handle);
      to_.member(profile, *member);
    }
  }

  void read_groups(const profile_info &profile)
  {
    group_reader members(profile, call_.where());
    handle_walk walk = handle_walk::groups(profile, call_.where());
    while (const auto handle = walk.next()) {
      call_.shell.check_interrupt();
      profile_group state{*handle, {}, {}};
      const auto size = written_.group_sizes.find({profile.selector_table, *handle});
      if (size != written_.group_sizes.end()) state.size = size->second;
      auto there = members.members_if_there(*handle);
      if (!there) continue;
      for (const group_member &each : *there) require_given(given_[&profile].members, each.id);
      state.members = std::move(*there);
      given_[&profile].groups.insert(*handle);
      to_.group(profile, state);
    }
  }

  /// Remembered, not read: others than this shell may have deleted the member since.
  void hand_on_fallback(const profile_info &profile, std::uint32_t member)
  {
    if (member_reader(profile, call_.where(), call_.chosen.hardware).read_if_there(member) == nullptr) {
      notes_.push_back(std::string("the fallback member of ") + profile.name + " is left out: member " +
                       std::to_string(member) + " is gone");
      return;
    }
    require_given(given_[&profile].members, member);
    to_.fallback(profile, member);
  }

  /// What a reference is to must have been handed on ahead of it.
  static void require_given(const std::set<std::uint32_t> &given, std::uint32_t handle)
  {
    if (given.contains(handle)) return;
    throw changed_meanwhile(handle);
  }

  bool read_if_there(const table_info &table, entry_reader &reader, extras_reader &extras, std::uint32_t handle,
                     entry_state &state)
  {
    const table_entry *const entry = reader.read_if_there(handle);
    if (entry == nullptr) return false;
    static_cast<table_entry &>(state) = *entry;
    if (!extras.read_if_there(state)) return false;
    if (state.action == nullptr) {
      const handed_on &given = given_[table.profile];
      require_given(state.is_group ? given.groups : given.members, state.is_group ? state.group : state.member);
    }
    return true;
  }

  void read_default(const table_info &table)
  {
    const std::optional<std::uint32_t> handle = default_entry(table, call_.where());
    if (!handle) return;
    entry_state state;
    entry_reader reader(table, call_.where(), call_.chosen.hardware);
    extras_reader extras(table, call_.where());
    if (read_if_there(table, reader, extras, *handle, state)) to_.default_entry(table, state);
  }

  void read_entries(const table_info &table)
  {
    if (table.fields.empty()) return;
    entry_reader reader(table, call_.where(), call_.chosen.hardware);
    extras_reader extras(table, call_.where());
    handle_walk walk = handle_walk::entries(table, call_.where());
    entry_state state;
    while (const auto handle = walk.next()) {
      call_.shell.check_interrupt();
      if (!read_if_there(table, reader, extras, *handle, state)) continue;
      to_.entry(table, state);
      if (++done_ % told_each == 0) call_.out.progress("reading", done_, total_);
    }
  }

  void read_resource(const resource_info &resource)
  {
    if (resource.direct) return;
    if (const auto rest = written_.register_rests.find(resource.handle); rest != written_.register_rests.end()) {
      to_.cell(resource, {std::nullopt, rest->second});
    }
    switch (resource.kind) {
      case resource_kind::counter: {
        pd_counter_value_t value{};
        function_call read(function_for(family_id::counter_read, resource), call_.where());
        read.give(read_flags, synchronise).give(counter_value_out, &value);
        return read_cells_of(resource, read, [&] { return cell_value(value); });
      }
      case resource_kind::meter: {
        pd_meter_spec_t value{};
        function_call read(function_for(family_id::meter_read, resource), call_.where());
        read.give(meter_value_out, &value);
        return read_cells_of(resource, read, [&] { return cell_value(value); });
      }
      case resource_kind::wred: {
        pd_wred_spec_t value{};
        function_call read(function_for(family_id::wred_read, resource), call_.where());
        read.give(wred_value_out, &value);
        return read_cells_of(resource, read, [&] { return cell_value(value); });
      }
      case resource_kind::register_: {
        std::vector<std::uint8_t> values(most_register_values);
        std::uint32_t count = 0;
        function_call read(function_for(family_id::register_read, resource), call_.where());
        read.give(read_flags, std::uint64_t{call_.chosen.hardware});
        read.give(register_values_out, values.data()).give(register_value_count_out, &count);
        return read_cells_of(resource, read, [&] { return cell_value(count == 0 ? std::uint8_t{0} : values[0]); });
      }
    }
  }

  /// Looks at the first cells, until the driver says that there are no more, and at all that the shell wrote.
  template <typename Value>
  void read_cells_of(const resource_info &resource, function_call &read, Value value)
  {
    std::uint64_t next = 0;
    while (next < how_.cells && read_cell(resource, read, next, value)) ++next;
    const auto written = written_.cells.find(resource.handle);
    if (written == written_.cells.end()) return;
    for (const auto &[first, last] : written->second.ranges()) {
      for (std::uint64_t index = std::max<std::uint64_t>(first, next); index <= last; ++index) {
        if (!read_cell(resource, read, index, value)) {
          throw shell_error(exit_code::refused, std::string(resource.name) + ", cell " + std::to_string(index) +
                                                    ": this shell wrote it, but the driver has no such cell now");
        }
      }
    }
  }

  /// False where there is no such cell. Cells that are as those that are not told of stay out of the state.
  template <typename Value>
  bool read_cell(const resource_info &resource, function_call &read, std::uint64_t index, Value value)
  {
    if (index % 1024 == 0) call_.shell.check_interrupt();
    const auto status = static_cast<pd_status_t>(read.give(cell_index, index).make());
    if (ends_cells(status)) return false;
    if (status != BF_SUCCESS) throw cell_refused(resource, index, status);
    const cell_value found = value();
    const auto rest = written_.register_rests.find(resource.handle);
    const bool plain =
        rest != written_.register_rests.end() ? same_cell(found, cell_value(rest->second)) : is_blank(found);
    if (!plain) to_.cell(resource, {static_cast<std::uint32_t>(index), found});
    return true;
  }

  static refused_error cell_refused(const resource_info &resource, std::uint64_t index, pd_status_t status)
  {
    return {status, std::string("reading ") + resource.name + ", cell " + std::to_string(index),
            hint_at_cells_end(status)};
  }

  struct handed_on {
    std::set<std::uint32_t> members;
    std::set<std::uint32_t> groups;
  };

  const invocation &call_;
  const live_reading &how_;
  state_visitor &to_;
  const own_writes written_;
  std::map<const profile_info *, handed_on> given_;
  std::vector<std::string> notes_;  // told by a reading that came to its end
  std::uint64_t done_ = 0;
  std::uint64_t total_ = 0;
};

}  // namespace

void read_live_state(const invocation &call, const live_reading &how, state_visitor &to)
{
  live_reader(call, how, to).read();
}

void read_live_cells(const invocation &call, const live_reading &how, state_visitor &to)
{
  live_reader(call, how, to).read_cells();
}

void tell_what_was_remembered(const invocation &call)
{
  const own_writes written = *call.shell.written();
  std::string parts;
  const auto add = [&](std::size_t count, std::string_view one, std::string_view many = {}) {
    if (count != 0) parts += (parts.empty() ? "" : ", ") + counted(count, one, many);
  };
  add(written.value_set.size(), "value-set entry", "value-set entries");
  add(written.fallback_members.size(), "fallback member");
  add(written.group_sizes.size(), "group size");
  add(written.idle.size(), "idle-time setting");
  add(written.register_rests.size(), "whole register");
  add(written.learning_timeout ? 1 : 0, "learning timeout");
  if (!parts.empty()) call.out.note("from this shell's own writes, as the switch does not tell them: " + parts);
  if (!written.snapshots.empty()) {
    call.out.note(counted(written.snapshots.size(), "snapshot") + " left out: snapshots are no part of the state");
  }
}

}  // namespace tarvex::shell
