// What is written to a descriptor, write by write.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace tarvex::test {

/// The writes that something makes, each by itself.
inline std::vector<std::string> captured(const std::function<void(int fd)> &print)
{
  int ends[2];
  // Packets keep one write apart from the next.
  if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0) std::abort();
  std::vector<std::string> writes;
  std::thread reader([&] {
    std::string packet(8192, '\0');
    for (ssize_t count; (count = read(ends[0], packet.data(), packet.size())) > 0;)
      writes.emplace_back(packet, 0, static_cast<std::size_t>(count));
  });
  print(ends[1]);
  close(ends[1]);
  reader.join();
  close(ends[0]);
  return writes;
}

inline std::string joined(const std::vector<std::string> &writes)
{
  std::string text;
  for (const auto &write : writes) text += write;
  return text;
}

}  // namespace tarvex::test
