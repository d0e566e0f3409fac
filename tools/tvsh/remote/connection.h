// Sending on a connected socket.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/un.h>

#include <string>
#include <string_view>

namespace tarvex::shell {

/// The other side has left. It is no std::exception: a command that fails is reported, but nobody is left to read that.
struct connection_lost {};

/// Sends all, waiting for a reader that is slow. Throws connection_lost. Raises no signal.
void send_all(int socket, std::string_view bytes);

/// The address of a path; throws file_error where it is too long for one.
sockaddr_un socket_address(const std::string &path);

/// What the latest system call complained about, behind the path.
std::string system_error_text(const std::string &path, const char *what);

}  // namespace tarvex::shell
