// How a program ends: its exit status, and the errors that lead to it. docs/exit_codes.md has the table.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>

namespace tarvex::examples {

enum exit_status {
  all_well = 0,
  wrong_use = 1,
  refused_by_driver = 2,
  differences_found = 3,
  file_failed = 4,
  bad_input = 5,
  incomplete = 6,
  out_of_memory = 7,
};

struct usage_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A file cannot be read or written, or the output cannot; the text says which and why.
struct file_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The driver did not do what it was asked for; the text says what, and its status.
struct driver_refused : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace tarvex::examples
