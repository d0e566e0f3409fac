// Commands on meters and the WRED block: meters, meter, wred.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <charconv>

#include "cells.h"
#include "commands.h"
#include "remembered_writes.h"
#include "value_text.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

constexpr std::array meters_only = {resource_kind::meter};
constexpr std::array wred_only = {resource_kind::wred};
constexpr std::array both = {resource_kind::meter, resource_kind::wred};
constexpr std::size_t rate_width = 10;

float real_of(const own_words &own, std::string_view name)
{
  const auto text = own.text(name);
  if (!text) throw argument_error(std::string(name) + "= is missing");
  float value = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), value);
  if (error != std::errc{} || end != text->data() + text->size() || !(value >= 0)) {
    throw usage_error(std::string(name) + '=' + std::string(*text) + ": no number from 0 up, such as 0.5");
  }
  return value;
}

void show_meter(const invocation &call, const resource_info &meter)
{
  pd_meter_spec_t value{};
  function_call read(function_for(family_id::meter_read, meter), call.where());
  read.give(meter_value_out, &value);
  report rows(call.out, call.chosen, "cells",
              {{meter.direct ? "handle" : "index", 10},
               {"cir", rate_width, "bytes"},
               {"cburst", rate_width, "bytes"},
               {"pir", rate_width, "bytes"},
               {"pburst", rate_width, "bytes"},
               {"type"}},
              {{"meter", meter.name}});
  for_each_cell(call, meter, read, [&](std::uint32_t cell) {
    read.must(std::string("reading ") + meter.name);
    rows.number(cell).number(value.cir).number(value.cburst).number(value.pir).number(value.pburst);
    rows.cell(value.meter_type == PD_METER_TYPE_COLOR_AWARE ? "aware" : "unaware").end_row();
  });
  rows.finish();
}

void show_wred(const invocation &call, const resource_info &block)
{
  pd_wred_spec_t value{};
  function_call read(function_for(family_id::wred_read, block), call.where());
  read.give(wred_value_out, &value);
  report rows(call.out, call.chosen, "cells",
              {{"index", 10}, {"time", 13}, {"min", rate_width}, {"max", rate_width}, {"probability"}},
              {{"wred", block.name}});
  for_each_cell(call, block, read, [&](std::uint32_t cell) {
    read.must(std::string("reading ") + block.name);
    rows.number(cell).cell(real_text(value.time_constant), true).number(value.min_threshold);
    rows.number(value.max_threshold).cell(real_text(value.max_probability), true).end_row();
  });
  rows.finish();
}

}  // namespace

exit_code show_meters(const invocation &call)
{
  if (!call.has(0)) {
    list_resources(call, "meters", both);
    return exit_code::ok;
  }
  const resource_info &resource = resource_named(call.words[0], both);
  if (!resource.direct) call.word(1, "INDEX");
  if (resource.kind == resource_kind::wred) {
    show_wred(call, resource);
  } else {
    show_meter(call, resource);
  }
  return exit_code::ok;
}

exit_code write_meter(const invocation &call)
{
  const resource_info &meter = resource_named(call.word(0, "METER"), meters_only);
  const std::string what = std::string("setting ") + meter.name;
  if (!meter.direct) {
    const std::uint32_t index = parse_index(meter, call.word(1, "INDEX"), call.chosen);
    const pd_meter_spec_t value =
        meter_of(parse_own_words(call.words.subspan(2), meter_words()), source_of(call.chosen));
    if (!call.only_checked(what)) write_cell(call, meter, {index, value});
    return exit_code::ok;
  }
  const carrying_entry entry = carrying_entry_of(call, meter, meter_words());
  const pd_meter_spec_t value = meter_of(entry.own, source_of(call.chosen));
  function_call write(function_for(family_id::meter_set, meter), call.where());
  call.carry_out(write.give(entry_hdl, entry.handle).give(meter_value, &value), what);
  return exit_code::ok;
}

exit_code write_wred(const invocation &call)
{
  static constexpr std::array<std::string_view, 4> allowed = {"time", "min", "max", "probability"};
  const resource_info &block = resource_named(call.word(0, "BLOCK"), wred_only);
  const std::uint32_t index = parse_index(block, call.word(1, "INDEX"), call.chosen);
  const own_words own = parse_own_words(call.words.subspan(2), allowed);
  const pd_wred_spec_t value{real_of(own, "time"), static_cast<std::uint32_t>(own.required_number("min", 32)),
                             static_cast<std::uint32_t>(own.required_number("max", 32)), real_of(own, "probability")};
  if (value.max_threshold < value.min_threshold) throw usage_error("max is below min");
  if (value.max_probability > 1) throw usage_error("probability is above 1");
  if (!call.only_checked(std::string("setting ") + block.name)) write_cell(call, block, {index, value});
  return exit_code::ok;
}

}  // namespace tarvex::shell
