// A driver that does nothing but keep what it was called with.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tarvex_platform/driver.h"

namespace tarvex::trace::test {

struct echo {
  std::string function;
  std::vector<std::string> arguments;  // the bytes of each
  std::uint64_t result = 0;            // what the next call gives

  bool operator==(const echo &) const = default;
};

/// Of the calling thread.
echo &last_call();

template <typename... Arguments>
std::vector<std::string> bytes_of(const Arguments &...arguments)
{
  return {std::string(reinterpret_cast<const char *>(&arguments), sizeof arguments)...};
}

}  // namespace tarvex::trace::test
