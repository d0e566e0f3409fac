// What a line of a trace can be wrong in.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>

namespace tarvex::trace {

/// A line is no call of a trace, or one that cannot be made here; the text says why.
struct trace_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace tarvex::trace
