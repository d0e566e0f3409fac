// Walks over members, groups, entries and cells; what cannot be read back comes from the shell's own writes.
//
// SPDX-License-Identifier: Apache-2.0
#include "live_state.h"

#include <cstring>

#include "group_reader.h"
#include "handle_walk.h"
#include "hash_settings.h"
#include "session.h"
#include "status_text.h"
#include "tarvex_pd/actions.h"

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
      if (member != written_.fallback_members.end()) to_.fallback(profile, member->second);
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
    for (const auto &[handle, entry] : written_.value_set) to_.value_set(entry);
    if (written_.learning_timeout) to_.learning_timeout(*written_.learning_timeout);
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

    void read(entry_state &state)
    {
      state.ttl.reset();
      state.counter.reset();
      state.meter.reset();
      if (ttl_ && state.has_key) {
        std::uint32_t ttl_value = 0;
        ttl_->give(entry_hdl, state.handle).give(ttl_out, &ttl_value).must(what("ttl", state));
        state.ttl = ttl_value;
      }
      if (counter_) {
        counter_->give(entry_hdl, state.handle).must(what("counter", state));
        if (!is_blank(counter_value_)) state.counter = counter_value_;
      }
      if (meter_ && has_meter(use_of(table_.actions, *state.action))) {
        meter_->give(entry_hdl, state.handle).must(what("meter", state));
        state.meter = meter_value_;
      }
    }

   private:
    std::string what(const char *part, const entry_state &state) const
    {
      return std::string("reading the ") + part + " of entry " + std::to_string(state.handle) + " of " + table_.name;
    }

    const table_info &table_;
    std::optional<function_call> ttl_, counter_, meter_;
    pd_counter_value_t counter_value_{};
    pd_meter_spec_t meter_value_{};
  };

  void read_members(const profile_info &profile)
  {
    plcmt_action_t found{};
    function_call read(function_for(family_id::get_member, profile, member_action_out), call_.where());
    read.give(read_from_hw, std::uint64_t{call_.chosen.hardware}).give(member_action_out, &found);
    handle_walk walk = handle_walk::members(profile, call_.where());
    while (const auto handle = walk.next()) {
      call_.shell.check_interrupt();
      read.give(mbr_hdl, *handle);
      read.must("reading member " + std::to_string(*handle) + " of " + profile.name);
      profile_member state{*handle, &calls::actions[found.action], {}};
      std::memcpy(state.parameters.data(), found.parameters, state.action->record_size);
      to_.member(profile, state);
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
      state.members = members.members(*handle);
      to_.group(profile, state);
    }
  }

  void read_default(const table_info &table)
  {
    const std::optional<std::uint32_t> handle = default_entry(table, call_.where());
    if (!handle) return;
    entry_state state;
    entry_reader reader(table, call_.where(), call_.chosen.hardware);
    static_cast<table_entry &>(state) = reader.read(*handle);
    extras_reader(table, call_.where()).read(state);
    to_.default_entry(table, state);
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
      const table_entry *const entry = reader.read_if_there(*handle);
      if (entry == nullptr) continue;  // another session deleted it meanwhile
      static_cast<table_entry &>(state) = *entry;
      extras.read(state);
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

  /// Cells that are as those that are not told of stay out of the state.
  template <typename Value>
  void read_cells_of(const resource_info &resource, function_call &read, Value value)
  {
    const auto rest = written_.register_rests.find(resource.handle);
    const cell_value left_out = rest != written_.register_rests.end() ? cell_value(rest->second) : cell_value{};
    const auto of_writes = written_.cells.find(resource.handle);
    const cell_set known = of_writes != written_.cells.end() ? of_writes->second : cell_set{};
    cell_set all = known;
    if (how_.cells != 0) all.add({0, how_.cells - 1});
    for (const auto &[first, last] : all.ranges()) {
      for (std::uint64_t index = first; index <= last; ++index) {
        if (index % 1024 == 0) call_.shell.check_interrupt();
        const auto status = static_cast<pd_status_t>(read.give(cell_index, index).make());
        if (status == BF_SUCCESS) {
          const cell_value found = value();
          const bool plain = rest != written_.register_rests.end() ? same_cell(found, left_out) : is_blank(found);
          if (!plain) to_.cell(resource, {static_cast<std::uint32_t>(index), found});
          continue;
        }
        if (known.holds(static_cast<std::uint32_t>(index)) || index >= how_.cells) {
          throw refused_error(status, std::string("reading ") + resource.name + ", cell " + std::to_string(index));
        }
        index = how_.cells - std::uint64_t{1};  // behind the last cell that there is
      }
    }
  }

  const invocation &call_;
  const live_reading &how_;
  state_visitor &to_;
  const own_writes written_;
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
  const auto add = [&](std::size_t count, const char *one, const char *many) {
    if (count == 0) return;
    parts += (parts.empty() ? "" : ", ") + std::to_string(count) + ' ' + (count == 1 ? one : many);
  };
  add(written.value_set.size(), "value-set entry", "value-set entries");
  add(written.fallback_members.size(), "fallback member", "fallback members");
  add(written.group_sizes.size(), "group size", "group sizes");
  add(written.idle.size(), "idle-time setting", "idle-time settings");
  add(written.register_rests.size(), "whole register", "whole registers");
  add(written.learning_timeout ? 1 : 0, "learning timeout", "learning timeouts");
  if (!parts.empty()) call.out.note("from this shell's own writes, as the switch does not tell them: " + parts);
  if (!written.snapshots.empty()) {
    call.out.note("snapshots are no part of the state: " + std::to_string(written.snapshots.size()) + " left out");
  }
}

}  // namespace tarvex::shell
