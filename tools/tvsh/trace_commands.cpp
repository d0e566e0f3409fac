// The command that shows or writes down what the library asks of the driver, and makes the calls of a trace again.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <climits>
#include <cstring>

#include "commands.h"
#include "counted.h"
#include "plain_file.h"
#include "replayer.h"
#include "session.h"
#include "trace_control.h"
#include "trace_memory.h"
#include "trace_view.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

constexpr std::uint64_t most_differences_shown = 10;

std::string in_words(int error)
{
  return error == ENXIO ? "is no plain file: a trace goes to no pipe, socket or terminal" : std::strerror(error);
}

void show_state(const invocation &call)
{
  const trace_control &trace = require_trace();
  const bool runs = trace.runs() != 0;
  call.result(std::string(runs ? "on" : "off") + ", " + std::to_string(trace.calls()) + " calls traced so far",
              {{"on", runs}, {"calls", std::to_string(trace.calls())}});
}

void turn_on(const invocation &call)
{
  call.expect_at_most(1);
  if (call.shell.traced) throw usage_error("this session shows the trace already: 'trace off' ends that");
  if (!call.only_checked("showing the trace"))
    call.shell.traced = std::make_unique<trace_view>(call.chosen.json, trace_scope::this_thread);
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
  } else {
    std::array<char, PATH_MAX> file;
    trace.file(file.data(), file.size());
    const int error = trace.stop();
    if (error != 0) throw file_error(std::string(file.data()) + ": " + in_words(error) + "; the trace is not whole");
  }
}

/// Until an interrupt.
void follow(const invocation &call)
{
  call.expect_at_most(1);
  trace_view view(call.chosen.json, trace_scope::program);
  for (;;) {
    const trace_view::piece piece = view.take(std::chrono::milliseconds(100));
    if (piece.missed != 0) call.out.note(counted(piece.missed, "call") + " came too fast to be shown");
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

void tell(const invocation &call, const trace::replay_counts &counts)
{
  call.result(counted(counts.made, "write") + " " + (call.chosen.dry_run ? "checked" : "made") + ", " +
                  std::to_string(counts.different) + " of them refused here",
              {{"done", !call.chosen.dry_run},
               {"writes", counts.made},
               {"refused_here", counts.different},
               {"refused_then", counts.refused},
               {"left_out", counts.left_out}});
  if (counts.refused != 0) call.out.note(std::to_string(counts.refused) + " had been refused then: left out");
  if (counts.left_out != 0) {
    call.out.note(std::to_string(counts.left_out) +
                  " calls of callbacks, synchronisations and devices hang on the traced program: left out");
  }
}

/// Lines of a plain file, one at a time.
class file_lines {
 public:
  file_lines(const invocation &call, const std::string &name) : call_(call), file_(name) {}

  /// False behind the last one. An interrupt ends it, in a line that has no end, too.
  bool next(std::string &line)
  {
    line.clear();
    for (;;) {
      const std::string_view rest(block_.data() + at_, size_ - at_);
      const std::size_t end = rest.find('\n');
      line += rest.substr(0, end);
      at_ += std::min(rest.size(), end == std::string_view::npos ? end : end + 1);
      if (end != std::string_view::npos) return true;
      call_.shell.check_interrupt();
      call_.out.progress("replaying", done_, file_.size());
      size_ = file_.read(block_.data(), block_.size());
      at_ = 0;
      done_ += size_;
      if (size_ == 0) return !line.empty();
    }
  }

 private:
  const invocation &call_;
  plain_file file_;
  std::array<char, 1 << 16> block_;
  std::size_t at_ = 0;
  std::size_t size_ = 0;
  std::uint64_t done_ = 0;
};

exit_code replay(const invocation &call)
{
  call.expect_at_most(2);
  const std::string file = call.path(call.word(1, "FILE"));
  file_lines lines(call, file);
  trace::replayer again(call.chosen.dry_run,
                        [&](std::string_view name, const nlohmann::json &arguments, std::uint32_t handle) {
                          remember_replayed(*call.shell.shared_memory(), call.where().device, name, arguments, handle);
                        });
  std::uint64_t number = 0;
  for (std::string line; lines.next(line);) {
    call.shell.check_interrupt();
    const std::string place = file + ':' + std::to_string(++number) + ": ";
    try {
      const std::string difference = again.replay(line);
      if (difference.empty() || again.counts().different > most_differences_shown) continue;
      if (call.chosen.json) {
        call.out.note(place + difference);  // beside the document that counts them
      } else {
        call.out.error(place + difference);
      }
    } catch (const trace::trace_error &error) {
      throw file_error(place + error.what());
    }
  }
  tell(call, again.counts());
  return again.counts().different == 0 ? exit_code::ok : exit_code::differences;
}

constexpr plain_verb trace_verbs[] = {{"on", turn_on}, {"off", turn_off}, {"follow", follow}};

}  // namespace

exit_code trace_calls(const invocation &call)
{
  if (!call.has(0)) {
    show_state(call);
    return exit_code::ok;
  }
  const std::string &word = call.words[0];
  if (word == "replay") return replay(call);
  for (const plain_verb &each : trace_verbs) {
    if (each.name == word) return run_verb(trace_verbs, call, word);
  }
  if (word.find_first_of("./") == std::string::npos) {  // more likely a mistake
    throw usage_error(no_such("verb", word, std::vector<std::string_view>{"on", "off", "follow", "replay"}) +
                      " A file of this name is written ./" + word);
  }
  write_to_file(call);
  return exit_code::ok;
}

}  // namespace tarvex::shell
