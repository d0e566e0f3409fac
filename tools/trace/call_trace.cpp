// SPDX-License-Identifier: Apache-2.0
#include "call_trace.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <string>

namespace tarvex::trace {

namespace {

std::int64_t microseconds_of(std::chrono::system_clock::time_point time)
{
  return std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch()).count();
}

}  // namespace

bool call_trace::start(std::unique_ptr<trace_sink> sink, bool json)
{
  const std::lock_guard lock(mutex_);
  if (sink_ != nullptr) return false;
  sink_ = std::move(sink);
  open_call_ = 0;
  json_ = json;
  running_ = ++last_trace_;
  return true;
}

int call_trace::stop()
{
  const std::lock_guard lock(mutex_);
  running_ = 0;
  if (sink_ == nullptr) return 0;
  leave_open_line();
  const int error = sink_->end();
  sink_.reset();
  return error;
}

std::string call_trace::file() const
{
  const std::lock_guard lock(mutex_);
  return sink_ == nullptr ? std::string() : std::string(sink_->file());
}

void call_trace::leave_open_line()
{
  if (open_call_ != 0) sink_->write(" <unfinished ...>\n");
  open_call_ = 0;
}

std::uint64_t call_trace::entered(std::uint64_t trace, const call_entry &entry, std::string_view inputs)
{
  std::string text;
  append_prefix(text, entry);
  text += inputs;
  const std::lock_guard lock(mutex_);
  if (running() != trace) return 0;
  leave_open_line();
  sink_->write(text);
  return open_call_ = ++last_call_;
}

void call_trace::left(std::uint64_t trace, std::uint64_t call, const call_entry &entry, std::string_view name,
                      std::string_view outputs)
{
  const std::lock_guard lock(mutex_);
  if (running() != trace || call == 0) return;
  if (open_call_ != call) {
    leave_open_line();
    std::string resumed;
    append_prefix(resumed, {std::chrono::system_clock::now(), entry.thread, entry.depth});
    ((resumed += "<... ") += name) += " resumed>";
    sink_->write(resumed);
  }
  open_call_ = 0;
  sink_->write(outputs);
  calls_.fetch_add(1, std::memory_order_relaxed);
}

void call_trace::line(std::uint64_t trace, std::string_view text)
{
  const std::lock_guard lock(mutex_);
  if (running() != trace) return;
  sink_->write(text);
  calls_.fetch_add(1, std::memory_order_relaxed);
}

call_trace &the_trace()
{
  static call_trace *const trace = new call_trace;
  return *trace;
}

void append_prefix(std::string &to, const call_entry &entry)
{
  const std::int64_t microseconds = microseconds_of(entry.time);
  const std::time_t seconds = static_cast<std::time_t>(microseconds / 1'000'000);
  std::tm local{};
  localtime_r(&seconds, &local);
  std::array<char, 64> text;
  const int length = std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%06d [%d] ", local.tm_hour, local.tm_min,
                                   local.tm_sec, static_cast<int>(microseconds % 1'000'000), entry.thread);
  to.append(text.data(), static_cast<std::size_t>(length));
}

void append_time(std::string &to, std::chrono::system_clock::time_point time)
{
  const std::int64_t microseconds = microseconds_of(time);
  const std::time_t seconds = static_cast<std::time_t>(microseconds / 1'000'000);
  std::tm universal{};
  gmtime_r(&seconds, &universal);
  std::array<char, 80> text;
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%06dZ",
                                   universal.tm_year + 1900, universal.tm_mon + 1, universal.tm_mday, universal.tm_hour,
                                   universal.tm_min, universal.tm_sec, static_cast<int>(microseconds % 1'000'000));
  to.append(text.data(), static_cast<std::size_t>(length));
}

}  // namespace tarvex::trace
