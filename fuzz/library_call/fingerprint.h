// A number that stands for a run of values, to hold two runs against each other.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

namespace tarvex::fuzz {

/// FNV-1a, 64 bits.
class fingerprint {
 public:
  void add(std::span<const std::uint8_t> content)
  {
    for (const std::uint8_t byte : content) value_ = (value_ ^ byte) * 0x100000001b3;
  }
  void add(std::string_view text) { add({reinterpret_cast<const std::uint8_t *>(text.data()), text.size()}); }
  template <typename T>
  void add_record(const T &record)
  {
    add({reinterpret_cast<const std::uint8_t *>(&record), sizeof record});
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xcbf29ce484222325;
};

}  // namespace tarvex::fuzz
