// SPDX-License-Identifier: Apache-2.0
#include "script_lines.h"

#include "counted.h"

namespace tarvex::shell {

std::optional<script_line> script_lines::next()
{
  while (!rest_.empty()) {
    const std::size_t end = rest_.find('\n');
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    ++number_;
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t begin = line.find_first_not_of(" \t\v\f\r");
    if (begin != std::string_view::npos && line[begin] != '#') return script_line{number_, line};
  }
  return std::nullopt;
}

std::string stop_text(std::string_view name, const script_line &at, std::string_view why, std::uint64_t done,
                      script_lines rest)
{
  std::uint64_t left = 1;
  while (rest.next()) ++left;
  return std::string(name) + ':' + std::to_string(at.number) + ": " + std::string(why) + ": " + std::string(at.text) +
         "; " + std::to_string(done) + " of " + counted(done + left, "command") + " done, " + std::to_string(left) +
         " not";
}

}  // namespace tarvex::shell
