// Assertions of the library, caught instead of ending the process.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tarvex::test {

struct stop {
  std::string assertion;
  std::string file;
  std::string function;
};

/// Runs something; gives the assertion that stopped it, if one did.
std::optional<stop> stopped(const std::function<void()> &run);

}  // namespace tarvex::test
