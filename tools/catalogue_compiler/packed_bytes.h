// Values that follow one another in whole bytes, as in keys and in action data.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "diagnostics.h"
#include "model.h"

namespace catalogue {

class packed_bytes {
 public:
  /// `range_key` is the key that gives a value's bytes.
  explicit packed_bytes(std::string_view range_key) : range_key_(range_key) {}

  /// Adds the next value, and checks its width, its storage and display, and its bytes.
  template <class Value>
  void add(const subject &s, const Value &v, const byte_range &range)
  {
    check_width(s, v.bits, v.type, v.display);
    place(s, v.bits, range);
  }

  unsigned bits() const { return bits_; }
  unsigned bytes() const { return bytes_; }

 private:
  void check_width(const subject &s, unsigned bits, storage type, const std::string &display) const;
  void place(const subject &s, unsigned bits, const byte_range &range);

  std::string_view range_key_;
  unsigned next_ = 0;  // the byte behind the last value
  unsigned bits_ = 0;
  unsigned bytes_ = 0;
};

/// Compares a stated sum with what the rows make.
void check_sum(const subject &s, std::string_view key, unsigned stated, unsigned found, std::string_view rows);

}  // namespace catalogue
