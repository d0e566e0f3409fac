// SPDX-License-Identifier: Apache-2.0
#include "trace_view.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>

#include "shell_error.h"
#include "trace_control.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t most_lines = 10'000;

struct kept_lines {
  std::mutex mutex;
  std::condition_variable came;
  std::deque<std::string> lines;
  std::uint64_t first = 0;  // number of the first one
};

/// The tracing library calls it from any thread, until the trace is stopped.
kept_lines &kept()
{
  static auto *const lines = new kept_lines;
  return *lines;
}

void keep(const char *line, std::size_t length, void *)
{
  kept_lines &all = kept();
  {
    const std::lock_guard lock(all.mutex);
    all.lines.emplace_back(line, length);
    if (all.lines.size() > most_lines) {
      all.lines.pop_front();
      ++all.first;
    }
  }
  all.came.notify_all();
}

struct open_views {
  std::mutex mutex;
  unsigned count = 0;
  bool json = false;
};

open_views &views()
{
  static auto *const all = new open_views;
  return *all;
}

}  // namespace

trace_view::trace_view(bool json)
{
  const trace_control &trace = require_trace();
  const std::lock_guard lock(views().mutex);
  if (views().count == 0) {
    if (trace.to_function(keep, nullptr, json ? std::uint32_t{TARVEX_TRACE_AS_JSON} : 0) != 0) {
      throw usage_error("a trace is being written to a file already: 'trace off' ends it");
    }
    views().json = json;
  } else if (views().json != json) {
    throw usage_error(std::string("another session looks at the trace as ") + (json ? "text" : "JSON") +
                      ": look at it in the same form");
  }
  ++views().count;
  const std::lock_guard lines(kept().mutex);
  next_ = kept().first + kept().lines.size();
}

trace_view::~trace_view()
{
  const std::lock_guard lock(views().mutex);
  if (--views().count != 0) return;
  require_trace().stop();
  const std::lock_guard lines(kept().mutex);
  kept().first += kept().lines.size();
  kept().lines.clear();
}

trace_view::piece trace_view::take(std::chrono::milliseconds wait)
{
  kept_lines &all = kept();
  std::unique_lock lock(all.mutex);
  const auto end = [&] { return all.first + all.lines.size(); };
  all.came.wait_for(lock, wait, [&] { return end() != next_; });
  piece taken;
  const std::uint64_t from = std::max(next_, all.first);
  taken.missed = from - next_;
  taken.lines.assign(all.lines.begin() + static_cast<std::ptrdiff_t>(from - all.first), all.lines.end());
  next_ = end();
  return taken;
}

unsigned trace_view::count()
{
  const std::lock_guard lock(views().mutex);
  return views().count;
}

}  // namespace tarvex::shell
