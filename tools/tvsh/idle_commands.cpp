// The command on the idle time of entries.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "commands.h"
#include "entry_search.h"
#include "handle_walk.h"
#include "nearest.h"
#include "remembered_writes.h"
#include "report.h"
#include "session.h"
#include "status_text.h"
#include "verbs.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

std::string of(const table_info &table) { return std::string(" of ") + table.name; }

void list_tables(const invocation &call)
{
  report rows(call.out, call.chosen, "tables", {{"table", longest_name(names_of(calls::tables))}, {"handle", 9}});
  for (const table_info &table : calls::tables) {
    if (table.idle_time) rows.cell(table.name).handle(table.handle).end_row();
  }
  rows.finish();
}

void show(const invocation &call, const table_info &table)
{
  call.expect_at_most(2);
  std::uint32_t ttl_value = 0;
  std::uint32_t hit = 0;
  function_call read_ttl(function_for(family_id::get_ttl, table), call.where());
  function_call read_hit(function_for(family_id::get_hit_state, table), call.where());
  read_ttl.give(ttl_out, &ttl_value);
  read_hit.give(hit_state_out, &hit);
  handle_walk walk = handle_walk::entries(table, call.where());
  std::optional<std::uint32_t> handle = walk.next();
  report rows(call.out, call.chosen, "entries", {{"handle", 10}, {"ttl", 10, "ms"}, {"state"}},
              {{"table", table.name}});
  for (; handle; handle = walk.next()) {
    call.shell.check_interrupt();
    read_ttl.give(entry_hdl, *handle).must("reading the ttl of entry " + std::to_string(*handle) + of(table));
    const auto status = static_cast<pd_status_t>(read_hit.give(entry_hdl, *handle).make());
    rows.number(*handle).number(ttl_value);
    if (status == BF_SUCCESS) {
      rows.cell(hit != 0 ? "active" : "idle");
    } else {
      rows.cell(status_text(status));
    }
    rows.end_row();
  }
  rows.finish();
}

void enable(const invocation &call, const table_info &table)
{
  static constexpr std::array<std::string_view, 3> allowed = {"mode", "interval", "max-ttl"};
  const own_words own = parse_own_words(call.words.subspan(2), allowed);
  const std::string_view mode = own.text("mode").value_or("poll");
  if (mode != "poll" && mode != "notify") {
    throw usage_error("mode=" + std::string(mode) + ": the idle time is polled ('poll') or told ('notify')");
  }
  idle_setting setting;
  setting.notify = mode == "notify";
  setting.interval = static_cast<std::uint32_t>(own.number("interval", 32).value_or(0));
  setting.largest_ttl = static_cast<std::uint32_t>(own.number("max-ttl", 32).value_or(0));
  if (!call.only_checked("enabling the idle time" + of(table))) enable_idle_time(call, table, setting);
}

void disable(const invocation &call, const table_info &table)
{
  call.expect_at_most(2);
  if (!call.only_checked("disabling the idle time" + of(table))) disable_idle_time(call, table);
}

void update(const invocation &call, const table_info &table)
{
  call.expect_at_most(2);
  function_call write(function_for(family_id::update_hit_state, table), call.where());
  write.give(word, std::uint64_t{0}).give(word, std::uint64_t{0}, 1);
  call.carry_out(write, "updating the hit states" + of(table));
}

void set_ttl(const invocation &call, const table_info &table)
{
  static constexpr std::array<std::string_view, 2> allowed = {"handle", "ttl"};  // none of these tables has priorities
  const entry_words words = parse_entry_words(table, call.words.subspan(2), {}, allowed, source_of(call.chosen));
  const std::uint64_t value = words.own.required_number("ttl", 32);
  function_call write(function_for(family_id::set_ttl, table), call.where());
  write.give(entry_hdl, handle_of(table, words, call.where())).give(ttl, value);
  call.carry_out(write, "setting the ttl of " + entry_name(table, words));
}

constexpr table_verb idle_verbs[] = {
    {"show", show}, {"enable", enable}, {"disable", disable}, {"update", update}, {"ttl", set_ttl}};

}  // namespace

exit_code idle_time(const invocation &call)
{
  if (!call.has(0)) {
    list_tables(call);
    return exit_code::ok;
  }
  const table_info &table = table_named(call.words[0]);
  if (!table.idle_time)
    throw usage_error(std::string(table.name) + " has no idle time; 'idle' lists the tables that do");
  return run_verb<table_info>(idle_verbs, call, call.has(1) ? call.words[1] : "show", table);
}

}  // namespace tarvex::shell
