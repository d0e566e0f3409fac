// The command line of l2_learning.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

namespace tarvex::l2_learning {

struct options {
  std::uint64_t addresses = 10000;
  std::uint64_t seed = 1;
};

inline constexpr std::uint64_t most_addresses = 1'000'000;

extern const char *const usage_text;

/// The arguments behind the program's name. Throws examples::usage_error.
options parse_options(std::span<const char *const> arguments);

}  // namespace tarvex::l2_learning
