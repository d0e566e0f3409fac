// The sections of a saved state, in the order that they must have.
//
// SPDX-License-Identifier: Apache-2.0
#include "state_element_reader.h"

#include <algorithm>
#include <charconv>

#include "counted.h"
#include "nearest.h"
#include "shell_error.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

using names = std::string_view;

[[noreturn]] void throw_wanted(std::string_view name, const char *what)
{
  throw usage_error("'" + std::string(name) + "' " + what);
}

std::uint64_t number_in(json_item item, std::string_view name, unsigned bits)
{
  if (!item) throw_wanted(name, "is missing");
  if (item.kind() != json_kind::number) throw_wanted(name, "must be a whole number from 0 up");
  if (item.number() > all_ones(bits)) {
    throw usage_error("'" + std::string(name) + "' " + std::to_string(item.number()) + " is too wide for " +
                      counted(bits, "bit"));
  }
  return item.number();
}

std::uint32_t word_in(json_item item, std::string_view name)
{
  return static_cast<std::uint32_t>(number_in(item, name, 32));
}

std::string_view text_in(json_item item, std::string_view name)
{
  if (!item) throw_wanted(name, "is missing");
  if (item.kind() != json_kind::text) throw_wanted(name, "must be a text");
  return item.text();
}

/// True for the first word, false for the second.
bool either(json_item item, std::string_view name, std::string_view yes, std::string_view no)
{
  const std::string_view text = text_in(item, name);
  if (text != yes && text != no) {
    throw usage_error("'" + std::string(name) + "' is '" + std::string(yes) + "' or '" + std::string(no) + "', not '" +
                      std::string(text) + '\'');
  }
  return text == yes;
}

json_item object_in(json_item item, std::string_view name)
{
  if (!item) throw_wanted(name, "is missing");
  if (item.kind() != json_kind::object) throw_wanted(name, "must be in braces");
  return item;
}

float real_in(json_item item, std::string_view name)
{
  if (!item) throw_wanted(name, "is missing");
  if (item.kind() == json_kind::number) return static_cast<float>(item.number());
  float value = -1;
  if (item.kind() == json_kind::real) {
    const std::string_view text = item.text();
    std::from_chars(text.data(), text.data() + text.size(), value);
  }
  if (!(value >= 0)) throw_wanted(name, "must be a number from 0 up, such as 0.5");
  return value;
}

/// A value of a field, as a number or as the commands take it.
void read_field(const shown_field &field, json_item item, std::uint8_t *record)
{
  constexpr value_source from = value_source::read_back;
  if (item.kind() == json_kind::text) return parse_match(field, item.text(), record, from);
  if (item.kind() != json_kind::number) throw usage_error("field " + described(field) + " must be a number or a text");
  if (field.has_prefix() || item.number() > all_ones(field.bits)) {
    return parse_match(field, std::to_string(item.number()), record, from);
  }
  write_value(field, item.number(), record);
  if (field.has_mask()) write_mask(field, all_ones(field.bits), record);
}

/// The values of an object to the fields that they name. Fields with a mask may be missing: they match anything then.
void read_fields(std::span<const shown_field> fields, json_item values, std::vector<bool> &taken,
                 std::string_view owner, std::uint8_t *record)
{
  taken.assign(fields.size(), false);
  std::size_t guess = 0;  // fields mostly come in their order
  values.each([&](json_item item) {
    const shown_field *field = guess < fields.size() && fields[guess].name == item.name() ? &fields[guess] : nullptr;
    if (field == nullptr) field = find_field(fields, item.name());
    if (field == nullptr) {
      throw usage_error(std::string(owner) + ": " + no_such("field", item.name(), field_names(fields)));
    }
    const auto at = static_cast<std::size_t>(field - fields.data());
    if (taken[at]) throw usage_error("field " + described(*field) + " stands there twice");
    taken[at] = true;
    guess = at + 1;
    read_field(*field, item, record);
  });
  for (std::size_t at = 0; at < fields.size(); ++at) {
    if (taken[at] || fields[at].has_mask()) continue;
    throw usage_error(std::string(owner) + ": missing " + described(fields[at]));
  }
}

pd_meter_spec_t meter_in(const std::array<json_item, 5> &items)
{
  pd_meter_spec_t meter{};
  meter.cir = word_in(items[0], "cir");
  meter.cburst = word_in(items[1], "cburst");
  meter.pir = word_in(items[2], "pir");
  meter.pburst = word_in(items[3], "pburst");
  meter.meter_type =
      either(items[4], "type", "aware", "unaware") ? PD_METER_TYPE_COLOR_AWARE : PD_METER_TYPE_COLOR_UNAWARE;
  return meter;
}

pd_counter_value_t counter_in(json_item packets, json_item bytes)
{
  return {number_in(packets, "packets", 64), number_in(bytes, "bytes", 64)};
}

}  // namespace

const state_element_reader::section_row state_element_reader::sections[] = {
    {"members", &state_element_reader::read_member, &state_element_reader::find_profile},
    {"groups", &state_element_reader::read_group, &state_element_reader::find_profile},
    {"fallbacks", &state_element_reader::read_fallback, &state_element_reader::find_profile},
    {"idle", &state_element_reader::read_idle, &state_element_reader::find_table},
    {"defaults", &state_element_reader::read_default, &state_element_reader::find_table},
    {"entries", &state_element_reader::read_entry, &state_element_reader::find_table},
    {"counters", &state_element_reader::read_cell, &state_element_reader::find_resource},
    {"meters", &state_element_reader::read_cell, &state_element_reader::find_resource},
    {"wred", &state_element_reader::read_cell, &state_element_reader::find_resource},
    {"registers", &state_element_reader::read_cell, &state_element_reader::find_resource},
    {"hashes", &state_element_reader::read_hash, &state_element_reader::find_hash},
    {"value_sets", &state_element_reader::read_value_set, &state_element_reader::find_value_set},
    {"learning", &state_element_reader::read_learning, &state_element_reader::find_digest},
};

void state_element_reader::section(std::string_view name)
{
  const auto found = std::ranges::find(sections, name, &section_row::name);
  if (found == std::end(sections)) throw usage_error(no_such("section", name, names_of(sections)));
  if (section_ != nullptr && found <= section_) {
    throw usage_error("the section stands behind '" + std::string(section_->name) + "' and belongs ahead of it");
  }
  section_ = found;
}

void state_element_reader::owner(std::string_view name) { (this->*section_->find_owner)(name); }

void state_element_reader::take(json_item element) { (this->*section_->read)(element); }

void state_element_reader::set_uses(std::span<const use_info> uses)
{
  actions_.clear();
  for (const use_info &use : uses) actions_.push_back({&use, parameter_fields(*use.action)});
}

void state_element_reader::find_profile(std::string_view name)
{
  profile_ = &profile_named(name);
  set_uses(profile_->actions);
}

void state_element_reader::find_table(std::string_view name)
{
  table_ = &table_named(name);
  profile_ = table_->profile;
  key_ = key_fields(*table_);
  set_uses(table_->profile == nullptr ? table_->actions : std::span<const use_info>{});
}

void state_element_reader::find_resource(std::string_view name)
{
  // The sections of resources stand in the order of the kinds.
  const auto first = std::ranges::find(sections, "counters", &section_row::name);
  const std::array kinds = {static_cast<resource_kind>(section_ - first)};
  resource_ = &resource_named(name, kinds);
  if (resource_->direct) {
    throw usage_error(std::string(name) + " hangs on the entries of " + table_of(resource_->table).name +
                      ": its values stand with them");
  }
}

void state_element_reader::find_hash(std::string_view name) { hash_ = &hash_named(name); }

void state_element_reader::find_value_set(std::string_view name)
{
  const std::string wanted = the_value_set().name;
  if (name != wanted) throw usage_error("the value set is called '" + wanted + "'");
}

void state_element_reader::find_digest(std::string_view name)
{
  const std::string wanted = the_digest().name;
  if (name != wanted) throw usage_error("the digest is called '" + wanted + "'");
}

const state_element_reader::ready_action &state_element_reader::action_of(json_item name, std::string_view owner)
{
  const std::string_view wanted = text_in(name, "action");
  for (const ready_action &each : actions_) {
    if (each.use->action->name == wanted) return each;
  }
  std::vector<std::string_view> all;
  for (const ready_action &each : actions_) all.emplace_back(each.use->action->name);
  throw usage_error(std::string(owner) + ": " + no_such("action", wanted, all));
}

void state_element_reader::read_parameters(const ready_action &action, json_item values, record_memory &to)
{
  if (action.fields.empty() && !values) return;
  read_fields(action.fields, object_in(values, "parameters"), taken_, action.use->action->name, to.data());
}

void state_element_reader::read_member(json_item element)
{
  const auto [id, action, parameters] = element.pick(std::array<names, 3>{"id", "action", "parameters"});
  profile_member state;
  state.id = word_in(id, "id");
  const ready_action &ready = action_of(action, profile_->name);
  state.action = ready.use->action;
  read_parameters(ready, parameters, state.parameters);
  if (!known_[profile_].members.emplace(state.id, state.action).second) {
    throw usage_error("member " + std::to_string(state.id) + " stands there twice");
  }
  to_.member(*profile_, state);
}

std::uint32_t state_element_reader::known_member(json_item item)
{
  const std::uint32_t id = word_in(item, "member");
  if (!known_[profile_].members.contains(id)) {
    throw usage_error(std::string(profile_->name) + " has no member " + std::to_string(id) + " in this file");
  }
  return id;
}

void state_element_reader::read_group(json_item element)
{
  const auto [id, size, members] = element.pick(std::array<names, 3>{"id", "size", "members"});
  profile_group state;
  state.id = word_in(id, "id");
  if (size) state.size = word_in(size, "size");
  known_profile &known = known_[profile_];
  object_in(members, "members").each([&](json_item item) {
    const auto member = static_cast<std::uint32_t>(parse_number(item.name(), "member", 32));
    if (!known.members.contains(member)) {
      throw usage_error("there is no member " + std::to_string(member) + " in this file");
    }
    if (std::ranges::count(state.members, member, &group_member::id) != 0) {
      throw usage_error("member " + std::to_string(member) + " is in the group twice");
    }
    state.members.push_back({member, either(item, item.name(), "active", "inactive")});
  });
  if (state.size && *state.size != 0 && state.members.size() > *state.size) {
    throw usage_error("a group of " + std::to_string(*state.size) + " with " + counted(state.members.size(), "member"));
  }
  if (!known.groups.insert(state.id).second) {
    throw usage_error("group " + std::to_string(state.id) + " stands there twice");
  }
  to_.group(*profile_, state);
}

void state_element_reader::read_fallback(json_item element)
{
  const auto [member] = element.pick(std::array<names, 1>{"member"});
  if (!told_once_.insert(profile_).second) throw usage_error("there is one fallback member at most");
  to_.fallback(*profile_, known_member(member));
}

void state_element_reader::read_idle(json_item element)
{
  const auto [mode, interval, largest] = element.pick(std::array<names, 3>{"mode", "interval", "max-ttl"});
  if (!table_->idle_time) throw usage_error("the table has no idle time");
  if (!told_once_.insert(&table_->idle_time).second) throw usage_error("the table's idle time stands there twice");
  to_.idle(*table_,
           {either(mode, "mode", "notify", "poll"), word_in(interval, "interval"), word_in(largest, "max-ttl")});
}

void state_element_reader::read_body(json_item action, json_item parameters, json_item member, json_item group,
                                     json_item meter, json_item counter)
{
  entry_.meter.reset();
  entry_.counter.reset();
  if (table_->profile != nullptr) {
    if (action || parameters) throw usage_error("the table is indirect: its entries name a member or a group");
    if (static_cast<bool>(member) == static_cast<bool>(group)) throw usage_error("one of member and group is wanted");
    entry_.action = nullptr;
    entry_.is_group = static_cast<bool>(group);
    if (entry_.is_group) {
      entry_.group = word_in(group, "group");
      if (!known_[profile_].groups.contains(entry_.group)) {
        throw usage_error(std::string(profile_->name) + " has no group " + std::to_string(entry_.group) +
                          " in this file");
      }
    } else {
      entry_.member = known_member(member);
    }
  } else {
    if (member || group) throw usage_error("the table is not indirect: its entries have an action");
    const ready_action &ready = action_of(action, table_->name);
    entry_.action = ready.use->action;
    read_parameters(ready, parameters, entry_.parameters);
    if (has_meter(*ready.use)) {
      entry_.meter =
          meter_in(object_in(meter, "meter").pick(std::array<names, 5>{"cir", "cburst", "pir", "pburst", "type"}));
    } else if (meter) {
      throw usage_error(std::string(entry_.action->name) + " has no meter");
    }
  }
  if (!counter) return;
  if (direct_counter(*table_) == nullptr) throw usage_error("no counter hangs on the table's entries");
  const auto [packets, bytes] = object_in(counter, "counter").pick(std::array<names, 2>{"packets", "bytes"});
  entry_.counter = counter_in(packets, bytes);
}

void state_element_reader::read_default(json_item element)
{
  const auto [action, parameters, member, group, meter, counter] =
      element.pick(std::array<names, 6>{"action", "parameters", "member", "group", "meter", "counter"});
  if (!told_once_.insert(table_).second) throw usage_error("there is one default entry at most");
  entry_.has_key = false;
  entry_.priority = 0;
  entry_.ttl.reset();
  read_body(action, parameters, member, group, meter, counter);
  if (entry_.action != nullptr && !use_of(table_->actions, *entry_.action).is_default) {
    throw usage_error(std::string(entry_.action->name) + " cannot be the default of the table");
  }
  to_.default_entry(*table_, entry_);
}

void state_element_reader::read_entry(json_item element)
{
  const auto [key, priority, action, parameters, member, group, ttl, meter, counter] = element.pick(
      std::array<names, 9>{"key", "priority", "action", "parameters", "member", "group", "ttl", "meter", "counter"});
  if (key_.empty()) throw usage_error("the table has no key: it takes no entry but its default");
  entry_.has_key = true;
  // Fields that are missing match anything.
  std::ranges::fill(entry_.key.bytes, std::uint8_t{0});
  read_fields(key_, object_in(key, "key"), taken_, table_->name, entry_.key.data());
  const bool by_priority = table_->kind == table_kind::ternary;
  if (priority && !by_priority) throw usage_error("entries of the table have no priority");
  entry_.priority = by_priority ? word_in(priority, "priority") : 0;
  entry_.ttl.reset();
  if (ttl) {
    if (!table_->idle_time) throw usage_error("the table has no idle time, and its entries no ttl");
    entry_.ttl = word_in(ttl, "ttl");
  }
  read_body(action, parameters, member, group, meter, counter);
  to_.entry(*table_, entry_);
}

void state_element_reader::read_cell(json_item element)
{
  cell_state state;
  json_item index;
  switch (resource_->kind) {
    case resource_kind::counter: {
      const auto items = element.pick(std::array<names, 3>{"index", "packets", "bytes"});
      index = items[0];
      state.value = counter_in(items[1], items[2]);
      break;
    }
    case resource_kind::meter: {
      const auto items = element.pick(std::array<names, 6>{"index", "cir", "cburst", "pir", "pburst", "type"});
      index = items[0];
      state.value = meter_in({items[1], items[2], items[3], items[4], items[5]});
      break;
    }
    case resource_kind::wred: {
      const auto items = element.pick(std::array<names, 5>{"index", "time", "min", "max", "probability"});
      index = items[0];
      const pd_wred_spec_t value{real_in(items[1], "time"), word_in(items[2], "min"), word_in(items[3], "max"),
                                 real_in(items[4], "probability")};
      if (value.max_threshold < value.min_threshold) throw usage_error("'max' is below 'min'");
      if (value.max_probability > 1) throw usage_error("'probability' is above 1");
      state.value = value;
      break;
    }
    case resource_kind::register_: {
      const auto items = element.pick(std::array<names, 2>{"index", "value"});
      index = items[0];
      state.value = static_cast<std::uint8_t>(number_in(items[1], "value", 1));
      break;
    }
  }
  const bool all = index.kind() == json_kind::text && index.text() == "all";
  if (!all) {
    state.index = word_in(index, "index");
  } else if (resource_->kind != resource_kind::register_ || !told_once_.insert(resource_).second) {
    throw usage_error("'all' stands for the cells of a register, once");
  }
  to_.cell(*resource_, state);
}

void state_element_reader::read_hash(json_item element)
{
  const auto [seed, fields] = element.pick(std::array<names, 2>{"seed", "fields"});
  if (!told_once_.insert(hash_).second) throw usage_error("the calculation stands there twice");
  hash_state state;
  state.seed = number_in(seed, "seed", 64);
  state.selected.resize(hash_->common.size());
  if (fields.kind() != json_kind::list) throw_wanted("fields", "must be a list of numbers");
  fields.each([&](json_item item) {
    const std::uint64_t field = number_in(item, "number of an input field", 32);
    if (field >= state.selected.size()) {
      throw usage_error("input field " + std::to_string(field) + ": there are the fields 0 to " +
                        std::to_string(state.selected.size() - 1));
    }
    state.selected[field] = true;
  });
  if (std::ranges::count(state.selected, true) == 0) throw usage_error("'fields' names no input field");
  to_.hash(*hash_, state);
}

void state_element_reader::read_value_set(json_item element)
{
  const auto [value, mask, scope, index, sub] =
      element.pick(std::array<names, 5>{"value", "mask", "scope", "index", "sub"});
  to_.value_set({word_in(value, "value"), word_in(mask, "mask"), word_in(scope, "scope"),
                 static_cast<std::uint16_t>(number_in(index, "index", 16)),
                 static_cast<std::uint8_t>(number_in(sub, "sub", 8))});
}

void state_element_reader::read_learning(json_item element)
{
  const auto [timeout] = element.pick(std::array<names, 1>{"timeout"});
  if (!told_once_.insert(&told_once_).second) throw usage_error("there is one learning timeout");
  to_.learning_timeout(word_in(timeout, "timeout"));
}

}  // namespace tarvex::shell
