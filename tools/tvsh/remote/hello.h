// The first frames of a connection: who speaks which version, and what a client wants of its session.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "command_line.h"

namespace tarvex::shell {

struct client_hello {
  std::optional<std::uint32_t> device;  // the server's own where not given
  options defaults;
  std::string folder;  // that the client's names of files begin from
};

struct server_hello {
  std::uint32_t device = 0;
  std::uint32_t process = 0;
  std::uint32_t batches = 0;  // frames of a script that may lack their answer; 0 where it takes no scripts
};

std::string written(const client_hello &hello);
std::string written(const server_hello &hello);

/// Throw protocol_error: another version, or what is no hello. Names that are not known are passed over.
client_hello parse_client_hello(std::string_view text);
server_hello parse_server_hello(std::string_view text);

}  // namespace tarvex::shell
