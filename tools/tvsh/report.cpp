// Lines of columns, or JSON with a row on each line.
//
// SPDX-License-Identifier: Apache-2.0
#include "report.h"

#include <algorithm>

#include "json_text.h"
#include "value_text.h"

namespace tarvex::shell {

report::report(output &out, const options &chosen, std::string_view list, std::vector<column> columns,
               const attributes &head)
    : out_(out), json_(chosen.json), columns_(std::move(columns))
{
  for (column &each : columns_) each.width = std::max(each.width, each.heading().size());
  if (json_) {
    line_ = "{\"schema_version\":" + std::to_string(schema_version);
    first_member_ = false;
    for (const auto &[name, value] : head) member(name, value, false);
    line_ += ',';
    append_json_text(line_, list);
    line_ += ":[";
    out_.line(line_);
  } else {
    for (const column &each : columns_) cell(each.heading());
    line_.erase(line_.find_last_not_of(' ') + 1);
    out_.heading(line_);
  }
  line_.clear();
  at_ = 0;
}

void report::begin_cell()
{
  if (json_) {
    if (at_ == 0) {
      line_ += first_row_ ? "{" : ",{";
      first_member_ = true;
    }
  } else if (at_ != 0) {
    // The cell before is filled up now, so that the last one of a row is not.
    const std::size_t used = line_.size() - cell_start_;
    line_.append(columns_[at_ - 1].width - std::min(used, columns_[at_ - 1].width) + 2, ' ');
  }
  cell_start_ = line_.size();
  ++at_;
}

void report::member(std::string_view name, std::string_view value, bool is_number)
{
  if (!first_member_) line_ += ',';
  first_member_ = false;
  append_json_text(line_, name);
  line_ += ':';
  if (is_number) {
    line_ += value;
  } else {
    append_json_text(line_, value);
  }
}

report &report::cell(std::string_view text, bool is_number)
{
  begin_cell();
  if (json_) {
    member(columns_[at_ - 1].name, text, is_number);
  } else {
    line_ += text;
  }
  return *this;
}

report &report::number(std::uint64_t value)
{
  std::string text;
  append_decimal(text, value);
  return cell(text, true);
}

report &report::hexadecimal(std::uint64_t value) { return cell(shell::hexadecimal(value)); }

report &report::handle(std::uint32_t value) { return json_ ? number(value) : hexadecimal(value); }

report &report::counter(std::uint64_t value)
{
  std::string text;
  append_decimal(text, value);
  return cell(text);
}

report &report::boolean(bool value) { return value ? cell_as("yes", "true") : cell_as("no", "false"); }

report &report::cell_as(std::string_view text, std::string_view json) { return json_ ? cell(json, true) : cell(text); }

report &report::nothing()
{
  begin_cell();
  return *this;
}

report &report::begin_pairs()
{
  begin_cell();
  if (json_) {
    if (!first_member_) line_ += ',';
    append_json_text(line_, columns_[at_ - 1].name);
    line_ += ":{";
    first_member_ = true;
  }
  return *this;
}

report &report::pair(std::string_view name, std::string_view value, bool is_number)
{
  if (json_) {
    member(name, value, is_number);
  } else {
    if (line_.size() != cell_start_) line_ += ' ';
    line_ += name;
    line_ += '=';
    line_ += value;
  }
  return *this;
}

report &report::end_pairs()
{
  if (json_) {
    line_ += '}';
    first_member_ = false;
  }
  return *this;
}

void report::end_row()
{
  if (json_) {
    line_ += '}';
  } else {
    line_.erase(line_.find_last_not_of(' ') + 1);
  }
  out_.line(line_);
  line_.clear();
  at_ = 0;
  first_row_ = false;
}

void report::finish(const std::optional<flag> &tail)
{
  if (!json_) return;
  line_ = "]";
  if (tail) {
    first_member_ = false;
    member(tail->name, tail->value ? "true" : "false", true);
  }
  out_.line(line_ += '}');
}

}  // namespace tarvex::shell
