// The command line of route_load.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "exit_status.h"

namespace tarvex::route_load {

using examples::usage_error;

struct options {
  std::string file;
  bool strict = false;
  bool explain = false;
  std::uint64_t seed = 1;
  std::uint64_t resolve = 100000;
};

extern const char *const usage_text;

/// The arguments behind the program's name. Throws usage_error.
options parse_options(std::span<const char *const> arguments);

}  // namespace tarvex::route_load
