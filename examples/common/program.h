// The frame of an example program: its result line and its exit status, and its argument where it has but one.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "switch_device.h"
#include "tally.h"

namespace tarvex::examples {

enum exit_status { all_well = 0, wrong_use = 1, refused_by_driver = 2, differences_found = 3, bad_file = 4 };

/// How each example ends, for its usage text.
inline constexpr char exit_status_text[] =
    "Exit status: 0 all as expected; 1 wrong use; 2 the driver refused; 3 differences; 4 a file cannot be used.\n";

struct usage_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct file_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Runs `run`, which keeps the tally and gives what it did, as one line, or nothing where the usage text is wanted.
int run_program(const char *name, const char *usage,
                const std::function<std::optional<std::string>(tally &compared)> &run);

/// The same for a program of one argument, which may be left out.
int run_program(int argc, char **argv, const char *name, const char *usage,
                std::string (*run)(const std::optional<std::string> &argument, tally &compared));

}  // namespace tarvex::examples
