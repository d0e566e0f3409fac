// Scripts: lines of commands.
//
// SPDX-License-Identifier: Apache-2.0
#include "interpreter.h"

#include "json_output.h"
#include "script_lines.h"

namespace tarvex::shell {

exit_code interpreter::run_script(std::string_view text, std::string_view name, output &out)
{
  script_lines lines(text);
  std::uint64_t done = 0;
  while (const auto line = ended ? std::nullopt : lines.next()) {
    const bool signalled = stop_code() != exit_code::ok;
    const exit_code code = signalled ? stop_code() : run(line->text, out);
    if (code != exit_code::ok) {
      const std::string message = stop_text(name, *line, signalled ? "interrupted before" : "stopped at", done, lines);
      if (defaults.json) {
        out.line(error_document(ended_by(code), message, script_place{name, line->number}));
      } else {
        out.error(message);
      }
      return ended_by(code);
    }
    ++done;
  }
  return exit_code::ok;
}

}  // namespace tarvex::shell
