// Making the socket: its mode is set before its name is there, so that the process's umask, which other threads use,
// stays as it is, and nobody can get in between.
//
// SPDX-License-Identifier: Apache-2.0
#include "listening_socket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "connection.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

constexpr mode_t owner_alone = S_IRUSR | S_IWUSR;

descriptor new_socket(const std::string &path, int more_flags = 0)
{
  descriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | more_flags, 0));
  if (!made) throw file_error(system_error_text(path, "no socket can be made"));
  return made;
}

/// Of two that start at once, one looks and makes while the other waits.
descriptor locked_folder(const std::string &path)
{
  const std::string folder = std::filesystem::absolute(path).parent_path();
  descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened) throw file_error(system_error_text(folder, "the socket's folder cannot be opened"));
  for (int tries = 0; flock(opened.get(), LOCK_EX | LOCK_NB) != 0; ++tries) {
    if (tries == 200) throw file_error(folder + ": another program holds the folder locked; take a folder of your own");
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return opened;
}

/// Takes a socket away that a server left behind.
void clear_place(const std::string &path, const sockaddr_un &address)
{
  struct stat found {};
  if (lstat(path.c_str(), &found) != 0) {
    if (errno == ENOENT) return;
    throw file_error(system_error_text(path, "cannot be looked at"));
  }
  if (!S_ISSOCK(found.st_mode)) throw file_error(path + ": is there, and no socket; it was left as it is");
  const descriptor probe = new_socket(path, SOCK_NONBLOCK);
  const bool answers = connect(probe.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  if (answers || errno == EAGAIN) {  // the latter: more wait there than it takes
    throw file_error(path + ": another server listens there; stop it, or take another path");
  }
  if (errno != ECONNREFUSED) throw file_error(system_error_text(path, "a socket is there that cannot be tried"));
  if (unlink(path.c_str()) != 0) throw file_error(system_error_text(path, "an old socket cannot be removed"));
}

}  // namespace

listening_socket::listening_socket(const std::string &path) : socket_(new_socket(path, SOCK_NONBLOCK))
{
  const sockaddr_un address = socket_address(path);
  path_ = std::filesystem::absolute(path);  // whatever folder the process is in at the end
  const descriptor lock = locked_folder(path);
  clear_place(path, address);
  fchmod(socket_.get(), owner_alone);  // the name gets the mode of the socket
  if (bind(socket_.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
    throw file_error(system_error_text(path, "the socket cannot be made"));
  }
  struct stat made {};
  const bool safe = lstat(path.c_str(), &made) == 0 && S_ISSOCK(made.st_mode) && made.st_uid == geteuid() &&
                    ((made.st_mode & 0777U) == owner_alone || chmod(path.c_str(), owner_alone) == 0);
  if (!safe || listen(socket_.get(), SOMAXCONN) != 0) {
    const std::string text = system_error_text(path, "the socket cannot be used");
    unlink(path.c_str());
    throw file_error(text);
  }
  device_ = made.st_dev;
  inode_ = made.st_ino;
}

listening_socket::~listening_socket()
{
  struct stat found {};
  if (lstat(path_.c_str(), &found) == 0 && found.st_dev == device_ && found.st_ino == inode_) unlink(path_.c_str());
}

}  // namespace tarvex::shell
