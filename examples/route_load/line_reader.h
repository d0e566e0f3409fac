// Lines of a plain or gzip-compressed text file.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <zlib.h>

namespace tarvex::route_load {

/// The file cannot be read; the text says which and why.
struct file_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class line_reader {
 public:
  enum class result { line, too_long, end };

  static constexpr std::size_t longest_line = 65536;

  explicit line_reader(const std::string &path);

  /// The next line, without its line end. Valid until the next call. Of a line that is too long nothing is given.
  result next(std::string_view &line);

  std::uint32_t line_number() const { return line_number_; }
  /// Bytes of the file (compressed, where it is) read so far, and in all.
  std::uint64_t bytes_read() const;
  std::uint64_t bytes_total() const { return bytes_total_; }

 private:
  bool fill();

  struct closer {
    void operator()(gzFile file) const { gzclose_r(file); }
  };

  std::string path_;
  std::unique_ptr<gzFile_s, closer> file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool at_end_ = false;
  std::uint32_t line_number_ = 0;
  std::uint64_t bytes_total_ = 0;
};

}  // namespace tarvex::route_load
