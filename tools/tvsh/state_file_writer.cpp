// Writes states as JSON.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "state_file.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

std::string_view section_of(resource_kind kind)
{
  static constexpr std::array<std::string_view, 4> names = {"counters", "meters", "wred", "registers"};
  return names[static_cast<std::size_t>(kind)];
}

}  // namespace

state_file_writer::state_file_writer(replaced_file &file) : file_(file)
{
  file_.write("{\"schema_version\":" + std::to_string(state_file_version));
}

void state_file_writer::begin(std::string_view section, std::string_view owner)
{
  if (section != section_ || owner != owner_) {
    close_list();
    if (section != section_) {
      if (!section_.empty()) line_ += '}';
      line_ += ",\n";
      append_json_text(line_, section);
      line_ += ":{";
      section_ = section;
    } else {
      line_ += ",\n";
    }
    append_json_text(line_, owner);
    line_ += ":[\n";
    owner_ = owner;
  } else {
    line_ += ",\n";
  }
  json_.open();
}

void state_file_writer::close_list()
{
  if (!owner_.empty()) line_ += "\n]";
  owner_.clear();
}

void state_file_writer::end()
{
  json_.close();
  file_.write(line_);
  line_.clear();
}

void state_file_writer::finish()
{
  close_list();
  if (!section_.empty()) line_ += '}';
  line_ += "\n}\n";
  file_.write(line_);
  line_.clear();
}

void state_file_writer::meter(const pd_meter_spec_t &value)
{
  json_.number("cir", value.cir);
  json_.number("cburst", value.cburst);
  json_.number("pir", value.pir);
  json_.number("pburst", value.pburst);
  json_.text("type", value.meter_type == PD_METER_TYPE_COLOR_AWARE ? "aware" : "unaware");
}

void state_file_writer::counter(const pd_counter_value_t &value)
{
  json_.number("packets", value.packets);
  json_.number("bytes", value.bytes);
}

void state_file_writer::member(const profile_info &profile, const profile_member &state)
{
  state_counter::member(profile, state);
  auto &given = numbers_[&profile].members;
  const auto id = static_cast<std::uint32_t>(given.size() + 1);
  given[state.id] = id;
  begin("members", profile.name);
  json_.number("id", id);
  contents_.action(*state.action, state.parameters);
  end();
}

void state_file_writer::group(const profile_info &profile, const profile_group &state)
{
  state_counter::group(profile, state);
  numbers &given = numbers_[&profile];
  const auto id = static_cast<std::uint32_t>(given.groups.size() + 1);
  given.groups[state.id] = id;
  begin("groups", profile.name);
  json_.number("id", id);
  if (state.size) json_.number("size", *state.size);
  json_.open("members");
  for (const group_member &each : state.members) {
    json_.text(std::to_string(given.members.at(each.id)), each.active ? "active" : "inactive");
  }
  json_.close();
  end();
}

void state_file_writer::fallback(const profile_info &profile, std::uint32_t member)
{
  state_counter::fallback(profile, member);
  begin("fallbacks", profile.name);
  json_.number("member", numbers_[&profile].members.at(member));
  end();
}

void state_file_writer::idle(const table_info &table, const idle_setting &setting)
{
  state_counter::idle(table, setting);
  begin("idle", table.name);
  json_.text("mode", setting.notify ? "notify" : "poll");
  json_.number("interval", setting.interval);
  json_.number("max-ttl", setting.largest_ttl);
  end();
}

void state_file_writer::entry_body(const table_info &table, const entry_state &state)
{
  if (state.action != nullptr) {
    contents_.action(*state.action, state.parameters);
  } else {
    numbers &given = numbers_[table.profile];
    if (state.is_group) {
      json_.number("group", given.groups.at(state.group));
    } else {
      json_.number("member", given.members.at(state.member));
    }
  }
  if (state.ttl && *state.ttl != 0) json_.number("ttl", *state.ttl);
  if (state.meter) {
    json_.open("meter");
    meter(*state.meter);
    json_.close();
  }
  if (state.counter) {
    json_.open("counter");
    counter(*state.counter);
    json_.close();
  }
}

void state_file_writer::default_entry(const table_info &table, const entry_state &state)
{
  state_counter::default_entry(table, state);
  begin("defaults", table.name);
  entry_body(table, state);
  end();
}

void state_file_writer::entry(const table_info &table, const entry_state &state)
{
  state_counter::entry(table, state);
  begin("entries", table.name);
  contents_.key(table, state);
  entry_body(table, state);
  end();
}

void state_file_writer::cell(const resource_info &resource, const cell_state &state)
{
  state_counter::cell(resource, state);
  begin(section_of(resource.kind), resource.name);
  if (state.index) {
    json_.number("index", *state.index);
  } else {
    json_.text("index", "all");
  }
  if (const auto *const count = std::get_if<pd_counter_value_t>(&state.value)) {
    counter(*count);
  } else if (const auto *const rates = std::get_if<pd_meter_spec_t>(&state.value)) {
    meter(*rates);
  } else if (const auto *const wred = std::get_if<pd_wred_spec_t>(&state.value)) {
    json_.plain("time", real_text(wred->time_constant));
    json_.number("min", wred->min_threshold);
    json_.number("max", wred->max_threshold);
    json_.plain("probability", real_text(wred->max_probability));
  } else {
    json_.number("value", std::get<std::uint8_t>(state.value));
  }
  end();
}

void state_file_writer::hash(const hash_info &hash, const hash_state &state)
{
  state_counter::hash(hash, state);
  begin("hashes", hash.name);
  json_.number("seed", state.seed);
  std::string fields;
  for (std::size_t i = 0; i < state.selected.size(); ++i) {
    if (state.selected[i]) fields += (fields.empty() ? "" : ",") + std::to_string(i);
  }
  json_.plain("fields", '[' + fields + ']');
  end();
}

void state_file_writer::value_set(const value_set_entry &entry)
{
  state_counter::value_set(entry);
  begin("value_sets", the_value_set().name);
  json_.number("value", entry.value);
  json_.number("mask", entry.mask);
  json_.number("scope", entry.scope);
  json_.number("index", entry.index);
  json_.number("sub", entry.sub_index);
  end();
}

void state_file_writer::learning_timeout(std::uint32_t timeout)
{
  state_counter::learning_timeout(timeout);
  begin("learning", the_digest().name);
  json_.number("timeout", timeout);
  end();
}

}  // namespace tarvex::shell
