// The command on the parser value set. The library cannot read its entries back: what is shown is what this session
// wrote.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "commands.h"
#include "entry_words.h"
#include "report.h"
#include "session.h"
#include "status_text.h"
#include "tarvex_pd/parser_value_set.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

constexpr std::array<std::string_view, 5> add_words = {"value", "mask", "scope", "index", "sub"};
constexpr std::array<std::string_view, 2> value_words = {"value", "mask"};

void show(const invocation &call)
{
  call.expect_at_most(1);
  report rows(call.out, call.chosen, "entries",
              {{"handle", 10}, {"value", 10}, {"mask", 10}, {"scope", 10}, {"index", 5}, {"sub", 3}},
              {{"value_set", "fabric_port"}});
  for (const auto &[handle, entry] : call.shell.written.value_set) {
    rows.number(handle).hexadecimal(entry.value).hexadecimal(entry.mask);
    rows.number(entry.scope).number(entry.index).number(entry.sub_index).end_row();
  }
  rows.finish();
  call.out.note("entries that this session wrote; the switch does not tell those of others");
}

value_set_entry values_of(const own_words &own)
{
  value_set_entry entry;
  entry.value = static_cast<std::uint32_t>(own.required_number("value", 32));
  entry.mask = static_cast<std::uint32_t>(own.number("mask", 32).value_or(0xffffffff));
  return entry;
}

void add(const invocation &call)
{
  const own_words own = parse_own_words(call.words.subspan(1), add_words);
  value_set_entry entry = values_of(own);
  entry.scope = static_cast<std::uint32_t>(own.number("scope", 32).value_or(0));
  entry.index = static_cast<std::uint16_t>(own.number("index", 16).value_or(0));
  entry.sub_index = static_cast<std::uint8_t>(own.number("sub", 8).value_or(0));
  if (call.only_checked("adding an entry")) return;
  std::uint32_t handle = 0;
  require_success(p4_pd_tarvex_switch_pvs_fabric_port_entry_add(
                      call.where().session, {call.where().device, entry.scope, entry.index, entry.sub_index},
                      entry.value, entry.mask, &handle),
                  "adding an entry to the value set");
  call.shell.written.value_set[handle] = entry;
  call.out.line("entry " + std::to_string(handle));
}

std::uint32_t handle_word(const invocation &call)
{
  return static_cast<std::uint32_t>(parse_number(call.word(1, "HANDLE"), "handle", 32));
}

void modify(const invocation &call)
{
  const std::uint32_t handle = handle_word(call);
  const value_set_entry entry = values_of(parse_own_words(call.words.subspan(2), value_words));
  if (call.only_checked("modifying an entry")) return;
  require_success(p4_pd_tarvex_switch_pvs_fabric_port_entry_modify(call.where().session, call.where().device, handle,
                                                                   entry.value, entry.mask),
                  "modifying entry " + std::to_string(handle) + " of the value set");
  value_set_entry &kept = call.shell.written.value_set[handle];
  kept.value = entry.value;
  kept.mask = entry.mask;
}

void remove(const invocation &call)
{
  call.expect_at_most(2);
  const std::uint32_t handle = handle_word(call);
  if (call.only_checked("deleting an entry")) return;
  require_success(p4_pd_tarvex_switch_pvs_fabric_port_entry_delete(call.where().session, call.where().device, handle),
                  "deleting entry " + std::to_string(handle) + " of the value set");
  call.shell.written.value_set.erase(handle);
}

constexpr plain_verb verbs[] = {{"show", show}, {"add", add}, {"modify", modify}, {"delete", remove}};

}  // namespace

exit_code value_set(const invocation &call) { return run_verb(verbs, call, call.has(0) ? call.words[0] : "show"); }

}  // namespace tarvex::shell
