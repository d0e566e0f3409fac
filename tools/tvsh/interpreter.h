// What runs command lines: a session of this process, or one at the other end of a socket.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <vector>

#include "command_line.h"
#include "output.h"
#include "shell_error.h"

namespace tarvex::shell {

/// Where the commands of a script came to an end.
struct script_end {
  exit_code code = exit_code::ok;
  std::size_t line = 0;  // that failed or, where a signal came first, was not begun; 0 where all went well
  bool begun = true;
};

class interpreter {
 public:
  interpreter() = default;
  interpreter(const interpreter &) = delete;
  interpreter &operator=(const interpreter &) = delete;
  virtual ~interpreter() = default;

  /// Runs one command. What goes wrong is reported as an error of the output or, with -j, in the command's document.
  virtual exit_code run(std::string_view line, output &out) = 0;

  /// Runs the commands of a text, one a line, up to the first that fails; another error names its line.
  exit_code run_script(std::string_view text, std::string_view name, output &out);
  /// The same, without that error.
  virtual script_end run_lines(std::string_view text, output &out);

  /// Words that can stand where the line ends; the last word of the line may have been begun.
  virtual std::vector<std::string> completions(std::string_view line) = 0;

  /// Ends the command that runs, at its next step. May be called from a signal handler or another thread.
  virtual void interrupt() noexcept = 0;
  /// A signal wants the program to end: interrupts the command that runs, and no other command of a script follows.
  /// `why` is the exit code. May be called from a signal handler.
  void stop(exit_code why) noexcept
  {
    stop_code_ = why;
    interrupt();
  }
  /// Not ok after stop().
  exit_code stop_code() const noexcept { return stop_code_; }
  /// Forgets a stop(), for one who runs scripts of others.
  void clear_stop() noexcept
  {
    stop_code_ = exit_code::ok;
    clear_interrupt();
  }
  /// The exit code of a program whose last command ended so: which signal interrupted it, the command cannot know.
  exit_code ended_by(exit_code code) const noexcept
  {
    return code == exit_code::interrupted && stop_code() != exit_code::ok ? stop_code() : code;
  }

  /// Forgets an interrupt that came while no command ran. Who runs a command calls it ahead.
  virtual void clear_interrupt() noexcept = 0;

  /// Options that commands have without being given them.
  options defaults;

  /// Set by the command that ends a session.
  bool ended = false;

 private:
  std::atomic<exit_code> stop_code_ = exit_code::ok;
};

}  // namespace tarvex::shell
