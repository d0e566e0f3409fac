// SPDX-License-Identifier: Apache-2.0
#include "text_wrap.h"

#include <algorithm>

namespace tarvex::shell {

std::string wrapped(std::string_view text, std::size_t indent, std::size_t width)
{
  constexpr std::string_view blanks = " \n";
  std::string result(text.substr(0, std::min(text.find_first_not_of(' '), text.size())));
  std::size_t used = result.size();
  bool first = true;
  text.remove_prefix(result.size());
  while (!text.empty()) {
    // Blanks between words stay as they are within a line: they may make columns.
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    const std::size_t between = text.substr(0, begin).find('\n') == std::string_view::npos ? begin : 1;
    text.remove_prefix(begin);
    if (text.empty()) break;
    const std::string_view word = text.substr(0, text.find_first_of(blanks));
    text.remove_prefix(word.size());
    if (!first && used + between + word.size() > width) {
      result.append(1, '\n').append(indent, ' ');
      used = indent;
    } else {
      result.append(between, ' ');
      used += between;
    }
    result += word;
    used += word.size();
    first = false;
  }
  return result;
}

}  // namespace tarvex::shell
