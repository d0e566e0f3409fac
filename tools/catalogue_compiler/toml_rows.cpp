// Typed access to the rows of a catalogue file.
//
// SPDX-License-Identifier: Apache-2.0
#include "toml_rows.h"

#include <fstream>
#include <sstream>

namespace catalogue {

std::optional<toml::table> parse_file(const std::filesystem::path &path, diagnostics &diag)
{
  const std::string shown = path.string();
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  // A stream takes nothing of an empty file for a failure.
  if (in.peek() != std::ifstream::traits_type::eof()) content << in.rdbuf();
  if (!in.is_open() || in.bad() || content.bad()) {
    diag.error({shown}, "cannot be read; check that it is a file and its permissions");
    return std::nullopt;
  }
  try {
    return toml::parse(content.view(), shown);
  } catch (const toml::parse_error &e) {
    const toml::source_position at = e.source().begin;
    diag.error({shown, static_cast<std::uint32_t>(at.line), static_cast<std::uint32_t>(at.column)},
               std::string(e.description()));
    return std::nullopt;
  }
}

std::string list_words(std::span<const std::string_view> words)
{
  std::string list;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) list += i + 1 == words.size() ? " or " : ", ";
    list += "'" + std::string(words[i]) + "'";
  }
  return list;
}

row::row(const toml::table &root, std::string file, diagnostics &diag)
    : node_(root), file_(std::move(file)), diag_(diag)
{
}

row::row(const toml::table &node, row &parent, std::string_view kind, std::string_view name_key)
    : node_(node), file_(parent.file_), diag_(parent.diag_)
{
  subject_ = parent.subject_ + (parent.subject_.empty() ? "" : ", ") + std::string(kind);
  if (name_key.empty()) return;
  const std::string name = node[name_key].value_exact<std::string>().value_or("");
  if (!name.empty()) subject_ += " '" + name + "'";
}

std::string row::text(std::string_view key, bool may_be_empty)
{
  const toml::node *node = required(key);
  if (node == nullptr) return {};
  const auto value = node->value_exact<std::string>();
  if (!value) {
    wrong_type(key, *node, "a string");
    return {};
  }
  if (value->empty() && !may_be_empty) error(key, "'" + std::string(key) + "' is empty");
  return *value;
}

std::uint32_t row::number(std::string_view key)
{
  const toml::node *node = required(key);
  if (node == nullptr) return 0;
  const auto value = node->value_exact<std::int64_t>();
  if (!value) {
    wrong_type(key, *node, "an integer");
    return 0;
  }
  if (*value < 0 || *value > std::numeric_limits<std::uint32_t>::max()) {
    error(key, "'" + std::string(key) + "' is not a number of 32 bits");
    return 0;
  }
  return static_cast<std::uint32_t>(*value);
}

std::uint32_t row::extra_number(std::string_view key)
{
  if (!optional(key)) return 0;
  if (node_[key].value_exact<std::int64_t>() == 0) error(key, "'" + std::string(key) + "' is 0; leave it out");
  return number(key);
}

bool row::mark(std::string_view key)
{
  if (!optional(key)) return false;
  const toml::node &node = *node_.get(key);
  const auto value = node.value_exact<bool>();
  if (!value) {
    wrong_type(key, node, "true");
  } else if (!*value) {
    error(key, "'" + std::string(key) + "' is false; leave it out");
  }
  return value.value_or(false);
}

template <class Value>
std::vector<Value> row::values(std::string_view key, std::string_view wanted)
{
  std::vector<Value> found;
  const toml::node *node = required(key);
  if (node == nullptr) return found;
  const toml::array *elements = node->as_array();
  if (elements == nullptr) {
    wrong_type(key, *node, wanted);
    return found;
  }
  for (const toml::node &element : *elements) {
    if (const auto value = element.value_exact<Value>()) {
      found.push_back(*value);
    } else {
      wrong_type(key, element, wanted);
    }
  }
  return found;
}

std::vector<std::string> row::extra_texts(std::string_view key)
{
  return optional(key) ? values<std::string>(key, "an array of strings") : std::vector<std::string>();
}

std::vector<std::uint32_t> row::numbers(std::string_view key)
{
  std::vector<std::uint32_t> found;
  for (const std::int64_t value : values<std::int64_t>(key, "an array of numbers")) {
    if (value < 0 || value > std::numeric_limits<std::uint32_t>::max()) {
      error(key, "'" + std::string(key) + "' holds " + std::to_string(value) + ", which is no number of 32 bits");
    } else {
      found.push_back(static_cast<std::uint32_t>(value));
    }
  }
  return found;
}

void row::refuse(std::string_view key, std::string_view why)
{
  if (!has(key)) return;
  asked_.push_back(key);
  error(key, "'" + std::string(key) + "' must be left out: " + std::string(why));
}

void row::error(std::string_view key, std::string message) { report(place_of(key), std::move(message)); }

position row::place_of(std::string_view key) const
{
  const toml::node *node = node_.get(key);
  return place((node != nullptr ? *node : static_cast<const toml::node &>(node_)).source());
}

origin row::finish()
{
  origin result;
  result.at = place(node_.source());
  for (const auto &[key, value] : node_) {
    if (std::find(asked_.begin(), asked_.end(), key.str()) != asked_.end()) {
      result.values.emplace(std::string(key.str()), place(value.source()));
    } else {
      report(place(key.source()), "unknown key '" + std::string(key.str()) + "'; known here: " + list_words(asked_));
    }
  }
  result.sound = sound_;
  return result;
}

const toml::node *row::required(std::string_view key)
{
  optional(key);
  const toml::node *node = node_.get(key);
  if (node == nullptr) report(place(node_.source()), "key '" + std::string(key) + "' is missing");
  return node;
}

bool row::optional(std::string_view key)
{
  if (std::find(asked_.begin(), asked_.end(), key) == asked_.end()) asked_.push_back(key);
  return has(key);
}

void row::wrong_type(std::string_view key, const toml::node &node, std::string_view wanted)
{
  report(place(node.source()), "'" + std::string(key) + "' must be " + std::string(wanted));
}

void row::report(const position &at, std::string message)
{
  sound_ = false;
  diag_.error(at, subject_.empty() ? std::move(message) : subject_ + ": " + message);
}

position row::place(const toml::source_region &region) const
{
  return {file_, static_cast<std::uint32_t>(region.begin.line), static_cast<std::uint32_t>(region.begin.column)};
}

}  // namespace catalogue
