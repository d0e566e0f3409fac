// Scripts: lines of commands.
//
// SPDX-License-Identifier: Apache-2.0
#include "interpreter.h"

#include "json_output.h"
#include "script_lines.h"

namespace tarvex::shell {

exit_code interpreter::run_script(std::string_view text, std::string_view name, output &out)
{
  const script_end end = run_lines(text, out);
  if (end.code == exit_code::ok) return end.code;
  script_lines lines(text);
  auto at = lines.next();
  std::uint64_t done = 0;
  for (; at && at->number < end.line; at = lines.next()) ++done;
  if (!at) return exit_code::ok;  // the signal came after the last command
  const std::string message = stop_text(name, *at, end.begun ? "stopped at" : "interrupted before", done, lines);
  if (defaults.json) {
    out.line(error_document(ended_by(end.code), message, script_place{name, at->number}));
  } else {
    out.error(message);
  }
  return ended_by(end.code);
}

script_end interpreter::run_lines(std::string_view text, output &out)
{
  script_lines lines(text);
  while (const auto line = ended ? std::nullopt : lines.next()) {
    if (const exit_code why = stop_code(); why != exit_code::ok) return {why, line->number, false};
    if (const exit_code code = run(line->text, out); code != exit_code::ok) return {code, line->number};
  }
  return {};
}

}  // namespace tarvex::shell
