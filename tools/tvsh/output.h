// Where a command's output goes. The engine writes lines; who runs it decides whether they end up on a terminal, in a
// socket or in a test.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace tarvex::shell {

class output {
 public:
  output() = default;
  output(const output &) = delete;
  output &operator=(const output &) = delete;
  virtual ~output() = default;

  /// Names of the columns; no part of the data.
  virtual void heading(std::string_view text) = 0;
  /// A line of the data, without its end.
  virtual void line(std::string_view text) = 0;
  /// A remark to the person, beside the data.
  virtual void note(std::string_view text) = 0;
  virtual void error(std::string_view text) = 0;
  /// The driver's status that the command failed with, after its error.
  virtual void refused_with(std::uint32_t /*status*/) {}
  /// Told now and then during long work.
  virtual void progress(std::string_view label, std::uint64_t done, std::uint64_t total) = 0;
  /// Sends what is kept back; for commands that wait between their lines.
  virtual void flush() {}
};

}  // namespace tarvex::shell
