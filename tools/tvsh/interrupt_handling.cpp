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

void on_stop(int signal)
{
  const int kept = errno;
  const exit_code why = signal == SIGTERM ? exit_code::terminated : exit_code::interrupted;
  if (interrupted_shell != nullptr) interrupted_shell->stop(why);
  errno = kept;
}

}  // namespace

interrupt_handling::interrupt_handling(interpreter &shell, interrupts which)
{
  interrupted_shell = &shell;
  struct sigaction action {};
  sigaction(SIGINT, nullptr, &interrupt_before_);
  sigaction(SIGTERM, nullptr, &terminate_before_);
  if (which == interrupts::command) {
    action.sa_handler = &on_interrupt;  // a read that waits for a key ends
    sigaction(SIGINT, &action, nullptr);
    return;
  }
  action.sa_handler = &on_stop;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  sigaction(SIGTERM, &action, nullptr);
  // What was started with SIGINT ignored, as by nohup or in the background of a script, is not to be interrupted.
  if (interrupt_before_.sa_handler != SIG_IGN) sigaction(SIGINT, &action, nullptr);
}

interrupt_handling::~interrupt_handling()
{
  sigaction(SIGINT, &interrupt_before_, nullptr);
  sigaction(SIGTERM, &terminate_before_, nullptr);
  interrupted_shell = nullptr;
}

}  // namespace tarvex::shell
