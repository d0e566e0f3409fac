// Lines in large pieces, remarks at once and in step with them.
//
// SPDX-License-Identifier: Apache-2.0
#include "stream_output.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "shell_error.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t most_kept = 65536;
constexpr std::string_view bold = "\033[1m";
constexpr std::string_view red = "\033[31m";
constexpr std::string_view plain = "\033[0m";

}  // namespace

stream_output::stream_output(int data, int remarks, bool data_colour, bool remark_colour)
    : data_(data),
      remarks_(remarks),
      data_colour_(data_colour),
      remark_colour_(remark_colour),
      bar_(isatty(remarks) != 0)
{
}

stream_output::~stream_output()
{
  try {
    flush();
  } catch (const file_error &) {
    // Told by an earlier flush, or nobody is left to read it.
  }
}

void stream_output::write(int descriptor, std::string_view text)
{
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw file_error(std::string("the output cannot be written: ") + std::strerror(errno));
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void stream_output::flush()
{
  wipe_progress();
  const std::string text = std::move(kept_);
  kept_.clear();
  write(data_, text);
}

void stream_output::heading(std::string_view text)
{
  if (!data_colour_) {
    line(text);
    return;
  }
  kept_ += bold;
  kept_ += text;
  line(plain);
}

void stream_output::line(std::string_view text)
{
  kept_ += text;
  kept_ += '\n';
  if (kept_.size() >= most_kept) {
    wipe_progress();
    write(data_, kept_);
    kept_.clear();
  }
}

void stream_output::remark(std::string_view text, std::string_view colour)
{
  flush();
  std::string line;
  if (remark_colour_) line += colour;
  line += text;
  if (remark_colour_) line += plain;
  line += '\n';
  write(remarks_, line);
}

void stream_output::note(std::string_view text) { remark(text, {}); }

void stream_output::error(std::string_view text) { remark(text, red); }

void stream_output::progress(std::string_view label, std::uint64_t done, std::uint64_t total)
{
  if (!bar_ || total == 0) return;
  const std::uint64_t percent = done * 100 / total;
  if (bar_columns_ != 0 && percent == shown_percent_) return;
  constexpr std::uint64_t width = 40;
  std::string bar(width, ' ');
  bar.replace(0, percent * width / 100, percent * width / 100, '=');
  std::string text = std::string(label) + " [" + bar + "] " + std::to_string(percent) + '%';
  const std::size_t columns = text.size();
  // A shorter one does not leave the end of the one before behind it.
  if (bar_columns_ > columns) text.append(bar_columns_ - columns, ' ');
  bar_columns_ = columns;
  shown_percent_ = percent;
  write(remarks_, '\r' + text);
}

void stream_output::wipe_progress()
{
  if (bar_columns_ != 0) write(remarks_, "\r" + std::string(bar_columns_, ' ') + "\r");
  bar_columns_ = 0;
}

}  // namespace tarvex::shell
