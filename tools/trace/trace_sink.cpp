// SPDX-License-Identifier: Apache-2.0
#include "trace_sink.h"

#include <unistd.h>

#include <cerrno>

namespace tarvex::trace {

file_sink::~file_sink()
{
  flush();
  close(descriptor_);
}

void file_sink::write(std::string_view text)
{
  if (waiting_.size() + text.size() > room) flush();
  waiting_ += text;
  const auto now = std::chrono::steady_clock::now();
  if (at_once_ || waiting_.size() > room || now - written_ > longest_wait) {
    flush();
    written_ = now;
  }
}

int file_sink::flush()
{
  std::string_view rest = waiting_;
  while (error_ == 0 && !rest.empty()) {
    const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
    if (written >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  waiting_.clear();
  return error_;
}

void function_sink::write(std::string_view text)
{
  begun_ += text;
  std::size_t from = 0;
  for (std::size_t end; (end = begun_.find('\n', from)) != std::string::npos; from = end + 1) {
    line_(begun_.data() + from, end - from, cookie_);
  }
  begun_.erase(0, from);
}

}  // namespace tarvex::trace
