// The command engine: takes command lines, writes to an output, and keeps what lives between commands. It touches no
// terminal, file or environment of its own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <vector>

#include "command_line.h"
#include "digest_log.h"
#include "function_call.h"
#include "output.h"
#include "own_writes.h"
#include "shell_error.h"

namespace tarvex::shell {

class session {
 public:
  explicit session(const target &on = {}) : where(on) {}

  /// Runs one command. What goes wrong is told as an error of the output.
  exit_code run(std::string_view line, output &out);

  /// Runs one command after the other, each of a line, to the first that does not end well; its error names the line.
  exit_code run_script(std::string_view text, std::string_view name, output &out);

  /// Words that can stand where the line ends; the last word of the line may have been begun.
  static std::vector<std::string> complete(std::string_view line);

  /// Ends the command that runs, at its next step. May be called from a signal handler or another thread.
  void interrupt() noexcept { interrupted_ = true; }
  /// Throws shell_error after an interrupt; long work asks now and then.
  void check_interrupt() const
  {
    if (interrupted_.load(std::memory_order_relaxed)) throw shell_error(exit_code::interrupted, "interrupted");
  }
  /// Set by the commands that end a session.
  bool ended = false;

  target where;
  options defaults;
  own_writes written;  // what the library cannot read back
  digest_log digests;

 private:
  std::atomic<bool> interrupted_ = false;
};

}  // namespace tarvex::shell
