// The program's arguments.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "command_line.h"
#include "driver_statuses.h"
#include "pages.h"

namespace tarvex::shell {

struct program_options {
  std::vector<std::string> commands;
  std::optional<std::string> script;
  std::optional<std::string> served;    // the socket to serve
  std::optional<std::string> attached;  // the socket to attach to
  std::optional<std::string> driver;
  driver_statuses statuses;
  std::optional<std::string> page;   // of those that are installed beside the program
  std::optional<std::string> begun;  // a command line to complete, for the completion of another shell
  std::string colour = "auto";
  options defaults;
  std::uint32_t device = 0;
  bool device_given = false;
  std::uint32_t session = 1;
};

class argument_parser {
 public:
  argument_parser();
  /// Throws CLI::ParseError.
  program_options parse(int argc, char **argv);
  /// Tells what is wrong, or the help that was asked for; the exit code is nonzero for the former.
  int tell(const CLI::ParseError &error) { return app_.exit(error); }
  /// All but the hidden ones.
  std::vector<program_option> shown_options() const;

 private:
  CLI::App app_;
  program_options wanted_;
};

}  // namespace tarvex::shell
