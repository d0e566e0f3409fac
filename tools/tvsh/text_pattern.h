// Regular expressions in commands. They come from clients of a living program: whatever is written, a search takes time
// in proportion to its text, and neither deep stacks nor much memory.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>

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

}  // namespace tarvex::shell
