// The bytes of a file, uncompressed if it is a gzip file.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include <zlib.h>

#include "exit_status.h"

namespace tarvex::route_load {

using examples::file_error;

/// Every function throws file_error, whose text names the file.
class byte_source {
 public:
  /// The name "-" is standard input.
  explicit byte_source(const std::string &path);
  byte_source(const byte_source &) = delete;
  byte_source &operator=(const byte_source &) = delete;
  ~byte_source();

  /// As many bytes as there are, up to `room`; 0 at the end of the file.
  std::size_t read(char *to, std::size_t room);

  /// Bytes of the file itself read so far, and in all if that is known, else 0.
  std::uint64_t bytes_read() const { return bytes_read_; }
  std::uint64_t bytes_total() const { return bytes_total_; }

 private:
  enum class place { at_the_start, in_a_member, after_a_member };

  [[noreturn]] void fail(const std::string &what) const;
  void refill();
  std::size_t inflate_some(char *to, std::size_t room);

  std::string name_;
  int file_;
  bool compressed_ = false;
  place at_ = place::at_the_start;
  z_stream stream_{};
  std::array<unsigned char, 65536> input_;  // stream_ points at its unread part
  std::uint64_t bytes_read_ = 0;
  std::uint64_t bytes_total_ = 0;
};

}  // namespace tarvex::route_load
