// SPDX-License-Identifier: Apache-2.0
#include "replaced_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "shell_error.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t block = 1 << 18;

/// A link may point at what is not there yet: it is made there.
std::string behind_links(const std::string &name)
{
  constexpr int most_links = 40;
  std::filesystem::path at(name);
  std::error_code failed;
  for (int i = 0; std::filesystem::is_symlink(at, failed); ++i) {
    if (i == most_links) throw file_error(name + ": " + std::strerror(ELOOP));
    at = at.parent_path() / std::filesystem::read_symlink(at, failed);
  }
  return at;
}

/// While it lives, a file that grows beyond the process's limit fails in this thread, and does not end the process.
class limits_as_errors {
 public:
  limits_as_errors()
  {
    sigemptyset(&limit_);
    sigaddset(&limit_, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &limit_, &before_);
  }
  limits_as_errors(const limits_as_errors &) = delete;
  limits_as_errors &operator=(const limits_as_errors &) = delete;
  ~limits_as_errors()
  {
    const int error = errno;
    constexpr timespec at_once{};
    if (sigismember(&before_, SIGXFSZ) == 0) sigtimedwait(&limit_, nullptr, &at_once);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = error;
  }

 private:
  sigset_t limit_{};
  sigset_t before_{};
};

/// As the file that it takes the place of. Who cannot give it to the same owners gives it to nobody but himself.
bool take_after(int descriptor, const struct stat &there)
{
  struct stat now {};
  if (fstat(descriptor, &now) != 0) return false;
  const bool same_owners =
      (now.st_uid == there.st_uid && now.st_gid == there.st_gid) || fchown(descriptor, there.st_uid, there.st_gid) == 0;
  return fchmod(descriptor, there.st_mode & (same_owners ? 0777U : 0700U)) == 0;
}

/// A new name is on the disk once its folder is. Some file systems have no way to ask for that, nor need of it.
bool flush_folder(const std::string &file)
{
  const std::filesystem::path folder = std::filesystem::path(file).parent_path();
  const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return errno == EACCES;  // written to, but not read
  const bool done = fsync(descriptor) == 0 || errno == EINVAL;
  close(descriptor);
  return done;
}

}  // namespace

replaced_file::replaced_file(const std::string &name) : name_(name), target_(behind_links(name))
{
  static std::atomic<unsigned> number = 0;
  waiting_.reserve(2 * block);
  struct stat there {};
  const bool exists = stat(target_.c_str(), &there) == 0;
  if (exists && !S_ISREG(there.st_mode)) throw file_error(name + ": is there, and is no plain file");
  temporary_ = target_ + ".new-" + std::to_string(getpid()) + '-' + std::to_string(++number);
  descriptor_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor_ < 0) fail("cannot be written beside it");
  if (exists && !take_after(descriptor_, there)) {
    const int error = errno;
    drop();
    errno = error;
    fail("its mode cannot be kept");
  }
}

replaced_file::~replaced_file()
{
  if (descriptor_ >= 0) drop();
}

void replaced_file::drop()
{
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
  const limits_as_errors held;
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
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail("cannot be put in its place");
  close(descriptor_);
  descriptor_ = -1;
  if (!flush_folder(target_)) fail("is in its place, but a loss of power may take it back");
}

}  // namespace tarvex::shell
