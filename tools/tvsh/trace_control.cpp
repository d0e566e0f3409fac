// Looks the control functions up.
//
// SPDX-License-Identifier: Apache-2.0
#include "trace_control.h"

#include <dlfcn.h>

#include "shell_error.h"

namespace tarvex::shell {

namespace {

template <typename Function>
bool look_up(Function &to, const char *name)
{
  to = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
  return to != nullptr;
}

}  // namespace

const trace_control *find_trace()
{
  static trace_control all{};
  static const bool found = look_up(all.to_file, "tarvex_trace_to_file") &&
                            look_up(all.to_function, "tarvex_trace_to_function") &&
                            look_up(all.flush, "tarvex_trace_flush") && look_up(all.stop, "tarvex_trace_stop") &&
                            look_up(all.runs, "tarvex_trace_runs") && look_up(all.calls, "tarvex_trace_calls");
  return found ? &all : nullptr;
}

const trace_control &require_trace()
{
  const trace_control *const found = find_trace();
  if (found == nullptr) {
    throw usage_error(
        "no tracing library stands ahead of the driver here: start the program with LD_PRELOAD=libtarvex_trace.so.0");
  }
  return *found;
}

}  // namespace tarvex::shell
