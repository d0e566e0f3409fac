// The command that loads a routing table: which route goes into which tables is planned as the example does.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <memory>

#include "commands.h"
#include "counted.h"
#include "plain_file.h"
#include "route_changes.h"
#include "route_file.h"
#include "session.h"

namespace tarvex::shell {

namespace {

namespace routes = route_load;

routes::route_list read_routes(const invocation &call, const std::string &file)
{
  const plain_file readable(file);  // the reader of routes would wait for the writer of a pipe
  try {
    return routes::read_route_file(file, [&](std::uint64_t done, std::uint64_t total) {
      call.shell.check_interrupt();
      call.out.progress("reading", done, total);
    });
  } catch (const routes::file_error &error) {
    throw file_error(error.what());
  }
}

struct route_words {
  bool replace = false;
  bool strict = false;
};

route_words parse_route_words(const invocation &call)
{
  route_words words;
  for (std::size_t at = 1; at < call.words.size(); ++at) {
    if (call.words[at] == "--replace") {
      words.replace = true;
    } else if (call.words[at] == "--strict") {
      words.strict = true;
    } else {
      throw argument_error("'" + call.words[at] + "' is one word too many");
    }
  }
  return words;
}

std::string bad_lines_text(std::uint64_t count) { return counted(count, "line is no route", "lines are no routes"); }

void write_changes(const invocation &call, const std::string &file, const std::vector<routes::route> &list,
                   const std::vector<route_change> &changes)
{
  std::array<std::unique_ptr<fib_table_access>, routes::fib_table_count> tables;
  std::uint64_t made = 0;
  try {
    for (const auto &[entry, modifies] : changes) {
      call.shell.check_interrupt();
      auto &table = tables[static_cast<std::size_t>(entry.table)];
      if (table == nullptr) table = std::make_unique<fib_table_access>(entry.table, call.where());
      if (modifies) {
        table->modify(entry);
      } else {
        table->add(entry);
      }
      if (++made % 4096 == 0) call.out.progress("loading", made, changes.size());
    }
  } catch (const shell_error &error) {
    const std::uint32_t line = line_of(list, changes[made].entry);
    throw shell_error(error.code(), file + (line == 0 ? "" : ':' + std::to_string(line)) + ": " + error.what() + "; " +
                                        changes_text(made, changes.size()));
  }
}

}  // namespace

exit_code load_routes(const invocation &call)
{
  const std::string file = call.path(call.word(0, "FILE"));
  const route_words words = parse_route_words(call);
  const routes::route_list list = read_routes(call, file);
  const std::uint64_t bad_lines = list.bad_lines.count();
  for (const routes::bad_line &bad : list.bad_lines.kept()) {
    call.out.note(file + ':' + std::to_string(bad.line) + ": " + bad.reason);
  }
  if (words.strict && bad_lines != 0) {
    throw shell_error(exit_code::bad_input, file + ": " + bad_lines_text(bad_lines) + ", and nothing was written");
  }
  if (list.routes.empty()) throw file_error(file + ": holds no route");
  const change_queue::turn turn = call.take_turn("load-routes " + call.words[0]);
  const route_changes found = find_route_changes(call, list.routes);
  if (!found.replaced.empty() && !words.replace) {
    const routes::route &first = found.replaced.front();
    throw usage_error(file + ':' + std::to_string(first.line) + ": the switch has another next hop for " +
                      to_string(first.destination) + "; " +
                      counted(found.replaced.size(), "route differs", "routes differ") +
                      ", and nothing was written; --replace writes what the file has");
  }
  if (!call.chosen.dry_run) write_changes(call, file, list.routes, found.changes);
  const std::uint64_t loaded = found.added + found.replaced.size() + found.unchanged;
  call.result(counted(loaded, "route") + " in " + counted(found.changes.size(), "changed entry", "changed entries") +
                  ": " + std::to_string(found.added) + " added, " + std::to_string(found.replaced.size()) +
                  " replaced, " + std::to_string(found.unchanged) + " unchanged" +
                  (call.chosen.dry_run ? "; checked only" : ""),
              {{"done", !call.chosen.dry_run},
               {"routes", loaded},
               {"added", found.added},
               {"replaced", found.replaced.size()},
               {"unchanged", found.unchanged},
               {"changes", found.changes.size()},
               {"routes_not_loaded", found.not_loaded},
               {"bad_lines", bad_lines}});
  if (found.not_loaded != 0) call.out.note(counted(found.not_loaded, "route") + " found no partition index");
  if (bad_lines != 0) call.out.note(bad_lines_text(bad_lines));
  return found.not_loaded != 0 || bad_lines != 0 ? exit_code::incomplete : exit_code::ok;
}

}  // namespace tarvex::shell
