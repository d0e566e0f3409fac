// Commands on the shell itself: help, exit.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "command.h"
#include "commands.h"
#include "report.h"
#include "session.h"

namespace tarvex::shell {

namespace {

void list_commands(output &out)
{
  static constexpr std::array<std::string_view, 5> titles = {"Reading", "Writing", "Operating",
                                                             "Simulating (stand-in switch only)", "The shell"};
  constexpr std::size_t width = 15;
  for (std::size_t group = 0; group < titles.size(); ++group) {
    const auto in_group = [&](const command &each) { return each.group == static_cast<command_group>(group); };
    if (std::ranges::none_of(commands(), in_group)) continue;
    out.heading(titles[group]);
    for (const command &each : commands()) {
      if (!in_group(each)) continue;
      std::string line = "  " + std::string(each.name);
      line.resize(std::max(line.size() + 1, width + 2), ' ');
      out.line(line += each.summary);
    }
  }
  out.line("'help COMMAND' tells more. Every command takes -j (JSON), --raw (hexadecimal), --hw (read");
  out.line("the hardware) and --dry-run (check only), and ends in '| include RE', '| exclude RE' or '| count'.");
}

void list_as_json(const invocation &call)
{
  report rows(call.out, call.chosen, "commands", {{"command"}, {"arguments"}, {"summary"}});
  for (const command &each : commands()) rows.cell(each.name).cell(each.arguments).cell(each.summary).end_row();
  rows.finish();
}

void put_lines(output &out, std::string_view text)
{
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    out.line(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
}

}  // namespace

exit_code help(const invocation &call)
{
  call.expect_at_most(1);
  if (!call.has(0)) {
    if (call.chosen.json) {
      list_as_json(call);
    } else {
      list_commands(call.out);
    }
    return exit_code::ok;
  }
  const command &what = command_named(call.words[0]);
  if (call.chosen.json) {
    call.result({}, {{"command", what.name},
                     {"usage", usage_of(what)},
                     {"summary", what.summary},
                     {"details", what.details},
                     {"examples", what.examples}});
    return exit_code::ok;
  }
  put_lines(call.out, usage_of(what));
  call.out.line(what.summary);
  put_lines(call.out, what.details);
  call.out.line("examples:");
  for (const std::string_view example : what.examples) call.out.line("  " + std::string(example));
  return exit_code::ok;
}

exit_code leave(const invocation &call)
{
  call.expect_at_most(0);
  call.shell.ended = true;
  return exit_code::ok;
}

}  // namespace tarvex::shell
