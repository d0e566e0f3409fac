// Lines that match, do not match, or are counted.
//
// SPDX-License-Identifier: Apache-2.0
#include "filters.h"

#include <array>

#include "nearest.h"
#include "shell_error.h"

namespace tarvex::shell {

filter make_filter(const std::vector<std::string> &words)
{
  static constexpr std::array<std::string_view, 3> names = {"include", "exclude", "count"};
  if (words.empty()) throw usage_error("behind '|' a filter is missing: include RE, exclude RE or count");
  const std::string &name = words[0];
  if (name == "count") {
    if (words.size() > 1) throw usage_error("the filter count takes no argument, but there is '" + words[1] + '\'');
    return {filter_kind::count, {}};
  }
  if (name != "include" && name != "exclude") throw usage_error(no_such("filter", name, names));
  if (words.size() != 2) {
    throw usage_error("the filter " + name + " takes one regular expression; put quotes around one with blanks");
  }
  return {name == "include" ? filter_kind::include : filter_kind::exclude, text_pattern(words[1], letter_case::counts)};
}

void filtered_output::heading(std::string_view text)
{
  if (filter_.kind != filter_kind::count) next_.heading(text);
}

void filtered_output::line(std::string_view text)
{
  if (filter_.kind == filter_kind::count) {
    ++lines_;
  } else if (filter_.pattern.found_in(text) == (filter_.kind == filter_kind::include)) {
    next_.line(text);
  }
}

void filtered_output::finish()
{
  if (filter_.kind == filter_kind::count) next_.line(std::to_string(lines_));
}

}  // namespace tarvex::shell
