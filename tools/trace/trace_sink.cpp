// SPDX-License-Identifier: Apache-2.0
#include "trace_sink.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tarvex::trace {

std::unique_ptr<file_sink> file_sink::open(const char *path, int &error)
{
  // The opening of a FIFO without a reader waits, too, unless it is told not to.
  const int descriptor = ::open(path, O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600);
  struct stat found = {};
  if (descriptor < 0 || fstat(descriptor, &found) != 0) {
    error = errno;
  } else if (S_ISREG(found.st_mode) || (S_ISCHR(found.st_mode) && isatty(descriptor) == 0)) {
    return std::unique_ptr<file_sink>(new file_sink(descriptor, S_ISREG(found.st_mode), path));
  } else {
    error = ENXIO;
  }
  if (descriptor >= 0) close(descriptor);
  return nullptr;
}

int file_sink::make_anew()
{
  if (!plain_) return 0;
  fchmod(descriptor_, 0600);  // another's file, open to us, keeps its mode
  return ftruncate(descriptor_, 0) == 0 ? 0 : errno;
}

void file_sink::write(std::string_view text)
{
  while (error_ == 0 && !text.empty()) {
    const ssize_t written = ::write(descriptor_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
}

int file_sink::end()
{
  // Some file systems tell only now that there was no room.
  if (descriptor_ >= 0 && close(descriptor_) != 0 && error_ == 0 && errno != EINTR) error_ = errno;
  descriptor_ = -1;
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
