// The trace of the process: which calls are under way, and how they are put into lines.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string_view>

#include "trace_sink.h"

namespace tarvex::trace {

/// When a call began, in which thread, and how deep in other calls of that thread.
struct call_entry {
  std::chrono::system_clock::time_point time;
  int thread;
  unsigned depth;
};

class call_trace {
 public:
  /// False while one runs.
  bool start(std::unique_ptr<trace_sink> sink, bool json);
  /// An errno, or 0.
  int stop();
  /// The file that the trace goes to; empty where there is none.
  std::string file() const;

  /// Number of the trace that runs, 0 for none. May have ended by the time that it is used: lines are taken of the
  /// trace that they began in alone.
  std::uint64_t running() const { return running_.load(std::memory_order_acquire); }
  bool json() const { return json_.load(std::memory_order_relaxed); }
  std::uint64_t calls() const { return calls_.load(std::memory_order_relaxed); }

  /// As text a call is told when it begins and when it ends; the number that entered gives is told to left.
  std::uint64_t entered(std::uint64_t trace, const call_entry &entry, std::string_view inputs);
  void left(std::uint64_t trace, std::uint64_t call, const call_entry &entry, std::string_view name,
            std::string_view outputs);
  /// As JSON it is told once, in a whole line.
  void line(std::uint64_t trace, std::string_view text);

  // Around a fork, in whose child nobody else could let go of the lock.
  void before_fork() { mutex_.lock(); }
  void after_fork() { mutex_.unlock(); }

 private:
  void leave_open_line();

  mutable std::mutex mutex_;
  std::unique_ptr<trace_sink> sink_;
  std::atomic<std::uint64_t> running_ = 0;
  std::atomic<bool> json_ = false;
  std::atomic<std::uint64_t> calls_ = 0;
  std::uint64_t last_trace_ = 0;
  std::uint64_t last_call_ = 0;
  std::uint64_t open_call_ = 0;  // whose line has no end yet
};

/// Lives as long as the process: calls are made while it ends.
call_trace &the_trace();

/// "12:00:01.123456 [4711] "
void append_prefix(std::string &to, const call_entry &entry);
/// "2026-01-31T12:00:01.123456Z"
void append_time(std::string &to, std::chrono::system_clock::time_point time);

}  // namespace tarvex::trace
