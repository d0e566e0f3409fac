// Typed access to the rows of a catalogue file: each value is asked for once, by key, and what is missing, of the wrong
// type or not asked for becomes an error at its place.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <toml++/toml.h>

#include "diagnostics.h"
#include "model.h"

namespace catalogue {

/// A word of the rows and what it stands for.
template <class Value>
using word = std::pair<std::string_view, Value>;

/// "exact, ternary or lpm"
std::string list_words(std::span<const std::string_view> words);

/// The values of a file. Nothing, after an error, where it cannot be read or is no TOML.
std::optional<toml::table> parse_file(const std::filesystem::path &path, diagnostics &diag);

class row {
 public:
  /// A whole file; its errors have no subject.
  row(const toml::table &root, std::string file, diagnostics &diag);

  /// A row of its own or within another one: its name, if it has one, makes the subject of its errors
  /// ("table 'ipv4Host', field 'ingIpv4_dip'").
  row(const toml::table &node, row &parent, std::string_view kind, std::string_view name_key = "name");

  bool has(std::string_view key) const { return node_.contains(key); }
  /// The same for a key that this sort of row may have.
  bool optional(std::string_view key);

  std::string text(std::string_view key, bool may_be_empty = false);
  std::uint32_t number(std::string_view key);
  /// A number that stands only where the rule does not give it, so it is never 0.
  std::uint32_t extra_number(std::string_view key);
  /// A mark that stands only on the rows that have it, so it is never false.
  bool mark(std::string_view key);
  std::vector<std::string> extra_texts(std::string_view key);
  std::vector<std::uint32_t> numbers(std::string_view key);
  std::string extra_text(std::string_view key) { return optional(key) ? text(key) : std::string(); }

  template <class Value>
  Value choice(std::string_view key, std::span<const word<Value>> words)
  {
    const std::string given = text(key);
    if (given.empty()) return Value{};
    std::vector<std::string_view> known;
    for (const auto &[name, value] : words) {
      if (name == given) return value;
      known.push_back(name);
    }
    error(key, "'" + std::string(key) + "' is '" + given + "'; it must be " + list_words(known));
    return Value{};
  }

  /// A word of a kind, among those `allowed`.
  template <class Kind, std::size_t Count>
  Kind choice(std::string_view key, const std::array<Kind, Count> &allowed)
  {
    std::vector<word<Kind>> known;
    for (const Kind kind : allowed) known.emplace_back(tarvex::word_of(kind), kind);
    return choice<Kind>(key, std::span<const word<Kind>>(known));
  }
  template <class Kind>
  Kind choice(std::string_view key)
  {
    std::array<Kind, tarvex::words<Kind>.size()> all;
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<Kind>(i);
    return choice(key, all);
  }

  /// A word that stands only where it is not the usual one, which `words` does not hold.
  template <class Value>
  Value extra_choice(std::string_view key, Value usual, std::span<const word<Value>> words)
  {
    return optional(key) ? choice(key, words) : usual;
  }
  template <class Kind, std::size_t Count>
  Kind extra_choice(std::string_view key, Kind usual, const std::array<Kind, Count> &allowed)
  {
    return optional(key) ? choice(key, allowed) : usual;
  }

  /// Calls `read` with each table of the array `key`, in their order; a row without the array has none.
  template <class Read>
  void each_extra(std::string_view key, Read read)
  {
    if (!optional(key)) return;
    if (const toml::array *elements = node_[key].as_array(); elements != nullptr && elements->empty())
      error(key, "'" + std::string(key) + "' is empty; leave it out");
    each(key, read);
  }
  template <class Read>
  void each(std::string_view key, Read read)
  {
    const toml::node *node = required(key);
    if (node == nullptr) return;
    const toml::array *elements = node->as_array();
    if (elements == nullptr) return wrong_type(key, *node, "an array of tables");
    for (const toml::node &element : *elements) {
      if (const toml::table *inner = element.as_table()) {
        read(*inner);
      } else {
        wrong_type(key, element, "an array of tables");
      }
    }
  }

  /// Calls `read` with the table `key` if there is one.
  template <class Read>
  void extra_table(std::string_view key, Read read)
  {
    if (!optional(key)) return;
    const toml::node &node = *node_.get(key);
    if (const toml::table *inner = node.as_table()) {
      read(*inner);
    } else {
      wrong_type(key, node, "a table");
    }
  }

  /// Tells that a row of this sort has no `key`, and why.
  void refuse(std::string_view key, std::string_view why);

  /// An error at the value of `key`.
  void error(std::string_view key, std::string message);

  /// Ends the reading: tells the keys that nobody asked for, and where everything stands.
  origin finish();

  const std::string &file() const { return file_; }
  position place_of(std::string_view key) const;

 private:
  template <class Value>
  std::vector<Value> values(std::string_view key, std::string_view wanted);
  const toml::node *required(std::string_view key);
  void wrong_type(std::string_view key, const toml::node &node, std::string_view wanted);
  void report(const position &at, std::string message);
  position place(const toml::source_region &region) const;

  const toml::table &node_;
  std::string file_;
  diagnostics &diag_;
  std::string subject_;
  std::vector<std::string_view> asked_;
  bool sound_ = true;
};

}  // namespace catalogue
