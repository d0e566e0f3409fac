// Commands on the shell itself: help, exit.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "command.h"
#include "commands.h"
#include "fields.h"
#include "report.h"
#include "session.h"
#include "text_wrap.h"

namespace tarvex::shell {

namespace {

void put_lines(output &out, std::string_view text)
{
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    out.line(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
}

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
      put_lines(out, wrapped(line += each.summary, width + 2));
    }
  }
  put_lines(out,
            wrapped("'help COMMAND' shows more. Every command takes -j (JSON), --raw (hexadecimal), --hw (read the "
                    "hardware), --dry-run (check only) and --force (write what is refused as not meant), and ends in "
                    "'| include RE', '| exclude RE' or '| count'."));
}

void list_as_json(const invocation &call)
{
  report rows(call.out, call.chosen, "commands", {{"command"}, {"arguments"}, {"summary"}});
  for (const command &each : commands()) rows.cell(each.name).cell(each.arguments).cell(each.summary).end_row();
  rows.finish();
}

/// Fields and actions of the table, or actions of the profile, that the second word is.
exit_code show_what_it_names(const invocation &call)
{
  const auto rest = call.words.subspan(1);
  const auto profile = std::ranges::find(calls::profiles, rest[0], &profile_info::name);
  if (profile == calls::profiles.end()) return show_schema({call.shell, call.out, call.chosen, rest});
  report rows(call.out, call.chosen, "actions",
              {{"action", longest_name(action_names(profile->actions))}, {"parameters"}}, {{"profile", profile->name}});
  for (const use_info &use : profile->actions) {
    rows.cell(use.action->name).begin_pairs();
    for (const shown_field &field : parameter_fields(*use.action))
      rows.pair(field.name, std::to_string(field.bits), true);
    rows.end_pairs().end_row();
  }
  rows.finish();
  return exit_code::ok;
}

}  // namespace

exit_code help(const invocation &call)
{
  call.expect_at_most(2);
  if (!call.has(0)) {
    if (call.chosen.json) {
      list_as_json(call);
    } else {
      list_commands(call.out);
    }
    return exit_code::ok;
  }
  const command &what = command_named(call.words[0]);
  if (call.chosen.json && call.has(1)) return show_what_it_names(call);
  if (call.chosen.json) {
    call.result({}, {{"command", what.name},
                     {"usage", usage_of(what)},
                     {"summary", what.summary},
                     {"details", what.details},
                     {"examples", what.examples}});
    return exit_code::ok;
  }
  put_lines(call.out, usage_of(what));
  if (call.has(1)) return show_what_it_names(call);
  put_lines(call.out, wrapped(what.summary));
  put_lines(call.out, wrapped(what.details));
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
