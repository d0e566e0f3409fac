// Serves sessions at a socket, from threads of its own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <chrono>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "descriptor.h"
#include "listening_socket.h"
#include "served_client.h"

namespace tarvex::shell {

/// No signal reaches its threads, and it raises none. All sessions share what is remembered of the devices.
class server {
 public:
  static constexpr std::size_t most_clients = 64;

  /// Serves until it is destroyed, which interrupts the commands that run and waits for them. Throws file_error.
  server(const std::string &path, const target &where,
         std::shared_ptr<switch_memory> memory = std::make_shared<switch_memory>());
  server(const server &) = delete;
  server &operator=(const server &) = delete;
  ~server();

  const std::string &path() const { return listener_.path(); }

 private:
  void serve();
  void accept_client();
  /// Whether all places are taken, but one is about to be free.
  bool place_soon();
  /// Empty where he may come in.
  std::string refusal(int socket) const;
  void wake() const;
  void drop_done();

  target where_;
  std::shared_ptr<switch_memory> memory_;
  listening_socket listener_;
  descriptor wake_;
  std::list<served_client> clients_;
  bool paused_ = false;  // no descriptor or no place was there for the next client
  std::optional<std::chrono::steady_clock::time_point> waits_until_;  // for a place; while a client waits for one
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

}  // namespace tarvex::shell
