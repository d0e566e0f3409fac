// Commands on the whole state: save, load, diff, apply, and let, which names what a script of theirs refers to.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <memory>

#include "commands.h"
#include "counted.h"
#include "entry_words.h"
#include "handle_walk.h"
#include "live_state.h"
#include "report.h"
#include "session.h"
#include "state_difference.h"
#include "state_file.h"
#include "state_loader.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

constexpr std::string_view live_name = "live";

/// Words behind the files: flags, and cells=N.
struct state_words {
  live_reading reading;
  bool flag = false;
};

state_words parse_state_words(const invocation &call, std::size_t from, std::string_view flag)
{
  static constexpr std::array<std::string_view, 1> allowed = {"cells"};
  state_words words;
  std::vector<std::string> rest;
  for (std::size_t at = from; at < call.words.size(); ++at) {
    if (call.words[at] == flag && !flag.empty()) {
      words.flag = true;
    } else if (assignment_of(call.words[at])) {
      rest.push_back(call.words[at]);
    } else {
      throw argument_error("'" + call.words[at] + "' is one word too many");
    }
  }
  const own_words own = parse_own_words(rest, allowed);
  if (const auto cells = own.number("cells", 32)) words.reading.cells = static_cast<std::uint32_t>(*cells);
  return words;
}

reading_progress progress_of(const invocation &call, std::string_view label)
{
  return [&call, label](std::uint64_t done, std::uint64_t total) {
    call.shell.check_interrupt();
    call.out.progress(label, done, total);
  };
}

/// The state of a file, or of the live switch.
std::unique_ptr<const state_model> read_state(const invocation &call, const std::string &name, const state_words &words)
{
  return read_until_unchanged([&] {
    file_place at;
    auto state = std::make_unique<state_model>(words.flag, name == live_name ? nullptr : &at);
    if (name == live_name) {
      read_live_state(call, words.reading, *state);
    } else {
      read_state_file(call.path(name), *state, at, progress_of(call, "reading"));
    }
    return state;
  });
}

/// Takes what commands of a script show; errors pass.
class quiet_output : public output {
 public:
  explicit quiet_output(output &to) : to_(to) {}

  void heading(std::string_view) override {}
  void line(std::string_view) override {}
  void note(std::string_view) override {}
  void error(std::string_view text) override { to_.error(text); }
  void progress(std::string_view, std::uint64_t, std::uint64_t) override {}

 private:
  output &to_;
};

void show_operations(const invocation &call, const std::vector<operation> &operations)
{
  if (!call.chosen.json) {  // a script as it stands
    for (const operation &each : operations) call.out.line(each.command);
    return;
  }
  report rows(call.out, call.chosen, "operations", {{"command"}});
  for (const operation &each : operations) rows.cell(each.command).end_row();
  rows.finish();
}

void show_counts(const invocation &call, std::string_view text, const state_counts &counts)
{
  call.result(text, {{"done", true},
                     {"entries", counts.entries},
                     {"members", counts.members},
                     {"groups", counts.groups},
                     {"defaults", counts.defaults},
                     {"cells", counts.cells},
                     {"settings", counts.settings}});
}

std::vector<operation> operations_between(const invocation &call, const std::string &from, const std::string &to,
                                          const state_words &words)
{
  const auto there = read_state(call, from, words);
  const auto wanted = read_state(call, to, words);
  return difference(*there, *wanted, from == live_name);
}

}  // namespace

exit_code save_state(const invocation &call)
{
  const std::string file = call.path(call.word(0, "FILE"));
  const state_words words = parse_state_words(call, 1, "");
  if (call.only_checked("saving to " + file)) return exit_code::ok;
  const change_queue::turn turn = call.take_turn("save " + call.words[0]);
  const state_counts saved = read_until_unchanged([&] {
    replaced_file to(file);
    state_file_writer writer(to);
    read_live_state(call, words.reading, writer);
    writer.finish();
    to.keep();
    return writer.counts;
  });
  show_counts(call, saved.text() + " saved to " + file, saved);
  tell_what_was_remembered(call);
  return exit_code::ok;
}

exit_code load_state(const invocation &call)
{
  const std::string file = call.path(call.word(0, "FILE"));
  const state_words words = parse_state_words(call, 1, "replace");
  const change_queue::turn turn = call.take_turn("load " + call.words[0]);
  file_place at;
  state_counter counter;
  read_state_file(file, counter, at, progress_of(call, "checking"));
  if (!words.flag && holds_state(call)) {
    throw usage_error(
        "the switch holds entries, members or groups already: 'load FILE replace' takes them off first, "
        "and 'apply FILE' changes only what differs");
  }
  if (call.only_checked("loading " + counter.counts.text())) return exit_code::ok;
  try {
    if (words.flag) clear_state(call, words.reading.cells);
  } catch (const shell_error &error) {
    throw shell_error(error.code(), std::string(error.what()) + "; nothing of " + file + " was written");
  }
  state_loader loader(call);
  try {
    // The loader looks for an interrupt before each part; amid the bytes of one it would have no place to name.
    read_state_file(file, loader, at,
                    [&](std::uint64_t done, std::uint64_t total) { call.out.progress("loading", done, total); });
  } catch (const shell_error &error) {
    const std::string place = error.code() == exit_code::file ? "" : at.text();  // that of a bad file is told already
    throw shell_error(error.code(), place + error.what() + "; " +
                                        changes_text(loader.written.total(), counter.counts.total()) +
                                        (loader.partly() ? ", and this one in part" : "") + "; the switch holds " +
                                        loader.written.text() + " of the file");
  }
  show_counts(call, "loaded " + loader.written.text(), loader.written);
  return exit_code::ok;
}

exit_code compare_states(const invocation &call)
{
  const std::string &from = call.word(0, "A");
  const std::string &to = call.word(1, "B");
  const auto operations = operations_between(call, from, to, parse_state_words(call, 2, "counts"));
  show_operations(call, operations);
  return operations.empty() ? exit_code::ok : exit_code::differences;
}

exit_code apply_state(const invocation &call)
{
  const std::string &file = call.word(0, "FILE");
  const state_words words = parse_state_words(call, 1, "counts");
  if (call.chosen.dry_run) {
    show_operations(call, operations_between(call, std::string(live_name), file, words));
    return exit_code::ok;
  }
  const change_queue::turn turn = call.take_turn("apply " + file);
  const std::vector<operation> operations = operations_between(call, std::string(live_name), file, words);
  const auto stop = [&](std::uint64_t made, exit_code code) {
    const operation &first = operations[made];
    const std::string place = call.path(file) + (first.line == 0 ? "" : ':' + std::to_string(first.line));
    throw shell_error(code, place + ": stopped at: " + first.command + "; " + changes_text(made, operations.size()));
  };
  quiet_output quiet(call.out);
  std::uint64_t made = 0;
  for (const operation &each : operations) {
    if (call.shell.interrupted()) stop(made, exit_code::interrupted);
    if (const exit_code code = call.shell.run_plainly(each.command, quiet); code != exit_code::ok) stop(made, code);
    if (++made % 256 == 0) call.out.progress("applying", made, operations.size());
  }
  call.result(counted(made, "change"), {{"done", true}, {"changes", made}});
  return exit_code::ok;
}

exit_code name_handle(const invocation &call)
{
  call.expect_at_most(4);
  const std::string &name = call.word(0, "NAME");
  session::require_name(name);
  const std::string &kind = call.word(1, "member|group");
  if (kind != "member" && kind != "group") throw usage_error("'" + kind + "' is neither member nor group");
  const profile_info &profile = profile_named(call.word(2, "PROFILE"));
  const std::uint64_t position = parse_number(call.word(3, "POSITION"), "position, from 1 on", 32);
  handle_walk walk =
      kind == "member" ? handle_walk::members(profile, call.where()) : handle_walk::groups(profile, call.where());
  std::optional<std::uint32_t> handle;
  for (std::uint64_t at = 0; at < position; ++at) {
    call.shell.check_interrupt();
    handle = walk.next();
    if (!handle) break;
  }
  if (!handle) {
    throw usage_error(std::string(profile.name) + " has no " + kind + " at position " + std::to_string(position));
  }
  call.shell.names[name] = *handle;
  call.made(kind, *handle);
  return exit_code::ok;
}

}  // namespace tarvex::shell
