// Lines of a plain or gzip-compressed text file.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "byte_source.h"

namespace tarvex::route_load {

class line_reader {
 public:
  enum class result { line, too_long, end };

  static constexpr std::size_t longest_line = 65536;

  explicit line_reader(const std::string &path) : source_(path), buffer_(longest_line) {}

  /// The next line, without its line end. Valid until the next call. Of a line that is too long nothing is given.
  result next(std::string_view &line);

  std::uint32_t line_number() const { return line_number_; }
  /// Bytes of the file (compressed, where it is) read so far, and in all.
  std::uint64_t bytes_read() const { return source_.bytes_read(); }
  std::uint64_t bytes_total() const { return source_.bytes_total(); }

 private:
  bool fill();

  byte_source source_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool at_end_ = false;
  std::uint32_t line_number_ = 0;
};

}  // namespace tarvex::route_load
