// Commands on counters: counters, counter.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

#include "cells.h"
#include "commands.h"
#include "entry_rows.h"
#include "pd_calls.h"
#include "remembered_writes.h"
#include "tarvex_pd/resource_values.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

constexpr std::array counters_only = {resource_kind::counter};
constexpr std::size_t count_width = 20;
constexpr std::uint64_t synchronise = 1;  // bit 0 of the flags

/// The entries that a counter hangs on: the key of each, and what the library calls it. The label has not all fields of
/// the key, and does not say which of them match anything.
class counted_entries {
 public:
  counted_entries(const invocation &call, const resource_info &counter)
      : call_(call),
        table_(table_of(counter.table)),
        reader_(table_, call.where(), call.chosen.hardware),
        key_(table_, call.chosen.raw)
  {
  }

  std::vector<column> columns() const
  {
    std::vector<column> all;
    if (by_priority()) all.push_back({"priority", 10});
    all.push_back({"key", std::min(key_.width(), widest_key)});
    all.push_back({"label"});
    return all;
  }

  void show(report &rows, std::uint32_t handle)
  {
    static constexpr table_entry gone;
    const table_entry *const there = reader_.read_if_there(handle);
    const table_entry &entry = there != nullptr ? *there : gone;
    if (by_priority()) rows.number(entry.priority);
    key_.show(rows, entry);
    rows.cell(label_of(handle));
  }

 private:
  static constexpr std::size_t widest_key = 60;  // beside longer ones, the label is no longer read as a column

  bool by_priority() const { return table_.kind == calls::table_kind::ternary; }

  std::string label_of(std::uint32_t entry) const
  {
    std::array<char, PD_LABEL_TEXT_SIZE> text{};
    const std::uint32_t length = calls::pd::stringify_counter_matchspec(call_.where().session, call_.where().device,
                                                                        table_.handle, entry, text.data());
    std::string label(text.data(), length);
    label.erase(label.find_last_not_of(' ') + 1);
    return label;
  }

  const invocation &call_;
  const table_info &table_;
  entry_reader reader_;
  key_pairs key_;
};

}  // namespace

exit_code show_counters(const invocation &call)
{
  if (!call.has(0)) {
    list_resources(call, "counters", counters_only);
    return exit_code::ok;
  }
  const resource_info &counter = resource_named(call.words[0], counters_only);
  pd_counter_value_t value{};
  function_call read(function_for(family_id::counter_read, counter), call.where());
  read.give(read_flags, synchronise).give(counter_value_out, &value);
  if (!counter.direct) call.word(1, "INDEX");
  std::vector<column> columns = {
      {counter.direct ? "handle" : "index", 10}, {"packets", count_width}, {"bytes", count_width}};
  std::optional<counted_entries> entries;
  if (counter.direct) {
    entries.emplace(call, counter);
    std::ranges::copy(entries->columns(), std::back_inserter(columns));
  }
  report rows(call.out, call.chosen, "cells", std::move(columns), {{"counter", counter.name}});
  for_each_cell(call, counter, read, [&](std::uint32_t cell) {
    read.must(std::string("reading ") + counter.name);
    rows.number(cell).counter(value.packets).counter(value.bytes);
    if (entries) entries->show(rows, cell);
    rows.end_row();
  });
  rows.finish();
  return exit_code::ok;
}

exit_code write_counter(const invocation &call)
{
  static constexpr std::array<std::string_view, 2> allowed = {"packets", "bytes"};
  const resource_info &counter = resource_named(call.word(0, "COUNTER"), counters_only);
  const auto value_of = [](const own_words &own) {
    return pd_counter_value_t{own.required_number("packets", 64), own.required_number("bytes", 64)};
  };
  const std::string what = std::string("writing ") + counter.name;
  if (!counter.direct) {
    const std::uint32_t index = parse_index(counter, call.word(1, "INDEX"), call.chosen);
    const pd_counter_value_t value = value_of(parse_own_words(call.words.subspan(2), allowed));
    if (!call.only_checked(what)) write_cell(call, counter, {index, value});
    return exit_code::ok;
  }
  const carrying_entry entry = carrying_entry_of(call, counter, allowed);
  const pd_counter_value_t value = value_of(entry.own);
  function_call write(function_for(family_id::counter_write, counter), call.where());
  call.carry_out(write.give(entry_hdl, entry.handle).give(counter_value, &value), what);
  return exit_code::ok;
}

}  // namespace tarvex::shell
