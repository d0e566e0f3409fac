// Commands that write entries: add, modify, delete, set-default, reset-default.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "commands.h"
#include "entry_search.h"
#include "nearest.h"
#include "session.h"
#include "switch_state.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

using word_list = std::vector<std::string_view>;

/// The words of the shell's own for entries with an action: those that name an entry, and those that the table's
/// functions take beside key and action.
word_list own_words_of(const table_info &table, bool adding)
{
  word_list words;
  if (!adding) words.push_back("handle");
  if (table.kind == table_kind::ternary) words.push_back("priority");
  if (adding && table.idle_time) words.push_back("ttl");
  if (std::ranges::any_of(table.actions, has_meter))
    words.insert(words.end(), meter_words().begin(), meter_words().end());
  return words;
}

void refuse_indirect(const table_info &table)
{
  if (table.profile == nullptr) return;
  throw usage_error(std::string(table.name) + " is indirect, its entries refer to members and groups of " +
                    table.profile->name + ": use the command entry");
}

void require_key(const table_info &table)
{
  if (table.fields.empty()) {
    throw usage_error(std::string(table.name) + " has no key: it takes no entry but its default, see set-default");
  }
}

entry_words parse_with_action(const invocation &call, const table_info &table, bool adding)
{
  refuse_indirect(table);
  require_key(table);
  entry_words words = parse_entry_words(table, call.words.subspan(1), table.actions, own_words_of(table, adding),
                                        source_of(call.chosen));
  if (words.use == nullptr) {
    word_list names = action_names(table.actions);
    std::string all;
    for (const std::string_view name : names) all += (all.empty() ? "" : ", ") + std::string(name);
    throw argument_error("ACTION is missing; " + std::string(table.name) + " has " + all);
  }
  if (words.has_key) require_priority(table, words);
  return words;
}

/// The meter that an action is written with, kept while the call is made.
pd_meter_spec_t meter_for(const invocation &call, const use_info &use, const own_words &own)
{
  return has_meter(use) ? meter_of(own, source_of(call.chosen)) : pd_meter_spec_t{};
}

}  // namespace

exit_code add_entry(const invocation &call)
{
  const table_info &table = table_named(call.word(0, "TABLE"));
  const entry_words words = parse_with_action(call, table, true);
  const pd_meter_spec_t meter = meter_for(call, *words.use, words.own);
  std::uint32_t handle = 0;
  function_call write(function_for(family_id::entry_add, *words.use), call.where());
  write.give(match_spec, words.key.data())
      .give(priority, words.priority())
      .give(action_spec, words.parameters.data())
      .give(ttl, words.own.number("ttl", 32).value_or(0))
      .give(meter_spec, &meter)
      .give(entry_hdl_out, &handle);
  const std::string what = std::string("adding an entry to ") + table.name;
  if (call.only_checked(what)) return exit_code::ok;
  require_added(write.status(), what, table, words.key, words.priority(), call.where());
  call.made("entry", handle);
  return exit_code::ok;
}

exit_code modify_entry(const invocation &call)
{
  const table_info &table = table_named(call.word(0, "TABLE"));
  const entry_words words = parse_with_action(call, table, false);
  const pd_meter_spec_t meter = meter_for(call, *words.use, words.own);
  const auto handle = words.own.number("handle", 32);
  function_call write(
      function_for(handle ? family_id::entry_modify : family_id::entry_modify_by_match_spec, *words.use), call.where());
  write.give(match_spec, words.key.data())
      .give(priority, words.priority())
      .give(entry_hdl, handle.value_or(0))
      .give(action_spec, words.parameters.data())
      .give(meter_spec, &meter);
  call.carry_out(write, "modifying " + entry_name(table, words));
  return exit_code::ok;
}

exit_code delete_entry(const invocation &call)
{
  const table_info &table = table_named(call.word(0, "TABLE"));
  require_key(table);
  const entry_words words =
      parse_entry_words(table, call.words.subspan(1), {}, entry_name_words(table), source_of(call.chosen));
  if (words.has_key) require_priority(table, words);
  const auto handle = words.own.number("handle", 32);
  function_call write(function_for(handle ? family_id::entry_delete : family_id::entry_delete_by_match_spec, table),
                      call.where());
  write.give(match_spec, words.key.data()).give(priority, words.priority()).give(entry_hdl, handle.value_or(0));
  call.carry_out(write, "deleting " + entry_name(table, words));
  return exit_code::ok;
}

exit_code set_default(const invocation &call)
{
  const table_info &table = table_named(call.word(0, "TABLE"));
  refuse_indirect(table);
  const use_info &use = use_named(table.actions, call.word(1, "ACTION"), table.name);
  if (!use.is_default) {
    std::string can;
    for (const use_info &other : table.actions) {
      if (other.is_default) can += (can.empty() ? "" : ", ") + std::string(other.action->name);
    }
    throw usage_error(std::string(use.action->name) + " cannot be the default of " + table.name + "; " +
                      (can.empty() ? "no action can" : "these can: " + can));
  }
  std::vector<std::string> parameters;
  std::vector<std::string> others;
  for (const std::string &word : call.words.subspan(2)) {
    const auto assignment = assignment_of(word);
    const bool of_meter = has_meter(use) && assignment && std::ranges::count(meter_words(), assignment->first) != 0;
    (of_meter ? others : parameters).push_back(word);
  }
  const record_memory record = parse_parameters(*use.action, parameters, source_of(call.chosen));
  const pd_meter_spec_t meter = meter_for(call, use, parse_own_words(others, meter_words()));
  std::uint32_t handle = 0;
  function_call write(function_for(family_id::set_default_action, use), call.where());
  write.give(action_spec, record.data()).give(meter_spec, &meter).give(entry_hdl_out, &handle);
  if (call.carry_out(write, std::string("setting the default of ") + table.name)) {
    call.made("entry", handle);
  }
  return exit_code::ok;
}

exit_code reset_default(const invocation &call)
{
  call.expect_at_most(1);
  const table_info &table = table_named(call.word(0, "TABLE"));
  function_call write(function_for(family_id::reset_default_entry, table), call.where());
  call.carry_out(write, std::string("resetting the default of ") + table.name);
  return exit_code::ok;
}

}  // namespace tarvex::shell
