// A call is found by its name among those of the driver's header, and made by a template over its type.
//
// SPDX-License-Identifier: Apache-2.0
#include "replayer.h"

#include <dlfcn.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "recorded_arguments.h"
#include "recorded_number.h"

namespace tarvex::trace {

namespace {

using nlohmann::json;

struct callable {
  const call_row *row;
  std::uint32_t (*make)(void *code, std::span<const word> arguments);
};

template <typename... Arguments>
std::uint32_t make_call(pd_status_t (*function)(Arguments...), [[maybe_unused]] std::span<const word> arguments)
{
  return [&]<std::size_t... I>(std::index_sequence<I...>) { return function(from_word<Arguments>(arguments[I])...); }
  (std::index_sequence_for<Arguments...>{});
}

template <auto Function>
constexpr callable callable_of()
{
  if constexpr (row_of<Function>.effect == call_effect::writes) {
    return {&row_of<Function>, [](void *code, std::span<const word> arguments) {
              return make_call(reinterpret_cast<decltype(Function)>(code), arguments);
            }};
  } else {
    return {&row_of<Function>, nullptr};
  }
}

template <auto... Functions>
std::unordered_map<std::string_view, callable> by_name(function_list<Functions...>)
{
  return {{row_of<Functions>.name, callable_of<Functions>()}...};
}

const callable &function_named(const std::string &name)
{
  static const std::unordered_map<std::string_view, callable> all = by_name(driver_functions{});
  const auto found = all.find(name);
  if (found == all.end()) throw trace_error("'" + name + "' is no function of the driver");
  return found->second;
}

void *code_of(const std::string &name)
{
  void *const code = dlsym(RTLD_DEFAULT, name.c_str());
  if (code == nullptr) throw trace_error("the driver here lacks " + name);
  return code;
}

json parsed(std::string_view line)
{
  const json call = json::parse(line, nullptr, false);
  if (!call.is_object() || call.value("schema_version", 0) != 1) {
    throw trace_error("is no call of a trace: traces that can be replayed are written with -j, or TARVEX_TRACE_JSON=1");
  }
  return call;
}

/// A handle that came out then.
struct answered_handle {
  std::size_t at;
  value_kind sort;
  std::uint32_t then;
};

/// The driver gives one at most.
std::optional<answered_handle> handle_answered(const call_row &row, const json &call)
{
  for (std::size_t i = 0; i < row.count; ++i) {
    if (!driver::is_made_handle(row.rows[i].kind) || row.rows[i].way == direction::in) continue;
    return answered_handle{i, row.rows[i].kind,
                           number<std::uint32_t>(call.at("results").at(std::string(row.rows[i].name)))};
  }
  return std::nullopt;
}

bool is_of_allocator(const call_row &row)
{
  const auto is_block = [](const argument_row &argument) { return argument.kind == value_kind::block; };
  return row.result == result_kind::block || std::ranges::any_of(row.arguments(), is_block);
}

/// The last handle that goes in; 0 where there is none.
std::uint32_t handle_given(const call_row &row, std::span<const word> arguments)
{
  std::uint32_t given = 0;
  for (std::size_t i = 0; i < row.count; ++i) {
    if (driver::is_made_handle(row.rows[i].kind)) given = static_cast<std::uint32_t>(arguments[i]);
  }
  return given;
}

std::string make(replay_counts &counts, handle_map &handles, const callable &function, const json &call,
                 bool only_check, const replayer::observer &observe)
{
  const call_row &row = *function.row;
  const json &recorded = call.at("arguments");
  const recorded_arguments arguments(row, recorded, handles);
  const std::optional<answered_handle> answered = handle_answered(row, call);
  const std::string name(row.name);
  void *const code = code_of(name);
  ++counts.made;
  if (only_check) return {};
  const std::uint32_t status = function.make(code, arguments.words());
  if (status != 0) {
    ++counts.different;
    return name + ": status " + std::to_string(status) + ", and not 0 as in the trace";
  }
  const std::uint32_t handle = answered ? arguments.answer(answered->at) : handle_given(row, arguments.words());
  if (answered) handles.learn(answered->sort, arguments.scope(), answered->then, handle);
  if (observe) observe(row.name, recorded, handle);
  return {};
}

}  // namespace

std::string replayer::replay(std::string_view line)
try {
  const json call = parsed(line);
  const auto name = call.at("call").get<std::string>();
  const callable &function = function_named(name);
  if (number<unsigned>(call.at("depth")) != 0) {
    ++counts_.nested;
  } else if (function.row->effect == call_effect::reads) {
    ++counts_.reads;
  } else if (function.row->effect == call_effect::neither) {
    // Memory of the driver's is taken and given back in reads.
    ++(is_of_allocator(*function.row) ? counts_.reads : counts_.left_out);
  } else if (number<std::uint32_t>(call.at("status")) != 0) {
    ++counts_.refused;
  } else {
    return make(counts_, handles_, function, call, only_check_, observe_);
  }
  return {};
} catch (const nlohmann::json::exception &error) {
  throw trace_error(std::string("is no call of a trace: ") + error.what());
}

}  // namespace tarvex::trace
