// Regular expressions in commands. They come from clients of a living program: whatever is written, a search takes time
// in proportion to its text, and neither deep stacks nor much memory.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "nearest.h"
#include "shell_error.h"

namespace re2 {
class RE2;
}

namespace tarvex::shell {

enum class letter_case : bool { counts, ignored };

class text_pattern {
 public:
  /// Found in every text.
  text_pattern() = default;
  /// Throws usage_error where the text is no regular expression.
  text_pattern(const std::string &text, letter_case letters);

  bool found_in(std::string_view text) const;

 private:
  std::shared_ptr<const re2::RE2> compiled_;
};

/// The rows whose name holds the pattern, in either case of letters. Throws usage_error where there is none; it names
/// the nearest, and `help` says how all are listed.
template <typename Rows>
auto matching(const Rows &rows, const std::string &pattern, std::string_view kind, const std::string &help)
{
  const text_pattern wanted(pattern, letter_case::ignored);
  std::vector<decltype(&*std::begin(rows))> found;
  std::vector<std::string_view> names;
  for (const auto &each : rows) {
    names.push_back(each.name);
    if (wanted.found_in(each.name)) found.push_back(&each);
  }
  if (!found.empty()) return found;
  const std::string none = no_such(std::string(kind) + " that matches", pattern, names);
  throw usage_error(none + (none.ends_with('?') ? " " : "; ") + help);
}

}  // namespace tarvex::shell
