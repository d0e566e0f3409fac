// How a command ends: exit codes, and the errors that lead to them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarvex::shell {

enum class exit_code : std::uint8_t {
  ok = 0,
  usage = 1,        // wrong use, or a value that cannot be
  refused = 2,      // the driver refused
  differences = 3,  // what was compared is not the same
  file = 4,         // a file or a connection failed
  bad_input = 5,    // a file holds lines that cannot be, and nothing was done
  incomplete = 6,   // done but for a part, which is named
  out_of_memory = 7,
  interrupted = 130,
  terminated = 143  // SIGTERM ended a script
};

/// Ends the command; the text tells a user what was wrong and what to do.
class shell_error : public std::runtime_error {
 public:
  shell_error(exit_code code, const std::string &text) : std::runtime_error(text), code_(code) {}
  exit_code code() const { return code_; }

 private:
  exit_code code_;
};

struct usage_error : shell_error {
  explicit usage_error(const std::string &text) : shell_error(exit_code::usage, text) {}
};

/// An argument is missing or too much: the command's usage is shown with it.
struct argument_error : usage_error {
  using usage_error::usage_error;
};

struct file_error : shell_error {
  explicit file_error(const std::string &text) : shell_error(exit_code::file, text) {}
};

}  // namespace tarvex::shell
