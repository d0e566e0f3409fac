// A session at the other end of a socket.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "descriptor.h"
#include "frames.h"
#include "hello.h"
#include "interpreter.h"

namespace tarvex::shell {

/// All throw file_error where the server cannot be reached, goes away, or does not keep to the protocol.
class remote_session : public interpreter {
 public:
  remote_session(const std::string &path, const client_hello &hello);

  exit_code run(std::string_view line, output &out) override;
  /// Sends lines ahead of the answers to those before, as many as the server takes. What it does is the same as if each
  /// line were sent when the last was answered: the server stops at the first that fails.
  script_end run_lines(std::string_view text, output &out) override;
  std::vector<std::string> completions(std::string_view line) override;
  void interrupt() noexcept override;
  /// An interrupt ahead of a command is forgotten by the server.
  void clear_interrupt() noexcept override {}

  const server_hello &server() const { return server_; }

 private:
  void send(frame_kind kind, std::string_view payload);
  /// Waits for it.
  frame next();
  /// Shows what the server sends up to the end of a request, and returns that.
  std::string read_answer(bool as_json, output &out);
  script_end read_end(std::string_view text, bool of_script);
  [[noreturn]] void fail(const std::string &why) const;

  std::string path_;
  descriptor socket_;
  frame_decoder decoder_{most_answer};
  server_hello server_;
  bool greeted_ = false;
};

}  // namespace tarvex::shell
