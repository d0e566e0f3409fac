// Scripts: lines of commands.
//
// SPDX-License-Identifier: Apache-2.0
#include "interpreter.h"

namespace tarvex::shell {

exit_code interpreter::run_script(std::string_view text, std::string_view name, output &out)
{
  std::size_t number = 0;
  while (!text.empty() && !ended) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++number;
    const exit_code code = run(line, out);
    if (code != exit_code::ok) {
      out.error(std::string(name) + ':' + std::to_string(number) + ": stopped at: " + std::string(line));
      return code;
    }
  }
  return exit_code::ok;
}

}  // namespace tarvex::shell
