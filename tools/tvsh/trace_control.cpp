// Looks the control functions up.
//
// SPDX-License-Identifier: Apache-2.0
#include "trace_control.h"

#include "process_symbol.h"
#include "shell_error.h"

namespace tarvex::shell {

const trace_control *find_trace()
{
  static trace_control all{};
  static const bool found =
      find_in_process(all.to_file, "tarvex_trace_to_file") &&
      find_in_process(all.to_function, "tarvex_trace_to_function") && find_in_process(all.stop, "tarvex_trace_stop") &&
      find_in_process(all.file, "tarvex_trace_file") && find_in_process(all.runs, "tarvex_trace_runs") &&
      find_in_process(all.calls, "tarvex_trace_calls");
  return found ? &all : nullptr;
}

const trace_control &require_trace()
{
  const trace_control *const found = find_trace();
  if (found == nullptr) {
    throw usage_error(
        "no tracing library stands ahead of the driver here: link the program with libtarvex_trace ahead of library "
        "and "
        "driver, or start it with LD_PRELOAD=libtarvex_trace.so.0");
  }
  return *found;
}

}  // namespace tarvex::shell
