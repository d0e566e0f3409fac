// Commands from a person at a terminal.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreter.h"
#include "stream_output.h"

namespace tarvex::shell {

/// Asks for commands until the session ends. Ctrl-C ends the command that runs, or drops the line that was begun. The
/// result is always ok: a person has seen what went wrong.
exit_code run_prompt(interpreter &shell, stream_output &out);

}  // namespace tarvex::shell
