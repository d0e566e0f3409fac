// SPDX-License-Identifier: Apache-2.0
#include "plain_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "shell_error.h"

namespace tarvex::shell {

plain_file::plain_file(const std::string &name)
    : name_(name),
      // The opening of a FIFO without a writer waits, too, unless it is told not to.
      descriptor_(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
{
  struct stat there {};
  if (descriptor_ < 0 || fstat(descriptor_, &there) != 0) {
    const int error = errno;
    if (descriptor_ >= 0) close(descriptor_);
    throw file_error(name + ": cannot be opened: " + std::strerror(error));
  }
  if (!S_ISREG(there.st_mode)) {
    close(descriptor_);
    throw file_error(name + ": is no plain file; what comes from a pipe or a device is read once it is in a file");
  }
  size_ = static_cast<std::uint64_t>(there.st_size);
}

plain_file::~plain_file() { close(descriptor_); }

std::size_t plain_file::read(char *to, std::size_t most)
{
  ssize_t count = 0;
  do {
    count = ::read(descriptor_, to, most);
  } while (count < 0 && errno == EINTR);
  if (count < 0) throw file_error(name_ + ": cannot be read: " + std::strerror(errno));
  return static_cast<std::size_t>(count);
}

}  // namespace tarvex::shell
