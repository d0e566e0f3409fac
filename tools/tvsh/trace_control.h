// The tracing library, where it stands between library and driver of this process.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tarvex_trace/tarvex_trace.h"

namespace tarvex::shell {

/// Found by name in the process: the engine itself is not linked with it.
struct trace_control {
  decltype(&tarvex_trace_to_file) to_file;
  decltype(&tarvex_trace_to_function) to_function;
  decltype(&tarvex_trace_stop) stop;
  decltype(&tarvex_trace_file) file;
  decltype(&tarvex_trace_runs) runs;
  decltype(&tarvex_trace_calls) calls;
};

/// Null where the library is not there.
const trace_control *find_trace();
/// Throws usage_error, with what to do, where the library is not there.
const trace_control &require_trace();

}  // namespace tarvex::shell
