// A session's look at the trace of the process. The latest lines are kept for all sessions that look.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex::shell {

/// The trace runs while there is any.
class trace_view {
 public:
  /// Throws usage_error where a trace runs that is no view's, or in the other form.
  explicit trace_view(bool json);
  trace_view(const trace_view &) = delete;
  trace_view &operator=(const trace_view &) = delete;
  ~trace_view();

  struct piece {
    std::uint64_t missed = 0;  // lines that were dropped ahead of these
    std::vector<std::string> lines;
  };
  /// What came since the last time; waits so long for anything.
  piece take(std::chrono::milliseconds wait = {});

  /// Views of all sessions.
  static unsigned count();

 private:
  std::uint64_t next_;  // number of the line to take next
};

}  // namespace tarvex::shell
