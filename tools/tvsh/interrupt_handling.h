// Signals that end a command or a script, for as long as commands run.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <signal.h>

#include <cstdint>

#include "interpreter.h"

namespace tarvex::shell {

enum class interrupts : std::uint8_t {
  command,  // at a prompt: Ctrl-C interrupts the command that runs, each time
  script    // SIGTERM ends the script at its next command, and so does SIGINT unless it was ignored; a second one ends
            // the program at once
};

/// Handles the signals while it lives. One at a time.
class interrupt_handling {
 public:
  interrupt_handling(interpreter &shell, interrupts which);
  interrupt_handling(const interrupt_handling &) = delete;
  interrupt_handling &operator=(const interrupt_handling &) = delete;
  ~interrupt_handling();

 private:
  struct sigaction interrupt_before_ {};
  struct sigaction terminate_before_ {};
};

}  // namespace tarvex::shell
