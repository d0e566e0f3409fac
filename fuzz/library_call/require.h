// What a fuzz target says of a property that does not hold.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tarvex::fuzz {

/// Ends the run where something does not hold: libFuzzer then tells the input.
inline void require(bool holds, std::string_view what, std::string_view is = {}, std::string_view should_be = {})
{
  if (holds) return;
  std::fprintf(stderr, "does not hold: %.*s\n", static_cast<int>(what.size()), what.data());
  if (is.data() != nullptr) {
    std::fprintf(stderr, "  is        %.*s\n  should be %.*s\n", static_cast<int>(is.size()), is.data(),
                 static_cast<int>(should_be.size()), should_be.data());
  }
  std::abort();
}

inline void require_equal(std::string_view what, std::string_view is, std::string_view should_be)
{
  require(is == should_be, what, is, should_be);
}

}  // namespace tarvex::fuzz
