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

void add_assignments(word_list &result, std::span<const shown_field> fields)
{
  for (const shown_field &field : fields) result.push_back(field.name + '=');
}

/// Fields until an action is named, then its parameters.
word_list entry_names(std::span<const shown_field> fields, std::span<const use_info> uses,
                      std::span<const std::string> words)
{
  word_list result;
  for (const std::string &word : words) {
    for (const use_info &use : uses) {
      if (use.action->name != word) continue;
      add_assignments(result, parameter_fields(*use.action));
      return result;
    }
  }
  add_assignments(result, fields);
  for (const use_info &use : uses) result.emplace_back(use.action->name);
  return result;
}

word_list table_words(word_kind kind, std::span<const std::string> words)
{
  const table_info *const table = words.empty() ? nullptr : row_of(calls::tables, words[0]);
  if (table == nullptr) return {};
  if (kind == word_kind::entry) return entry_names(key_fields(*table), table->actions, words.subspan(1));
  if (kind != word_kind::default_entry) return entry_names(key_fields(*table), {}, {});
  std::vector<use_info> defaults;
  std::ranges::copy_if(table->actions, std::back_inserter(defaults), &use_info::is_default);
  return entry_names({}, defaults, words.subspan(1));
}

/// A direction behind what is to be done, then what it catches.
word_list snapshot_words(std::span<const std::string> words)
{
  const bool arms = words[0] == "arm";
  if (!arms && words[0] != "fields") return {};
  if (words.size() == 1) return {"ingress", "egress"};
  if (words[1] != "ingress" && words[1] != "egress") return {};
  word_list result = arms ? word_list{"first-stage=", "last-stage="} : word_list{};
  for (const snapshot_field &field : snapshot_fields(words[1] == "egress"))
    result.push_back(std::string(field.name) + (arms ? "=" : ""));
  return result;
}

/// Files that a name may go on to, folders with a slash at their end. What would have to stand in quotes is left out.
word_list files_from(const std::filesystem::path &folder, const std::string &begun)
{
  const std::string ahead = begun.substr(0, begun.rfind('/') + 1);
  const bool hidden = begun.substr(ahead.size()).starts_with('.');
  const auto plain = [](unsigned char c) {
    return (std::isgraph(c) != 0 || c > 0x7f) && c != '"' && c != '\'' && c != '|' && c != '#';
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
    case default_entry: return table_words(kind, words);
    case member: {
      const profile_info *const row = words.empty() ? nullptr : row_of(calls::profiles, words[0]);
      return row == nullptr ? word_list{} : entry_names({}, row->actions, words.subspan(1));
    }
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
      all = {"-j", "--json", "--raw", "--hw", "--dry-run"};
      if (what != nullptr && what->run == load_routes)
        all.insert(all.end(), what->choices.begin(), what->choices.end());
    }
  }
  std::erase_if(all, [&](const std::string &name) { return !name.starts_with(begun); });
  std::ranges::sort(all);
  return all;
}

}  // namespace tarvex::shell
