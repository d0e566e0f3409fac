// The command that shows or writes down what the library asks of the driver, and makes the calls of a trace again.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "replayer.h"
#include "session.h"
#include "trace_control.h"
#include "trace_view.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

constexpr std::uint64_t most_differences_shown = 10;

std::string in_words(int error) { return std::strerror(error); }

void show_state(const invocation &call)
{
  const trace_control &trace = require_trace();
  call.out.line(std::string(trace.runs() != 0 ? "on" : "off") + ", " + std::to_string(trace.calls()) +
                " calls traced so far");
}

void turn_on(const invocation &call)
{
  call.expect_at_most(1);
  if (call.shell.traced) throw usage_error("this session shows the trace already: 'trace off' ends that");
  if (!call.only_checked("showing the trace")) call.shell.traced = std::make_unique<trace_view>(call.chosen.json);
}

void turn_off(const invocation &call)
{
  call.expect_at_most(1);
  const trace_control &trace = require_trace();
  if (call.only_checked("ending the trace")) return;
  if (call.shell.traced) {
    call.shell.show_trace(call.out);
    call.shell.traced.reset();
  } else if (trace_view::count() != 0) {
    throw usage_error("another session shows the trace: it ends there");
  } else if (const int error = trace.stop(); error != 0) {
    throw file_error("the trace is not whole: " + in_words(error));
  }
}

/// Until an interrupt.
void follow(const invocation &call)
{
  call.expect_at_most(1);
  trace_view view(call.chosen.json);
  for (;;) {
    const trace_view::piece piece = view.take(std::chrono::milliseconds(100));
    if (piece.missed != 0) call.out.note(std::to_string(piece.missed) + " calls came too fast to be shown");
    for (const std::string &line : piece.lines) call.out.line(line);
    call.out.flush();
    call.shell.check_interrupt();
  }
}

void write_to_file(const invocation &call)
{
  call.expect_at_most(1);
  const std::string file = call.path(call.words[0]);
  const trace_control &trace = require_trace();
  if (call.only_checked("tracing to " + file)) return;
  const int error = trace.to_file(file.c_str(), call.chosen.json ? std::uint32_t{TARVEX_TRACE_AS_JSON} : 0);
  if (error == EBUSY) throw usage_error("a trace runs already: 'trace off' ends it");
  if (error != 0) throw file_error(file + ": " + in_words(error));
}

/// What the library cannot read back is remembered of a replay as of the shell's own writes.
void remember(session &shell, std::string_view call, const nlohmann::json &arguments, std::uint32_t handle)
{
  const auto number = [&](const char *name) { return arguments.at(name).get<std::uint32_t>(); };
  if (call == "pipe_mgr_pvs_entry_add") {
    shell.written()->value_set[handle] = {number("parser_value"), number("parser_value_mask"), number("tgt_scope"),
                                          static_cast<std::uint16_t>(number("tgt_index")),
                                          static_cast<std::uint8_t>(number("tgt_sub_index"))};
  } else if (call == "pipe_mgr_pvs_entry_modify") {
    const auto written = shell.written();
    written->value_set[handle].value = number("parser_value");
    written->value_set[handle].mask = number("parser_value_mask");
  } else if (call == "pipe_mgr_pvs_entry_delete") {
    shell.written()->value_set.erase(handle);
  } else if (call == "pipe_mgr_sel_fallback_mbr_set") {
    shell.written()->fallback_members[number("sel_hdl")] = handle;
  } else if (call == "pipe_mgr_sel_fallback_mbr_reset") {
    shell.written()->fallback_members.erase(number("sel_hdl"));
  } else if (call == "pipe_mgr_flow_lrn_set_timeout") {
    shell.written()->learning_timeout = number("timeout");
  } else if (call == "bf_snapshot_create") {
    shell.written()->snapshots[handle].egress = number("direction") != 0;
  } else if (call == "bf_snapshot_delete") {
    shell.written()->snapshots.erase(handle);
  }
}

void tell(const invocation &call, const trace::replay_counts &counts)
{
  call.out.line(std::to_string(counts.made) + " writes " + (call.chosen.dry_run ? "checked" : "made") + ", " +
                std::to_string(counts.different) + " of them refused here");
  if (counts.refused != 0) call.out.note(std::to_string(counts.refused) + " had been refused then: left out");
  if (counts.left_out != 0) {
    call.out.note(std::to_string(counts.left_out) +
                  " calls of callbacks, synchronisations and devices hang on the traced program: left out");
  }
}

exit_code replay(const invocation &call)
{
  call.expect_at_most(2);
  const std::string file = call.path(call.word(1, "FILE"));
  std::ifstream from(file);
  if (!from) throw file_error(file + ": cannot be read");
  std::error_code failed;
  const std::uintmax_t size = std::filesystem::file_size(file, failed);
  trace::replayer again(call.chosen.dry_run,
                        [&](std::string_view name, const nlohmann::json &arguments, std::uint32_t handle) {
                          remember(call.shell, name, arguments, handle);
                        });
  std::uint64_t done = 0;
  std::uint64_t number = 0;
  for (std::string line; std::getline(from, line);) {
    done += line.size() + 1;
    if (++number % 1024 == 0) call.out.progress("replaying", done, failed ? done : size);
    call.shell.check_interrupt();
    const std::string place = file + ':' + std::to_string(number) + ": ";
    try {
      const std::string difference = again.replay(line);
      if (!difference.empty() && again.counts().different <= most_differences_shown) call.out.error(place + difference);
    } catch (const trace::trace_error &error) {
      throw usage_error(place + error.what());
    }
  }
  tell(call, again.counts());
  return again.counts().different == 0 ? exit_code::ok : exit_code::differences;
}

constexpr plain_verb verbs[] = {{"on", turn_on}, {"off", turn_off}, {"follow", follow}};

}  // namespace

exit_code trace_calls(const invocation &call)
{
  if (!call.has(0)) {
    show_state(call);
    return exit_code::ok;
  }
  const std::string &word = call.words[0];
  if (word == "replay") return replay(call);
  for (const plain_verb &each : verbs) {
    if (each.name == word) return run_verb(verbs, call, word);
  }
  if (word.find_first_of("./") == std::string::npos) {  // more likely a mistake
    throw usage_error(no_such("verb", word, std::vector<std::string_view>{"on", "off", "follow", "replay"}) +
                      " A file of this name is written ./" + word);
  }
  write_to_file(call);
  return exit_code::ok;
}

}  // namespace tarvex::shell
