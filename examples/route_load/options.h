// The command line of route_load.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace tarvex::route_load {

struct usage_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct options {
  std::string file;
  bool strict = false;
  bool help = false;
  std::uint64_t seed = 1;
  std::uint64_t resolve = 100000;
};

extern const char *const usage_text;

/// The arguments behind the program's name. Throws usage_error.
options parse_options(std::span<const char *const> arguments);

}  // namespace tarvex::route_load
