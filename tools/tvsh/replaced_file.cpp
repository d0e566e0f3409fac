// SPDX-License-Identifier: Apache-2.0
#include "replaced_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "shell_error.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t block = 1 << 18;

}  // namespace

replaced_file::replaced_file(const std::string &name) : name_(name)
{
  static std::atomic<unsigned> number = 0;
  struct stat there {};
  const bool exists = stat(name.c_str(), &there) == 0;
  if (exists && !S_ISREG(there.st_mode)) throw file_error(name + ": is there, and is no plain file");
  temporary_ = name + ".new-" + std::to_string(getpid()) + '-' + std::to_string(++number);
  descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, exists ? there.st_mode & 0777 : 0666);
  if (descriptor_ < 0) fail("cannot be written beside it");
  waiting_.reserve(2 * block);
}

replaced_file::~replaced_file()
{
  if (descriptor_ < 0) return;
  close(descriptor_);
  unlink(temporary_.c_str());
}

void replaced_file::fail(const char *what) const
{
  throw file_error(name_ + ": " + what + ": " + std::strerror(errno));
}

void replaced_file::write(std::string_view text)
{
  waiting_ += text;
  if (waiting_.size() >= block) flush();
}

void replaced_file::flush()
{
  std::string_view rest = waiting_;
  while (!rest.empty()) {
    const ssize_t count = ::write(descriptor_, rest.data(), rest.size());
    if (count < 0 && errno != EINTR) fail("cannot be written");
    if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
  }
  waiting_.clear();
}

void replaced_file::keep()
{
  flush();
  if (fsync(descriptor_) != 0) fail("cannot be written");
  if (std::rename(temporary_.c_str(), name_.c_str()) != 0) fail("cannot be put in its place");
  close(descriptor_);
  descriptor_ = -1;
}

}  // namespace tarvex::shell
