// The progress bar.
//
// SPDX-License-Identifier: Apache-2.0
#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace tarvex::route_load {

progress_bar::~progress_bar()
{
  if (shown_percent_ >= 0) std::fputs("\r\033[K", stderr);
}

progress_report progress_bar::report()
{
  if (isatty(STDERR_FILENO) == 0) return {};
  return [this](std::uint64_t done, std::uint64_t total) { draw(done, total); };
}

void progress_bar::draw(std::uint64_t done, std::uint64_t total)
{
  const int percent = total == 0 ? 0 : static_cast<int>(std::min(done, total) * 100 / total);
  if (percent == shown_percent_) return;
  shown_percent_ = percent;
  constexpr std::size_t width = 40;
  std::string bar(width, '.');
  std::fill_n(bar.begin(), width * static_cast<std::size_t>(percent) / 100, '#');
  std::fprintf(stderr, "\r%-12s [%s] %3d%%", label_, bar.c_str(), percent);
  std::fflush(stderr);
}

}  // namespace tarvex::route_load
