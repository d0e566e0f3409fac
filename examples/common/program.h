// The frame of an example program: --help and --version, the result line, and the exit status however it ends.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "exit_status.h"
#include "tally.h"

namespace tarvex::examples {

struct program_info {
  const char *name;
  const char *usage;                  // how it is called and what it does, without the exit statuses
  std::vector<exit_status> statuses;  // besides those that every program has
};

using program_arguments = std::span<const char *const>;

/// Runs `run` with the arguments after the program's name. An error that it throws ends the program with one sentence
/// and the exit status of the error, and so does output that could not be written.
int run_program(const program_info &about, int argc, char **argv,
                const std::function<exit_status(program_arguments)> &run);

/// The same for a program that compares. `run` keeps the tally and returns what was done, as one line.
int run_comparison(const program_info &about, int argc, char **argv,
                   const std::function<std::string(program_arguments, tally &compared)> &run);

/// The argument of a program that takes one at most.
std::optional<std::string> only_argument(program_arguments arguments);

/// "1 entry", "2 entries". `several` is `one` with an s by default.
std::string counted(std::uint64_t count, const std::string &one, const std::string &several = "");

}  // namespace tarvex::examples
