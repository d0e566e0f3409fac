// A command's output as frames to a client.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "frames.h"
#include "output.h"

namespace tarvex::shell {

/// Waits for a client that reads slowly. All throw connection_lost where he has left.
class frame_output : public output {
 public:
  explicit frame_output(int socket) : socket_(socket) {}

  void heading(std::string_view text) override { send(frame_kind::heading, text); }
  void line(std::string_view text) override;
  void note(std::string_view text) override { send(frame_kind::note, text); }
  void error(std::string_view text) override { send(frame_kind::error, text); }
  void progress(std::string_view label, std::uint64_t done, std::uint64_t total) override;
  void flush() override;

  /// What was kept back, then a frame.
  void send(frame_kind kind, std::string_view text);

 private:
  int socket_;
  std::string kept_;
  std::uint64_t told_percent_ = 0;
};

}  // namespace tarvex::shell
