// Unix sockets, as both sides use them.
//
// SPDX-License-Identifier: Apache-2.0
#include "connection.h"

#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "shell_error.h"

namespace tarvex::shell {

void send_all(int socket, std::string_view bytes)
{
  while (!bytes.empty()) {
    const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) throw connection_lost();
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

sockaddr_un socket_address(const std::string &path)
{
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path || path.find('\0') != std::string::npos) {
    throw file_error("'" + path + "': a socket's path has 1 to " + std::to_string(sizeof address.sun_path - 1) +
                     " bytes, this one " + std::to_string(path.size()));
  }
  std::memcpy(address.sun_path, path.data(), path.size());
  return address;
}

std::string system_error_text(const std::string &path, const char *what)
{
  return path + ": " + what + ": " + std::system_category().message(errno);
}

}  // namespace tarvex::shell
