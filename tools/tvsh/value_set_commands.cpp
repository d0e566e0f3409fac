// The command on the parser value set. The library cannot read its entries back: what is shown is what this session
// wrote.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>

#include "commands.h"
#include "entry_words.h"
#include "remembered_writes.h"
#include "report.h"
#include "session.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

constexpr std::array<std::string_view, 5> add_words = {"value", "mask", "scope", "index", "sub"};
constexpr std::array<std::string_view, 2> value_words = {"value", "mask"};

void show_written(const invocation &call)
{
  call.expect_at_most(1);
  report rows(call.out, call.chosen, "entries",
              {{"handle", 10}, {"value", 10}, {"mask", 10}, {"scope", 10}, {"index", 5}, {"sub", 3}},
              {{"value_set", the_value_set().name}});
  const own_writes now = *call.shell.written();
  for (const auto &[handle, entry] : now.value_set) {
    rows.number(handle).hexadecimal(entry.value).hexadecimal(entry.mask);
    rows.number(entry.scope).number(entry.index).number(entry.sub_index).end_row();
  }
  rows.finish();
  call.out.note("entries that this shell wrote; the switch does not tell those of others");
}

value_set_entry values_of(const own_words &own)
{
  value_set_entry entry;
  entry.value = static_cast<std::uint32_t>(own.required_number("value", 32));
  entry.mask = static_cast<std::uint32_t>(own.number("mask", 32).value_or(0xffffffff));
  return entry;
}

/// As for keys: what a person types must be what the switch takes it for.
void require_meant(const invocation &call, const value_set_entry &entry)
{
  if (call.chosen.force || (entry.value & ~entry.mask) == 0) return;
  throw usage_error("value " + hexadecimal(entry.value) + " has bits outside the mask " + hexadecimal(entry.mask) +
                    "; it would match " + hexadecimal(entry.value & entry.mask) + ". Write that, or add --force");
}

value_set_entry whole_entry(std::span<const std::string> words)
{
  const own_words own = parse_own_words(words, add_words);
  value_set_entry entry = values_of(own);
  entry.scope = static_cast<std::uint32_t>(own.number("scope", 32).value_or(0));
  entry.index = static_cast<std::uint16_t>(own.number("index", 16).value_or(0));
  entry.sub_index = static_cast<std::uint8_t>(own.number("sub", 8).value_or(0));
  return entry;
}

void add_entry(const invocation &call)
{
  const value_set_entry entry = whole_entry(call.words.subspan(1));
  require_meant(call, entry);
  if (call.only_checked("adding an entry")) return;
  call.made("entry", add_to_value_set(call, entry));
}

std::uint32_t handle_word(const invocation &call)
{
  return static_cast<std::uint32_t>(parse_number(call.word(1, "HANDLE"), "handle", 32));
}

void modify_entry(const invocation &call)
{
  const std::uint32_t handle = handle_word(call);
  const value_set_entry entry = values_of(parse_own_words(call.words.subspan(2), value_words));
  require_meant(call, entry);
  if (call.only_checked("modifying an entry")) return;
  modify_in_value_set(call, handle, entry.value, entry.mask);
}

/// By its handle, or as it was added.
void delete_entry(const invocation &call)
{
  std::uint32_t handle = 0;
  if (assignment_of(call.word(1, "HANDLE"))) {
    const value_set_entry wanted = whole_entry(call.words.subspan(1));
    const own_writes now = *call.shell.written();
    const auto found = std::ranges::find_if(now.value_set, [&](const auto &each) { return each.second == wanted; });
    if (found == now.value_set.end()) throw usage_error("this shell wrote no such entry; 'value-set show' lists them");
    handle = found->first;
  } else {
    call.expect_at_most(2);
    handle = handle_word(call);
  }
  if (!call.only_checked("deleting an entry")) delete_from_value_set(call, handle);
}

constexpr plain_verb value_set_verbs[] = {
    {"show", show_written}, {"add", add_entry}, {"modify", modify_entry}, {"delete", delete_entry}};

}  // namespace

exit_code value_set(const invocation &call)
{
  return run_verb(value_set_verbs, call, call.has(0) ? call.words[0] : "show");
}

}  // namespace tarvex::shell
