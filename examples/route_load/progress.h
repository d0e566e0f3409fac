// Progress of a long step: a bar where a person watches, nothing where none does.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>

namespace tarvex::route_load {

/// Told now and then how much of how much is done. May be empty.
using progress_report = std::function<void(std::uint64_t done, std::uint64_t total)>;

/// Tells `report` of every 4096th step, so that it costs the others nothing.
inline void report_step(const progress_report &report, std::uint64_t done, std::uint64_t total)
{
  if (report && done % 4096 == 0) report(done, total);
}

/// A bar on standard error while it lives, wiped away at its end. Empty report if standard error is no terminal.
class progress_bar {
 public:
  explicit progress_bar(const char *label) : label_(label) {}
  progress_bar(const progress_bar &) = delete;
  progress_bar &operator=(const progress_bar &) = delete;
  ~progress_bar();

  progress_report report();

 private:
  void draw(std::uint64_t done, std::uint64_t total);

  const char *label_;
  int shown_percent_ = -1;
};

}  // namespace tarvex::route_load
