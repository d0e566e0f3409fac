// Reads the kinds of arguments first, then the functions that are made of them.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>
#include <sstream>

#include "driver_rows.h"
#include "toml_rows.h"

namespace driver_rows {

namespace {

using catalogue::row;

std::string in_quotes(std::string_view text) { return "'" + std::string(text) + "'"; }

/// The keys of a table in the order of the file; toml++ has them in that of the alphabet.
std::vector<std::string> keys_in_order(const toml::table &node)
{
  std::vector<std::pair<std::uint32_t, std::string>> keys;
  for (const auto &[key, value] : node) keys.emplace_back(key.source().begin.line, key.str());
  std::ranges::sort(keys);
  std::vector<std::string> sorted;
  for (auto &[line, key] : keys) sorted.push_back(std::move(key));
  return sorted;
}

/// Reads the word of `key`, the first of the kinds where there is none.
template <class Kind>
Kind read_kind(row &from, std::string_view key)
{
  return from.optional(key) ? from.choice<Kind>(key) : Kind{};
}

class reader {
 public:
  reader(row &file, catalogue::diagnostics &diag) : file_(file), diag_(diag) {}

  void read_kinds()
  {
    file_.each("kinds", [&](const toml::table &node) {
      row r(node, file_, "kind", "");
      argument kind;
      kind.kind = read_kind<value_kind>(r, "carries");
      kind.type = r.extra_text("type");
      if (kind.type.empty()) kind.type = "uint32_t";
      kind.note = r.extra_text("note");
      const std::string name = r.extra_text("name");
      for (const std::string &id : r.extra_texts("arguments")) {
        kind.name = name.empty() ? id : name;
        if (!kinds_.emplace(id, known_kind{kind, r.place_of("arguments")}).second) {
          r.error("arguments", in_quotes(id) + " stands here a second time");
        }
      }
      r.finish();
    });
  }

  group read_group(const std::string &name, const toml::table &node)
  {
    group made{name, file_.place_of(name), {}};
    row r(node, file_, "group " + in_quotes(name), "");
    const std::vector<std::string> names = keys_in_order(node);
    for (const std::string &function_name : names) {
      r.extra_table(function_name,
                    [&](const toml::table &of) { made.functions.push_back(read_function(function_name, of)); });
    }
    r.finish();
    return made;
  }

  /// What no function has is a mistake, too.
  void check_all_used()
  {
    for (const auto &[id, known] : kinds_) {
      if (!known.used) diag_.error(known.at, "argument " + in_quotes(id) + ": no function has it");
    }
  }

 private:
  struct known_kind {
    argument kind;
    catalogue::position at;
    bool used = false;
  };

  function read_function(const std::string &name, const toml::table &node)
  {
    row r(node, file_, in_quotes(name), "");
    function made;
    made.name = name;
    made.doc = r.text("doc");
    made.result = read_kind<result_kind>(r, "gives");
    std::size_t effects = 0;
    for (const std::string_view word : tarvex::words<call_effect>) {
      if (!r.has(word)) continue;
      made.effect = *tarvex::kind_of_word<call_effect>(word);
      const std::string given = r.text(word, true);
      if (effects++ == 0) read_arguments(r, word, given, made.arguments);
    }
    if (effects != 1) {
      r.error("doc", "its arguments must stand once, as " + catalogue::list_words(tarvex::words<call_effect>));
    }
    r.finish();
    return made;
  }

  /// "NAME", "NAME:DIRECTION", "NAME:DIRECTION[ROOM]" or "NAME:DIRECTION[FILLED<=ROOM]", with blanks between arguments.
  void read_arguments(row &r, std::string_view key, const std::string &given, std::vector<argument> &to)
  {
    std::istringstream words(given);
    std::vector<std::string> lengths;
    for (std::string word; words >> word;) {
      std::string length, way = "in";
      if (const std::size_t open = word.find('['); open != word.npos && word.ends_with(']')) {
        length = word.substr(open + 1, word.size() - open - 2);
        word.resize(open);
      }
      if (const std::size_t colon = word.find(':'); colon != word.npos) {
        way = word.substr(colon + 1);
        word.resize(colon);
      }
      const auto known = kinds_.find(word);
      const auto goes = tarvex::kind_of_word<direction>(way);
      if (known == kinds_.end()) {
        r.error(key, in_quotes(word) + " is no argument; 'kinds' lists them");
      } else if (!goes) {
        r.error(key, in_quotes(word) + " goes " + in_quotes(way) + "; it must be " +
                         catalogue::list_words(tarvex::words<direction>));
      } else if (std::ranges::count(to, known->second.kind.name, &argument::name) != 0) {
        r.error(key, "two arguments are called " + in_quotes(known->second.kind.name));
      } else {
        known->second.used = true;
        to.push_back(known->second.kind);
        to.back().way = *goes;
        lengths.push_back(length);
      }
    }
    for (std::size_t i = 0; i < to.size(); ++i) {
      if (lengths[i].empty()) continue;
      const std::size_t both = lengths[i].find("<=");
      to[i].filled = place_of(r, key, to, lengths[i].substr(0, both));
      to[i].room = both == lengths[i].npos ? to[i].filled : place_of(r, key, to, lengths[i].substr(both + 2));
    }
  }

  std::optional<std::size_t> place_of(row &r, std::string_view key, const std::vector<argument> &among,
                                      const std::string &name)
  {
    const auto found = std::ranges::find(among, name, &argument::name);
    if (found != among.end()) return static_cast<std::size_t>(found - among.begin());
    r.error(key, in_quotes(name) + ", which says a length, is no argument of the function");
    return std::nullopt;
  }

  row &file_;
  catalogue::diagnostics &diag_;
  std::map<std::string, known_kind> kinds_;
};

}  // namespace

std::vector<group> read(const std::filesystem::path &file, catalogue::diagnostics &diag)
{
  std::vector<group> groups;
  const std::optional<toml::table> root = catalogue::parse_file(file, diag);
  if (!root) return groups;
  row rows(*root, file.string(), diag);
  reader all(rows, diag);
  all.read_kinds();
  const std::vector<std::string> names = keys_in_order(*root);
  for (const std::string &name : names) {
    if (name == "kinds") continue;
    rows.extra_table(name, [&](const toml::table &inner) { groups.push_back(all.read_group(name, inner)); });
  }
  rows.finish();
  all.check_all_used();
  return groups;
}

}  // namespace driver_rows
