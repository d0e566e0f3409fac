// Lines in large frames, remarks at once and in step with them.
//
// SPDX-License-Identifier: Apache-2.0
#include "frame_output.h"

#include "connection.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t most_kept = 32768;

}  // namespace

void frame_output::line(std::string_view text)
{
  kept_ += text;
  kept_ += '\n';
  if (kept_.size() >= most_kept) flush();
}

void frame_output::progress(std::string_view label, std::uint64_t done, std::uint64_t total)
{
  if (total == 0 || done * 100 / total == told_percent_) return;
  told_percent_ = done * 100 / total;
  send(frame_kind::progress, std::to_string(done) + ' ' + std::to_string(total) + ' ' + std::string(label));
}

void frame_output::flush()
{
  for (std::string_view rest = kept_; !rest.empty();) {
    const std::string_view part = rest.substr(0, most_answer);
    send_all(socket_, encoded(frame_kind::lines, part));
    rest.remove_prefix(part.size());
  }
  kept_.clear();
}

void frame_output::send(frame_kind kind, std::string_view text)
{
  flush();
  send_all(socket_, encoded(kind, text.substr(0, most_answer)));
}

}  // namespace tarvex::shell
