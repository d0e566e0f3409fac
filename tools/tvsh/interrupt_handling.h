// Ctrl-C, for as long as commands run.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <signal.h>

#include <cstdint>

#include "interpreter.h"

namespace tarvex::shell {

enum class interrupts : std::uint8_t {
  all,   // every Ctrl-C is the command's
  first  // a second one ends the program
};

/// Ctrl-C interrupts the command while this lives; a read that waits for a key ends. One at a time.
class interrupt_handling {
 public:
  interrupt_handling(interpreter &shell, interrupts which);
  interrupt_handling(const interrupt_handling &) = delete;
  interrupt_handling &operator=(const interrupt_handling &) = delete;
  ~interrupt_handling();

 private:
  struct sigaction before_ {};
};

}  // namespace tarvex::shell
