// Lines of a plain or gzip-compressed text file.
//
// SPDX-License-Identifier: Apache-2.0
#include "line_reader.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace tarvex::route_load {

line_reader::line_reader(const std::string &path)
    : path_(path), file_(gzopen(path.c_str(), "rb")), buffer_(longest_line)
{
  if (!file_) {
    throw file_error(path_ + ": cannot be opened: " + std::strerror(errno != 0 ? errno : ENOMEM));
  }
  std::error_code no_size;
  const auto size = std::filesystem::file_size(path, no_size);
  bytes_total_ = no_size ? 0 : size;
}

std::uint64_t line_reader::bytes_read() const
{
  const auto offset = gzoffset(file_.get());
  return offset < 0 ? 0 : static_cast<std::uint64_t>(offset);
}

/// Reads on behind what is left in the buffer. False at the end of the file.
bool line_reader::fill()
{
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  const int got = gzread(file_.get(), buffer_.data() + end_, static_cast<unsigned>(buffer_.size() - end_));
  // A stream that breaks off gives what it has first, so the error is looked at after good reads too.
  int error = Z_OK;
  const char *text = gzerror(file_.get(), &error);
  if (error == Z_ERRNO) {
    throw file_error(path_ + ": cannot be read: " + std::strerror(errno));
  }
  if (error == Z_BUF_ERROR) {
    throw file_error(path_ + ": ends in the middle of its compressed data; fetch it again");
  }
  if (got < 0 || (error != Z_OK && error != Z_STREAM_END)) {
    throw file_error(path_ + ": the compressed data is damaged: " + text);
  }
  end_ += static_cast<std::size_t>(got);
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
