// Completion: what the rows and the command table have for the place where a line ends.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>
#include <filesystem>

#include "command.h"
#include "commands.h"
#include "entry_words.h"
#include "fields.h"
#include "session.h"
#include "snapshot_fields.h"
#include "switch_state.h"

namespace tarvex::shell {

namespace {

using word_list = std::vector<std::string>;

template <typename Rows, typename Wanted>
word_list named(const Rows &rows, Wanted wanted)
{
  word_list result;
  for (const auto &row : rows) {
    if (wanted(row)) result.emplace_back(row.name);
  }
  return result;
}

template <typename Wanted>
word_list tables_that(Wanted wanted)
{
  return named(calls::tables, wanted);
}

word_list resources_of(resource_kind kind)
{
  return named(calls::resources, [&](const resource_info &resource) { return resource.kind == kind; });
}

template <typename Rows>
const auto *row_of(const Rows &rows, std::string_view name)
{
  const auto found = std::ranges::find_if(rows, [&](const auto &row) { return row.name == name; });
  return found == rows.end() ? nullptr : &*found;
}

/// NAME=VALUE words that a command can still take: those that it has are left out.
class assignments {
 public:
  explicit assignments(std::span<const std::string> words)
  {
    for (const std::string &word : words) {
      if (const auto given = assignment_of(word)) given_.push_back(given->first);
    }
  }

  bool given(std::string_view name) const { return std::ranges::count(given_, name) != 0; }

  void offer(std::span<const shown_field> fields)
  {
    for (const shown_field &field : fields) {
      if (!given(field.name) && !given(field.full_name)) offered.push_back(field.name + '=');
    }
  }
  void offer(std::span<const std::string_view> names)
  {
    for (const std::string_view name : names) {
      if (!given(name)) offered.push_back(std::string(name) + '=');
    }
  }
  void offer(std::initializer_list<std::string_view> names) { offer(std::span(names)); }

  word_list offered;

 private:
  std::vector<std::string_view> given_;
};

const use_info *action_among(std::span<const use_info> uses, std::span<const std::string> words)
{
  for (const std::string &word : words) {
    const auto found = std::ranges::find_if(uses, [&](const use_info &use) { return use.action->name == word; });
    if (found != uses.end()) return &*found;
  }
  return nullptr;
}

/// What names an entry: its handle, or its key and its priority.
void offer_entry(assignments &words, const table_info &table, bool by_handle)
{
  if (words.given("handle")) return;
  const std::vector<shown_field> fields = key_fields(table);
  const bool begun = std::ranges::any_of(
      fields, [&](const auto &field) { return words.given(field.name) || words.given(field.full_name); });
  words.offer(fields);
  if (by_handle && !begun) words.offer({"handle"});
  if (table.kind == calls::table_kind::ternary) words.offer({"priority"});
}

/// Actions until one is named, then its parameters. Ahead of the action stands what `entry` offers.
template <typename Entry>
word_list action_words(std::span<const use_info> uses, std::span<const std::string> words, Entry entry)
{
  assignments left(words);
  if (const use_info *const use = action_among(uses, words)) {
    left.offer(parameter_fields(*use->action));
    if (has_meter(*use)) left.offer(meter_words());
  } else {
    entry(left);
    for (const use_info &each : uses) left.offered.emplace_back(each.action->name);
  }
  return left.offered;
}

/// Words behind the table, or behind the verb that stands behind it.
word_list table_words(const command &what, word_kind kind, std::span<const std::string> words)
{
  const bool verb_first = what.words[0] == word_kind::choice;  // sim lookup TABLE
  if (words.size() <= (verb_first ? 1u : 0u)) return {};
  const table_info *const table = row_of(calls::tables, words[verb_first ? 1 : 0]);
  if (table == nullptr) return {};
  const std::string_view verb = verb_first ? words[0] : kind == word_kind::choice_field ? words[1] : what.name;
  words = words.subspan(verb_first || kind == word_kind::choice_field ? 2 : 1);
  assignments left(words);
  const bool adds = verb == "add";
  if (kind == word_kind::entry) {
    word_list result = action_words(table->actions, words, [&](auto &to) { offer_entry(to, *table, !adds); });
    if (action_among(table->actions, words) == nullptr) return result;
    if (table->kind == calls::table_kind::ternary && !left.given("handle")) left.offer({"priority"});
    if (adds && table->idle_time) left.offer({"ttl"});
    std::ranges::move(left.offered, std::back_inserter(result));
    return result;
  }
  if (kind == word_kind::default_entry) {
    std::vector<use_info> defaults;
    std::ranges::copy_if(table->actions, std::back_inserter(defaults), &use_info::is_default);
    return action_words(defaults, words, [](auto &) {});
  }
  if (what.name == "idle" && verb == "enable") left.offer({"mode", "interval", "max-ttl"});
  if (what.name == "idle" && verb != "ttl") return left.offered;
  if (verb == "ttl") left.offer({"ttl"});
  if (what.name == "entry" && !left.given("member") && !left.given("group")) left.offer({"member", "group"});
  if (verb == "count") left.offer({"packets", "bytes"});
  if (verb == "corrupt") left.offer({"bit"});
  if (verb == "lookup") {
    left.offer(key_fields(*table));
  } else if (verb != "set-default") {
    offer_entry(left, *table, !adds);
  }
  return left.offered;
}

/// Actions and parameters of a member, and a name for a new one.
word_list member_words(std::span<const std::string> words)
{
  const profile_info *const profile = words.empty() ? nullptr : row_of(calls::profiles, words[0]);
  const bool adds = words.size() > 1 && words[1] == "add";
  const bool modifies = words.size() > 2 && words[1] == "modify";
  if (profile == nullptr || (!adds && !modifies)) return {};
  words = words.subspan(2);
  word_list result = action_words(profile->actions, words, [](auto &) {});
  if (adds && action_among(profile->actions, words) != nullptr && !assignments(words).given("as"))
    result.emplace_back("as=");
  return result;
}

/// A direction behind what is to be done, then what it catches.
word_list snapshot_words(std::span<const std::string> words)
{
  const bool arms = words[0] == "arm";
  if (!arms && words[0] != "fields") return {};
  if (words.size() == 1) return {"ingress", "egress"};
  if (words[1] != "ingress" && words[1] != "egress") return {};
  assignments left(words);
  if (arms) left.offer({"first-stage", "last-stage"});
  for (const snapshot_field &field : snapshot_fields(words[1] == "egress")) {
    if (arms) {
      left.offer({field.name});
    } else {
      left.offered.emplace_back(field.name);
    }
  }
  return left.offered;
}

/// Files that a name may go on to, folders with a slash at their end. What would have to stand in quotes is left out.
word_list files_from(const std::filesystem::path &folder, const std::string &begun)
{
  const std::string ahead = begun.substr(0, begun.rfind('/') + 1);
  const bool hidden = begun.substr(ahead.size()).starts_with('.');
  const auto plain = [](unsigned char c) {
    return std::isgraph(c) != 0 && c != '"' && c != '\'' && c != '|' && c != '#';
  };
  word_list result;
  std::error_code refused;
  for (std::filesystem::directory_iterator at(folder / (ahead.empty() ? "." : ahead), refused), end;
       !refused && at != end; at.increment(refused)) {
    const std::string name = at->path().filename();
    if (name.starts_with('.') != hidden || !std::ranges::all_of(name, plain)) continue;
    std::error_code unknown;
    result.push_back(ahead + name + (at->is_directory(unknown) ? "/" : ""));
  }
  return result;
}

/// `words`: behind the command's name and ahead of the word that is looked for.
word_list candidates(const command &what, std::span<const std::string> words, const std::filesystem::path &folder,
                     const std::string &begun)
{
  using enum word_kind;
  const word_kind kind = what.words[std::min(words.size(), what.words.size() - 1)];
  switch (kind) {
    case nothing: return {};
    case word_kind::command: return named(commands(), [](const auto &) { return true; });
    case table: return tables_that([](const auto &) { return true; });
    case keyed_table: return tables_that([](const auto &row) { return !row.fields.empty(); });
    case idle_table: return tables_that([](const auto &row) { return row.idle_time; });
    case indirect_table: return tables_that([](const auto &row) { return row.profile != nullptr; });
    case profile: return named(calls::profiles, [](const auto &) { return true; });
    case counter: return resources_of(resource_kind::counter);
    case meter: return resources_of(resource_kind::meter);
    case wred: return resources_of(resource_kind::wred);
    case register_: return resources_of(resource_kind::register_);
    case hash: return named(calls::hashes, [](const auto &) { return true; });
    case choice: return {what.choices.begin(), what.choices.end()};
    case choice_field:
    case field:
    case entry:
    case default_entry: return table_words(what, kind, words);
    case member: return member_words(words);
    case snapshot: return snapshot_words(words);
    case file: return files_from(folder, begun);
    case state: {
      word_list states = files_from(folder, begun);
      states.emplace_back("live");
      return states;
    }
  }
  return {};
}

}  // namespace

std::vector<std::string> session::complete(std::string_view line, const std::filesystem::path &folder)
{
  word_list words;
  std::string begun;
  try {
    for (typed_word &word : split_words(line)) words.push_back(word.bar ? "|" : std::move(word.text));
  } catch (const shell_error &) {
    return {};  // within quotes
  }
  if (!line.empty() && line.back() != ' ' && !words.empty()) {
    begun = words.back();
    words.pop_back();
  }
  word_list all;
  if (words.empty()) {
    all = named(commands(), [](const auto &) { return true; });
  } else if (words.back() == "|") {
    all = {"include", "exclude", "count"};
  } else if (std::ranges::count(words, "|") == 0) {
    const command *const what = row_of(commands(), words[0]);
    if (what != nullptr) all = candidates(*what, std::span(words).subspan(1), folder, begun);
    if (begun.starts_with('-')) {
      all.assign(option_names().begin(), option_names().end());
      if (what != nullptr && what->run == load_routes)
        all.insert(all.end(), what->choices.begin(), what->choices.end());
    }
  }
  std::erase_if(all, [&](const std::string &name) { return !name.starts_with(begun); });
  std::ranges::sort(all);
  return all;
}

}  // namespace tarvex::shell
