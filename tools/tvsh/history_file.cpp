// A line is appended under a lock of the file. The file is cut by replacing it, also under its lock: who gets the lock
// of a file that was replaced meanwhile opens the new one.
//
// SPDX-License-Identifier: Apache-2.0
#include "history_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "descriptor.h"

namespace tarvex::shell {

namespace {

constexpr std::string_view head = "_HiStOrY_V2_\n";
constexpr mode_t owner_alone = S_IRUSR | S_IWUSR;

/// The form of the file: blanks and what is no plain letter or sign in octal.
std::string encoded(std::string_view line)
{
  std::string text;
  for (const char letter : line) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte > ' ' && byte < 0x7f && letter != '\\') {
      text += letter;
      continue;
    }
    text += '\\';
    for (const unsigned shift : {6U, 3U, 0U}) text += static_cast<char>('0' + (byte >> shift & 7U));
  }
  return text += '\n';
}

bool write_all(int file, std::string_view bytes)
{
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string read_all(int file)
{
  std::string bytes;
  char part[65536];
  for (off_t at = 0;;) {
    const ssize_t got = pread(file, part, sizeof part, at);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return bytes;
    bytes.append(part, static_cast<std::size_t>(got));
    at += got;
  }
}

/// The file that has the name, locked; none where that cannot be.
descriptor locked_file(const std::string &path)
{
  for (;;) {
    descriptor file(open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, owner_alone));
    if (!file) return file;
    while (flock(file.get(), LOCK_EX) != 0) {
      if (errno != EINTR) return descriptor();
    }
    struct stat opened {};
    struct stat named {};
    if (fstat(file.get(), &opened) == 0 && stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
        opened.st_dev == named.st_dev) {
      return file;
    }
  }
}

/// The latest lines alone, in half the room.
std::string latest_lines(std::string_view bytes)
{
  std::size_t begin = bytes.size();
  for (std::size_t lines = 0; lines < history_file::most_lines && begin > 0; ++lines) {
    const std::size_t end = bytes.substr(0, begin - 1).rfind('\n');
    const std::size_t before = end == std::string_view::npos ? 0 : end + 1;
    if (lines != 0 && bytes.size() - before > history_file::most_bytes / 2) break;
    begin = before;
  }
  std::string kept(bytes.substr(begin));
  return kept.starts_with(head) ? kept : std::string(head) + kept;
}

void cut(const std::string &path, int file)
{
  struct stat now {};
  if (fstat(file, &now) != 0 || now.st_size <= static_cast<off_t>(history_file::most_bytes)) return;
  const std::string shorter = path + ".new";
  unlink(shorter.c_str());
  const descriptor to(open(shorter.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, owner_alone));
  if (!to) return;
  if (!write_all(to.get(), latest_lines(read_all(file))) || rename(shorter.c_str(), path.c_str()) != 0) {
    unlink(shorter.c_str());
  }
}

}  // namespace

history_file::history_file()
{
  const char *const state = std::getenv("XDG_STATE_HOME");
  const char *const home = std::getenv("HOME");
  std::filesystem::path folder;
  if (state != nullptr && *state == '/') {
    folder = state;
  } else if (home != nullptr && *home == '/') {
    folder = std::filesystem::path(home) / ".local" / "state";
  } else {
    return;
  }
  folder /= "tvsh";
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  const std::filesystem::path file = std::filesystem::weakly_canonical(folder / "history", failed);
  if (failed) return;
  const descriptor there = locked_file(file);
  if (!there) return;
  fchmod(there.get(), owner_alone);
  path_ = file;
}

void history_file::append(std::string_view line)
{
  if (path_.empty() || line == last_) return;
  last_ = line;
  const descriptor file = locked_file(path_);
  if (!file) return;
  struct stat now {};
  const bool is_new = fstat(file.get(), &now) == 0 && now.st_size == 0;
  write_all(file.get(), (is_new ? std::string(head) : std::string()) + encoded(line));
  cut(path_, file.get());
}

}  // namespace tarvex::shell
