// Lines of a plain or gzip-compressed text file.
//
// SPDX-License-Identifier: Apache-2.0
#include "line_reader.h"

#include <cstring>

namespace tarvex::route_load {
namespace {

constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";  // some editors begin a file of UTF-8 with it

}  // namespace

/// Reads more after the unread part of the buffer. False at the end of the file.
bool line_reader::fill()
{
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  const std::size_t got = source_.read(buffer_.data() + end_, buffer_.size() - end_);
  end_ += got;
  return got > 0;
}

line_reader::result line_reader::next(std::string_view &line)
{
  bool too_long = false;
  for (std::size_t searched = 0;;) {
    const char *start = buffer_.data() + begin_;
    const auto *line_end = static_cast<const char *>(std::memchr(start + searched, '\n', end_ - begin_ - searched));
    const bool last_line = line_end == nullptr && at_end_ && (begin_ != end_ || too_long);
    if (line_end != nullptr || last_line) {
      const std::size_t length = line_end != nullptr ? static_cast<std::size_t>(line_end - start) : end_ - begin_;
      line = {start, length};
      begin_ += length + (line_end != nullptr ? 1 : 0);
      ++line_number_;
      if (line_number_ == 1 && line.starts_with(byte_order_mark)) line.remove_prefix(byte_order_mark.size());
      return too_long ? result::too_long : result::line;
    }
    if (at_end_) {
      return result::end;
    }
    if (end_ - begin_ == buffer_.size()) {
      too_long = true;
      begin_ = end_ = 0;
    }
    searched = end_ - begin_;
    at_end_ = !fill();
  }
}

}  // namespace tarvex::route_load
