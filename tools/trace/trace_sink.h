// Where the text of a trace goes. Used with the lock of the trace held, which no driver call is made under.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "tarvex_trace/tarvex_trace.h"

namespace tarvex::trace {

class trace_sink {
 public:
  trace_sink() = default;
  trace_sink(const trace_sink &) = delete;
  trace_sink &operator=(const trace_sink &) = delete;
  virtual ~trace_sink() = default;

  /// Text of lines, with their ends; a line may come in parts.
  virtual void write(std::string_view text) = 0;
  /// An errno, or 0.
  virtual int flush() { return 0; }
  /// Of a child process: what waits is the parent's to write.
  virtual void forget() {}
};

/// Lines go to the file in large pieces; a line that comes alone goes at once.
class file_sink : public trace_sink {
 public:
  file_sink(int descriptor, bool at_once) : descriptor_(descriptor), at_once_(at_once) { waiting_.reserve(room); }
  ~file_sink() override;

  void write(std::string_view text) override;
  int flush() override;
  void forget() override { waiting_.clear(); }

 private:
  static constexpr std::size_t room = 64 * 1024;
  static constexpr std::chrono::milliseconds longest_wait{100};

  int descriptor_;
  bool at_once_;
  int error_ = 0;
  std::string waiting_;
  std::chrono::steady_clock::time_point written_{};
};

class function_sink : public trace_sink {
 public:
  function_sink(tarvex_trace_line_fn line, void *cookie) : line_(line), cookie_(cookie) {}

  void write(std::string_view text) override;

 private:
  tarvex_trace_line_fn line_;
  void *cookie_;
  std::string begun_;
};

}  // namespace tarvex::trace
