// From the signal to the shell.
//
// SPDX-License-Identifier: Apache-2.0
#include "interrupt_handling.h"

#include <cerrno>

namespace tarvex::shell {

namespace {

interpreter *interrupted_shell = nullptr;

void on_interrupt(int)
{
  const int kept = errno;
  if (interrupted_shell != nullptr) interrupted_shell->interrupt();
  errno = kept;
}

}  // namespace

interrupt_handling::interrupt_handling(interpreter &shell, interrupts which)
{
  interrupted_shell = &shell;
  struct sigaction action {};
  action.sa_handler = &on_interrupt;
  if (which == interrupts::first) action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &action, &before_);
}

interrupt_handling::~interrupt_handling()
{
  sigaction(SIGINT, &before_, nullptr);
  interrupted_shell = nullptr;
}

}  // namespace tarvex::shell
