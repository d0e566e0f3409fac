// A client of the server: his session, and the thread that runs his commands.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "descriptor.h"
#include "frame_output.h"
#include "frames.h"
#include "request_reader.h"
#include "session.h"

namespace tarvex::shell {

/// Two threads meet here: the server's, which reads what the client sends, and the client's own, which alone writes to
/// him. The latter waits where he reads slowly; the former never does.
class served_client {
 public:
  /// `when_done` is called by the client's thread at its end.
  served_client(descriptor socket, const target &where, std::shared_ptr<switch_memory> memory,
                std::function<void()> when_done);
  served_client(const served_client &) = delete;
  served_client &operator=(const served_client &) = delete;
  ~served_client();

  int socket() const { return socket_.get(); }
  /// For the thread that reads.
  bool greeted() const { return requests_.greeted(); }
  /// No more is read from him.
  bool leaving() const { return leaving_; }
  /// His thread has come to its end.
  bool done() const { return done_; }

  /// There are bytes to read, or he closed. Does not wait.
  void readable();
  /// Ends his command, and then his thread.
  void leave();
  /// The same, but he is answered, and told why. Takes as long as he takes to read.
  void send_away(const std::string &why);

 private:
  struct request {
    frame_kind kind;
    std::string text;
  };

  void take(const frame &asked);
  void greet(const client_hello &hello);
  void name_session();
  /// Hands a request to the client's thread; false while it has one.
  bool post(frame_kind kind, std::string_view text);

  std::optional<request> next_request();
  void work();
  void answer(const request &what);
  void end_request(frame_kind kind, std::string_view text);

  descriptor socket_;
  session session_;
  request_reader requests_;
  frame_output output_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<request> pending_;
  std::string last_word_;  // why he is sent away
  bool busy_ = false;

  std::atomic<bool> leaving_ = false;
  std::atomic<bool> done_ = false;
  std::function<void()> when_done_;
  std::thread thread_;
};

}  // namespace tarvex::shell
