// Counts what an example compared and what it found different, and tells of the first few differences.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace tarvex::examples {

class tally {
 public:
  /// One comparison; `what` makes the text of a difference.
  template <typename What>
  bool expect(bool as_expected, What what)
  {
    ++compared_;
    if (as_expected) return true;
    if (++different_ <= most_told) std::fprintf(stderr, "different: %s\n", std::string(what()).c_str());
    return false;
  }

  std::uint64_t compared() const { return compared_; }
  std::uint64_t different() const { return different_; }

 private:
  static constexpr std::uint64_t most_told = 20;

  std::uint64_t compared_ = 0;
  std::uint64_t different_ = 0;
};

}  // namespace tarvex::examples
