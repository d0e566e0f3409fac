// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace tarvex::shell {

/// Where the reader of a saved state is.
struct file_place {
  std::string file;
  std::uint64_t line = 1;
  std::string section;
  std::string owner;

  /// "FILE:LINE: entries of ipv4Host: "
  std::string text() const;
};

}  // namespace tarvex::shell
