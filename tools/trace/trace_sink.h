// Where the text of a trace goes. Used with the lock of the trace held, which no driver call is made under.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
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
  /// Nothing is written behind it. An errno, or 0.
  virtual int end() { return 0; }
  /// The name of the file that it is; empty for others.
  virtual std::string_view file() const { return {}; }
};

/// All that is written is handed to the kernel at once: where the process dies in a call, the file tells of the call.
class file_sink : public trace_sink {
 public:
  /// Opens the file and leaves what is in it. Nothing here waits for another process. Null, and an errno in `error`,
  /// where it cannot be: ENXIO for pipes, sockets and terminals, which a writer may have to wait for.
  static std::unique_ptr<file_sink> open(const char *path, int &error);
  ~file_sink() override { end(); }

  /// Ahead of the first writing: nobody else reads the file, and it is empty. An errno, or 0.
  int make_anew();
  void write(std::string_view text) override;
  int end() override;
  std::string_view file() const override { return path_; }

 private:
  file_sink(int descriptor, bool plain, const char *path) : descriptor_(descriptor), plain_(plain), path_(path) {}

  int descriptor_;
  bool plain_;
  std::string path_;
  int error_ = 0;
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
