// A session's look at the trace of the process. The latest lines are kept for each session that looks.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex::shell {

/// Whose calls are shown. A session's are those of the thread that runs its commands.
enum class trace_scope : std::uint8_t { this_thread, program };

/// The trace runs while there is any.
class trace_view {
 public:
  /// Throws usage_error where a trace runs that is no view's, or in the other form.
  trace_view(bool json, trace_scope scope);
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
  friend void keep_line(const char *line, std::size_t length, void *);
  void keep(std::string_view line);

  const int thread_;  // whose calls are shown; 0 for all
  std::deque<std::string> lines_;
  std::uint64_t missed_ = 0;
};

}  // namespace tarvex::shell
