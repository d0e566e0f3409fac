// Words against rows.
//
// SPDX-License-Identifier: Apache-2.0
#include "entry_words.h"

#include <algorithm>
#include <array>

#include "counted.h"
#include "match_fault.h"
#include "nearest.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

/// Fields of a structure as they are given one after the other.
class field_taker {
 public:
  field_taker(std::vector<shown_field> fields, std::uint8_t *record, value_source from)
      : fields_(std::move(fields)), record_(record), from_(from)
  {
  }

  /// False where no field has the name.
  bool take(std::string_view name, std::string_view value)
  {
    const shown_field *const field = find_field(fields_, name);
    if (field == nullptr) return false;
    if (std::ranges::count(taken_, field) != 0) throw usage_error("field " + described(*field) + " is given twice");
    parse_meant_match(*field, value, record_, from_);
    taken_.push_back(field);
    return true;
  }

  bool any_taken() const { return !taken_.empty(); }

  /// Throws usage_error for a field that is not there and cannot be left out.
  void expect_complete(std::string_view owner) const
  {
    std::string missing;
    for (const shown_field &field : fields_) {
      if (field.has_mask() || std::ranges::count(taken_, &field) != 0) continue;
      missing += (missing.empty() ? "" : ", ") + described(field);
    }
    if (!missing.empty()) throw usage_error(std::string(owner) + ": missing " + missing);
  }

  std::vector<std::string_view> names() const { return field_names(fields_); }

 private:
  std::vector<shown_field> fields_;
  std::uint8_t *record_;
  value_source from_;
  std::vector<const shown_field *> taken_;
};

[[noreturn]] void throw_unknown(std::string_view owner, std::string_view what, std::string_view name,
                                std::vector<std::string_view> names, const own_words &own)
{
  names.insert(names.end(), own.allowed().begin(), own.allowed().end());
  throw usage_error(std::string(owner) + ": " + no_such(what, name, names));
}

}  // namespace

std::optional<std::pair<std::string_view, std::string_view>> assignment_of(std::string_view word)
{
  const std::size_t equals = word.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  return std::pair(word.substr(0, equals), word.substr(equals + 1));
}

bool own_words::allows(std::string_view name) const { return std::ranges::count(allowed_, name) != 0; }

void own_words::take(std::string_view name, std::string_view value)
{
  if (!allows(name)) throw usage_error(no_such("word", name, allowed_));
  if (!values_.emplace(name, value).second) throw usage_error(std::string(name) + " is given twice");
}

std::optional<std::uint64_t> own_words::number(std::string_view name, unsigned bits) const
{
  const auto found = values_.find(name);
  if (found == values_.end()) return std::nullopt;
  return parse_number(found->second, name, bits);
}

std::uint64_t own_words::required_number(std::string_view name, unsigned bits) const
{
  const auto value = number(name, bits);
  if (!value) throw argument_error(std::string(name) + "= (" + counted(bits, "bit") + ") is missing");
  return *value;
}

std::optional<std::string_view> own_words::text(std::string_view name) const
{
  const auto found = values_.find(name);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

own_words parse_own_words(std::span<const std::string> words, std::span<const std::string_view> allowed)
{
  own_words own(allowed);
  for (const std::string &word : words) {
    const auto assignment = assignment_of(word);
    if (!assignment) throw usage_error("'" + word + "' is no NAME=VALUE");
    own.take(assignment->first, assignment->second);
  }
  return own;
}

record_memory parse_parameters(const action_info &action, std::span<const std::string> words, value_source from)
{
  record_memory record;
  field_taker parameters(parameter_fields(action), record.data(), from);
  for (const std::string &word : words) {
    const auto assignment = assignment_of(word);
    if (!assignment) throw usage_error("'" + word + "' is no PARAMETER=VALUE");
    if (!parameters.take(assignment->first, assignment->second)) {
      throw_unknown(action.name, "parameter", assignment->first, parameters.names(), {});
    }
  }
  parameters.expect_complete(action.name);
  return record;
}

entry_words parse_entry_words(const table_info &table, std::span<const std::string> words,
                              std::span<const use_info> uses, std::span<const std::string_view> allowed,
                              value_source from)
{
  entry_words parsed;
  parsed.own = own_words(allowed);
  field_taker key(key_fields(table), parsed.key.data(), from);
  std::optional<field_taker> parameters;
  for (const std::string &word : words) {
    const auto assignment = assignment_of(word);
    if (!assignment) {
      if (parsed.use != nullptr || uses.empty()) {
        throw usage_error("'" + word + "' is no FIELD=VALUE" +
                          (parsed.use != nullptr ? std::string(" and ") + parsed.use->action->name + " is the action"
                                                 : std::string(" and no action is wanted")));
      }
      parsed.use = &use_named(uses, word, table.name);
      parameters.emplace(parameter_fields(*parsed.use->action), parsed.parameters.data(), from);
      continue;
    }
    const auto [name, value] = *assignment;
    if (parameters ? parameters->take(name, value) : key.take(name, value)) continue;
    if (parsed.own.allows(name)) {
      parsed.own.take(name, value);
    } else if (parameters) {
      throw_unknown(parsed.use->action->name, "parameter", name, parameters->names(), parsed.own);
    } else {
      throw_unknown(table.name, "field", name, key.names(), parsed.own);
    }
  }
  // A table may be all masks: then no field at all is a key too.
  parsed.has_key = !parsed.own.given("handle") && !table.fields.empty();
  if (key.any_taken() && !parsed.has_key) throw usage_error("give either the handle or the key of the entry");
  if (parsed.has_key) key.expect_complete(table.name);
  if (parameters) parameters->expect_complete(parsed.use->action->name);
  return parsed;
}

std::span<const std::string_view> meter_words()
{
  static constexpr std::array<std::string_view, 5> names = {"cir", "cburst", "pir", "pburst", "type"};
  return names;
}

pd_meter_spec_t meter_of(const own_words &words, value_source from)
{
  pd_meter_spec_t meter{};
  meter.cir = static_cast<std::uint32_t>(words.required_number("cir", 32));
  meter.cburst = static_cast<std::uint32_t>(words.required_number("cburst", 32));
  meter.pir = static_cast<std::uint32_t>(words.required_number("pir", 32));
  meter.pburst = static_cast<std::uint32_t>(words.required_number("pburst", 32));
  const std::string_view type = words.text("type").value_or("unaware");
  if (type != "aware" && type != "unaware") {
    throw usage_error("type=" + std::string(type) + ": a meter is 'aware' or 'unaware' of colours");
  }
  meter.meter_type = type == "aware" ? PD_METER_TYPE_COLOR_AWARE : PD_METER_TYPE_COLOR_UNAWARE;
  if (from == value_source::read_back) return meter;
  if (meter.pir < meter.cir) {
    throw usage_error("pir=" + std::to_string(meter.pir) + " is below cir=" + std::to_string(meter.cir) +
                      ", so that the committed rate is never reached; correct it, or add --force");
  }
  if (needs_force(meter)) {
    throw usage_error("type=aware: no colour comes into the meters of this pipeline, and they are set unaware of it");
  }
  return meter;
}

bool needs_force(const pd_meter_spec_t &meter)
{
  return meter.pir < meter.cir || meter.meter_type == PD_METER_TYPE_COLOR_AWARE;
}

}  // namespace tarvex::shell
