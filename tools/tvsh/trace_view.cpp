// SPDX-License-Identifier: Apache-2.0
#include "trace_view.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "shell_error.h"
#include "trace_control.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t most_lines = 10'000;

struct open_views {
  std::mutex control;  // ahead of the trace's own lock
  bool json = false;

  std::mutex lines;  // behind the trace's own lock; guards what views hold
  std::condition_variable came;
  std::vector<trace_view *> all;
};

/// The tracing library calls for it from any thread, until the trace is stopped.
open_views &views()
{
  static auto *const all = new open_views;
  return *all;
}

/// The thread that a line is of: "12:00:01.123456 [4711] name(" or {"schema_version":1,"time":"","thread":4711,
int thread_of(std::string_view line)
{
  const std::string_view ahead = line.starts_with('{') ? "\"thread\":" : " [";
  int thread = 0;
  if (const std::size_t at = line.find(ahead); at != std::string_view::npos) {
    std::from_chars(line.data() + at + ahead.size(), line.data() + line.size(), thread);
  }
  return thread;
}

/// Puts the end of a call behind its beginning, where nothing that is shown came in between.
bool joined(std::string &begun, std::string_view line)
{
  constexpr std::string_view unfinished = " <unfinished ...>";
  constexpr std::string_view resumed = " resumed>";
  const std::size_t end = line.find("] <... ");
  if (end == std::string_view::npos || end != line.find("] ") || !begun.ends_with(unfinished)) return false;
  begun.erase(begun.size() - unfinished.size());
  begun += line.substr(line.find(resumed) + resumed.size());
  return true;
}

}  // namespace

void keep_line(const char *line, std::size_t length, void *)
{
  open_views &open = views();
  {
    const std::lock_guard lock(open.lines);
    for (trace_view *const each : open.all) each->keep({line, length});
  }
  open.came.notify_all();
}

trace_view::trace_view(bool json, trace_scope scope) : thread_(scope == trace_scope::program ? 0 : gettid())
{
  const trace_control &trace = require_trace();
  open_views &open = views();
  const std::lock_guard lock(open.control);
  if (open.all.empty()) {
    if (trace.to_function(keep_line, nullptr, json ? std::uint32_t{TARVEX_TRACE_AS_JSON} : 0) != 0) {
      throw usage_error("a trace is being written to a file already: 'trace off' ends it");
    }
    open.json = json;
  } else if (open.json != json) {
    throw usage_error(std::string("another session looks at the trace as ") + (json ? "text" : "JSON") +
                      ": look at it in the same form");
  }
  const std::lock_guard lines(open.lines);
  open.all.push_back(this);
}

trace_view::~trace_view()
{
  open_views &open = views();
  const std::lock_guard lock(open.control);
  {
    const std::lock_guard lines(open.lines);
    std::erase(open.all, this);
  }
  if (open.all.empty()) require_trace().stop();
}

void trace_view::keep(std::string_view line)
{
  if (thread_ != 0) {
    if (thread_of(line) != thread_) return;
    if (!lines_.empty() && joined(lines_.back(), line)) return;
  }
  lines_.emplace_back(line);
  if (lines_.size() > most_lines) {
    lines_.pop_front();
    ++missed_;
  }
}

trace_view::piece trace_view::take(std::chrono::milliseconds wait)
{
  open_views &open = views();
  std::unique_lock lock(open.lines);
  open.came.wait_for(lock, wait, [&] { return !lines_.empty(); });
  piece taken{std::exchange(missed_, 0), {std::move_iterator(lines_.begin()), std::move_iterator(lines_.end())}};
  lines_.clear();
  return taken;
}

unsigned trace_view::count()
{
  const std::lock_guard lock(views().lines);
  return static_cast<unsigned>(views().all.size());
}

}  // namespace tarvex::shell
