// Lines of the interface put to one function, and the comparison of driver calls.
//
// SPDX-License-Identifier: Apache-2.0
#include "reference.h"

#include <algorithm>
#include <map>

namespace tarvex::test {

namespace {

std::string full_name(const operation &operation, const exported_function &function)
{
  const auto put = [](std::string &name, const std::string &placeholder, const char *content) {
    const std::size_t at = name.find(placeholder);
    if (at != std::string::npos && content != nullptr) name.replace(at, placeholder.size(), content);
  };
  std::string name = operation.name;
  if (!name.starts_with("unbuild_")) name = prefix() + name;
  put(name, "{table}", function.table != nullptr ? function.table->name : nullptr);
  put(name, "{profile}", function.profile != nullptr ? function.profile->name : nullptr);
  put(name, "{action}", function.action != nullptr ? function.action->name : nullptr);
  put(name, "{unit}",
      std::string_view(function.name).find("_packets_") != std::string_view::npos ? "packets" : "bytes");
  put(name, "{digest}", calls::digests.empty() ? nullptr : calls::digests[0].name);
  put(name, "{value_set}", calls::value_sets.empty() ? nullptr : calls::value_sets[0].name);
  put(name, "{calc}", function.hash != nullptr ? function.hash->name : nullptr);
  if (function.resource != nullptr) {
    put(name, function.resource->direct ? "{direct}" : "{indexed}", function.resource->name);
  }
  return name;
}

bool holds(const calls::table_info &table, calls::match_kind match)
{
  return std::ranges::find(table.fields, match, &calls::field_info::match) != table.fields.end();
}

// A function without parameters, a key, a priority and so on does not take the argument for it.
bool has_use_for(const exported_function &function, argument_kind kind)
{
  const calls::table_info *table = function.table;
  switch (kind) {
    case argument_kind::action_spec: return function.action != nullptr && !function.action->params.empty();
    case argument_kind::match_spec_out:
    case argument_kind::no_key_out: return table->kind != calls::table_kind::keyless;
    case argument_kind::priority:
    case argument_kind::priority_out: return table->kind == calls::table_kind::ternary;
    case argument_kind::ttl: return table->idle_time;
    case argument_kind::meter_spec: return direct_meter_of(function) != nullptr;
    default: return true;
  }
}

// Records as the driver gets them to fill: sizes and pointers preset, everything else 0.
bytes record_to_fill(derived kind, const calls::table_info &table)
{
  bytes value(table.key_bytes), mask(table.key_bytes), data(28);
  drv_match_spec_t key{};
  key.key_bits = table.key_bits;
  key.key_bytes = table.key_bytes;
  if (table.kind != calls::table_kind::keyless) {
    key.key_value = value.data();
    key.key_mask = mask.data();
  }
  drv_action_spec_t action{};
  if (kind != derived::no_action) action.act_data.data = data.data();
  if (kind == derived::empty_action || kind == derived::empty_data) action.act_data.data_bytes = 28;
  switch (kind) {
    case derived::empty_key: return copy_of(&key);
    case derived::empty_action:
    case derived::no_action: return copy_of(&action);
    default: return copy_of(&action.act_data);
  }
}

recorded_argument resolve(const term &term, const call &call, std::map<argument_kind, std::size_t> &seen,
                          std::uint32_t answered)
{
  const exported_function &function = call.function();
  if (term.from_caller) {
    const std::uint64_t value = call.value(term.kind, seen[term.kind]++);
    switch (term.kind) {
      case argument_kind::dev_tgt: return {value & 0xffff'ffff'ffff, {}};
      case argument_kind::dev_id:
      case argument_kind::read_from_hw: return {value & 0xff, {}};
      case argument_kind::match_spec: return {anywhere, expected_key(call)};
      case argument_kind::idle_params: {
        const auto &memory = call.memory(argument_kind::idle_params);
        return {0, bytes(memory.begin(), memory.begin() + sizeof(pd_idle_params_t))};
      }
      default: return {value, {}};
    }
  }
  const auto profile = [&] { return function.profile != nullptr ? function.profile : function.table->profile; };
  switch (term.other) {
    case derived::table: return {function.table->handle, {}};
    case derived::action_data_table: return {profile()->action_data_table, {}};
    case derived::selector_table: return {profile()->selector_table, {}};
    case derived::action: return {function.use->handle, {}};
    case derived::action_record: return {anywhere, expected_action(call)};
    case derived::member_record: return {anywhere, expected_member(call)};
    case derived::device: return {0xff & (call.value(argument_kind::dev_id) | call.value(argument_kind::dev_tgt)), {}};
    case derived::state: {
      const auto index = static_cast<std::size_t>(profile() - calls::profiles.data());
      return {reinterpret_cast<std::uint64_t>(state_of_profile(index)), {}};
    }
    case derived::answered: return {answered, {}};
    case derived::zero: return {0, {}};
    case derived::local: return {anywhere, {}};
    case derived::empty_key:
    case derived::empty_action:
    case derived::no_action:
    case derived::empty_data:
    case derived::untold_data: return {anywhere, record_to_fill(term.other, *function.table)};
    default: return resource_argument(term.other, call);
  }
}

// Gaps of the idle parameters, which travel by value, and what carries nothing in meter records and register slots.
bytes without_gaps(const recorded_argument &argument)
{
  bytes record = argument.record;
  const auto drop = [&](std::initializer_list<std::ptrdiff_t> places, std::ptrdiff_t size) {
    for (const std::ptrdiff_t at : places) std::fill_n(record.begin() + at, size, 0);
  };
  if (record.size() == sizeof(pd_idle_params_t) && argument.word == 0) drop({4, 20}, 4);
  if (record.size() == sizeof(drv_meter_spec_t)) drop({4, 12, 36}, 4);
  if (record.size() == sizeof(drv_res_spec_t) && record[3] == 5) drop({12, 20, 44}, 4);
  if (record.size() == sizeof(drv_stful_spec_t)) drop({1}, 7);
  return record;
}

std::string difference(const recorded_argument &expected, const recorded_argument &actual)
{
  if (without_gaps(expected) != without_gaps(actual) && !expected.record.empty()) {
    return "record" + test::difference(expected.record, actual.record);
  }
  if (expected.word == actual.word || (expected.word == anywhere && actual.word != 0)) return {};
  return std::to_string(actual.word) + " instead of " + std::to_string(expected.word);
}

}  // namespace

std::size_t count_of(per rows)
{
  using calls::match_kind;
  using calls::resource_kind;
  const auto tables = [](auto meets) { return static_cast<std::size_t>(std::ranges::count_if(calls::tables, meets)); };
  const auto resources = [](resource_kind kind, bool direct) {
    return static_cast<std::size_t>(
        std::ranges::count_if(calls::resources, [&](const auto &r) { return r.kind == kind && r.direct == direct; }));
  };
  const auto uses = [](const auto &owners, auto meets) {
    std::size_t count = 0;
    for (const auto &owner : owners)
      count += static_cast<std::size_t>(
          std::ranges::count_if(owner.actions, [&](const calls::use_info &use) { return meets(owner, use); }));
    return count;
  };
  const auto keyed = [](const calls::table_info &t) { return !t.fields.empty(); };
  switch (rows) {
    case per::pipeline: return 1;
    case per::table: return calls::tables.size();
    case per::keyed_table: return tables(keyed);
    case per::masked_table:
      return tables([](const auto &t) { return holds(t, match_kind::ternary) || holds(t, match_kind::lpm); });
    case per::direct_table: return tables([](const auto &t) { return t.profile == nullptr; });
    case per::indirect_table: return tables([](const auto &t) { return t.profile != nullptr; });
    case per::idle_table: return tables([](const auto &t) { return t.idle_time; });
    case per::keyed_use: return uses(calls::tables, [&](const auto &t, const auto &) { return keyed(t); });
    case per::default_use: return uses(calls::tables, [](const auto &, const auto &use) { return use.is_default; });
    case per::action_with_parameters:
      return static_cast<std::size_t>(
          std::ranges::count_if(calls::actions, [](const auto &action) { return !action.params.empty(); }));
    case per::profile: return calls::profiles.size();
    case per::member_use: return uses(calls::profiles, [](const auto &, const auto &) { return true; });
    case per::direct_counter: return resources(resource_kind::counter, true);
    case per::indexed_counter: return resources(resource_kind::counter, false);
    case per::direct_meter: return resources(resource_kind::meter, true);
    case per::indexed_meter: return resources(resource_kind::meter, false);
    case per::wred: return resources(resource_kind::wred, false);
    case per::register_: return resources(resource_kind::register_, false);
    case per::hash: return calls::hashes.size();
    case per::digest: return calls::digests.size();
    case per::value_set: return calls::value_sets.size();
    case per::unit: return 2;
  }
  return 0;
}

std::string source_of(const std::string &folder) { return std::string(calls::pipeline.sources) + "/" + folder; }

const calls::resource_use_info *direct_meter_of(const exported_function &function)
{
  if (function.use == nullptr) return nullptr;
  const auto found =
      std::ranges::find(function.use->resources, calls::resource_form::direct_meter, &calls::resource_use_info::form);
  return found == function.use->resources.end() ? nullptr : &*found;
}

const operation *operation_of(const exported_function &function)
{
  const auto found = std::ranges::find_if(operations, [&](const operation &operation) {
    return operation.family == function.family && full_name(operation, function) == function.name;
  });
  return found == operations.end() ? nullptr : &*found;
}

std::vector<argument_kind> arguments_of(const operation &operation, const exported_function &function)
{
  std::vector<argument_kind> arguments;
  std::ranges::copy_if(operation.arguments, std::back_inserter(arguments),
                       [&](argument_kind kind) { return has_use_for(function, kind); });
  return arguments;
}

std::vector<driver_call> series_of(const operation &operation, const call &call)
{
  std::vector<driver_call> series = operation.series;
  if (operation.family == calls::family_id::group_member_state_set && call.value(argument_kind::member_state) == 1) {
    series[0].function = "pipe_mgr_sel_grp_mbr_disable";
  }
  if ((call.value(argument_kind::read_flags) & 1) == 0) std::erase_if(series, &driver_call::on_request);
  return series;
}

std::vector<recorded_call> expected_calls(const operation &operation, const call &call, std::uint32_t answered)
{
  std::vector<recorded_call> series;
  for (const driver_call &one : series_of(operation, call)) {
    std::map<argument_kind, std::size_t> seen;
    recorded_call expected{one.function, {}};
    for (const term &term : one.arguments) expected.arguments.push_back(resolve(term, call, seen, answered));
    series.push_back(std::move(expected));
  }
  return series;
}

std::string difference(const std::vector<recorded_call> &expected, const std::vector<recorded_call> &actual)
{
  for (std::size_t i = 0; i < std::max(expected.size(), actual.size()); ++i) {
    const std::string which = "driver call " + std::to_string(i + 1);
    if (i >= actual.size()) return which + ", " + expected[i].function + ", is missing";
    if (i >= expected.size()) return which + ", " + actual[i].function + ", is one too many";
    if (actual[i].function != expected[i].function) {
      return which + " is " + actual[i].function + " instead of " + expected[i].function;
    }
    for (std::size_t at = 0; at < actual[i].arguments.size(); ++at) {
      if (at >= expected[i].arguments.size()) return which + ": too many arguments";
      std::string wrong = difference(expected[i].arguments[at], actual[i].arguments[at]);
      if (wrong.empty()) continue;
      wrong.insert(0, which + ", " + actual[i].function + ", argument " + std::to_string(at) + ": ");
      return wrong;
    }
  }
  return {};
}

}  // namespace tarvex::test
