// Writes lines of print text to a descriptor, each with one write where the descriptor takes it whole.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace tarvex::pd {

/// One line. Its pieces gather in a block; what does not fit goes out in between.
class line_writer {
 public:
  explicit line_writer(std::int32_t fd) : fd_(fd) {}

  line_writer &text(std::string_view piece);
  line_writer &hex(std::uint32_t value, unsigned digits);
  line_writer &capital_bytes(const std::uint8_t *bytes, unsigned count);
  /// As "%*s" with an empty string: |indent| blanks.
  line_writer &indent(std::int32_t indent);
  /// As "%*c" with a blank: at least one character.
  line_writer &blank_column(std::int32_t indent);

  /// Ends the line and sends it. The number of its characters, or -1 if the descriptor did not take them all.
  std::int32_t end();

 private:
  void blanks(std::uint32_t count);
  void send();

  static constexpr std::uint32_t block_size = 4096;
  std::int32_t fd_;
  std::uint32_t used_ = 0;
  std::uint64_t sent_ = 0;
  bool failed_ = false;
  char block_[block_size];
};

}  // namespace tarvex::pd
