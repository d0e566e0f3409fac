// The words of a command on an entry: FIELD=VALUE for its key, the action, PARAMETER=VALUE for that, and a few words of
// the shell's own such as priority=, ttl= and handle=. Every value is tested against the rows before anything is
// written.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "catalogue.h"
#include "command_line.h"
#include "fields.h"
#include "records.h"
#include "tarvex_pd/resource_values.h"
#include "value_text.h"

namespace tarvex::shell {

/// NAME=VALUE; nothing where the word is none.
std::optional<std::pair<std::string_view, std::string_view>> assignment_of(std::string_view word);

/// NAME=VALUE words that are no fields. Throws usage_error for a name not among `allowed`, or given twice.
class own_words {
 public:
  own_words() = default;
  explicit own_words(std::span<const std::string_view> allowed) : allowed_(allowed.begin(), allowed.end()) {}

  bool allows(std::string_view name) const;
  void take(std::string_view name, std::string_view value);
  bool given(std::string_view name) const { return values_.contains(name); }
  std::optional<std::uint64_t> number(std::string_view name, unsigned bits) const;
  /// Throws argument_error where it was not given.
  std::uint64_t required_number(std::string_view name, unsigned bits) const;
  std::optional<std::string_view> text(std::string_view name) const;
  std::span<const std::string_view> allowed() const { return allowed_; }

 private:
  std::vector<std::string_view> allowed_;
  std::map<std::string_view, std::string_view> values_;
};

/// All words as NAME=VALUE of the allowed names.
own_words parse_own_words(std::span<const std::string> words, std::span<const std::string_view> allowed);

/// --force takes what a person types as it is.
inline value_source source_of(const options &chosen)
{
  return chosen.force ? value_source::read_back : value_source::typed;
}

/// PARAMETER=VALUE words of an action, none missing.
record_memory parse_parameters(const action_info &action, std::span<const std::string> words, value_source from);

struct entry_words {
  record_memory key;
  bool has_key = false;           // some field was given, and then none is missing
  const use_info *use = nullptr;  // where there was an action
  record_memory parameters;
  own_words own;

  std::uint32_t priority() const { return static_cast<std::uint32_t>(own.number("priority", 32).value_or(0)); }
};

/// `uses`: the actions that may be named. Fields that are left out are told, but one with a mask may match anything.
entry_words parse_entry_words(const table_info &table, std::span<const std::string> words,
                              std::span<const use_info> uses, std::span<const std::string_view> allowed,
                              value_source from);

/// Names of a meter's own words: cir, cburst, pir, pburst and type.
std::span<const std::string_view> meter_words();
/// Throws usage_error where one is missing, and for a typed one that no switch does as it says.
pd_meter_spec_t meter_of(const own_words &words, value_source from);
/// Whether a command with this meter is accepted with --force only.
bool needs_force(const pd_meter_spec_t &meter);

}  // namespace tarvex::shell
