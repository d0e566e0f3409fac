// The bytes of a file, uncompressed if it is a gzip file. zlib's own reader of files would pass over what follows the
// compressed data.
//
// SPDX-License-Identifier: Apache-2.0
#include "byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace tarvex::route_load {
namespace {

constexpr unsigned char gzip_magic[] = {0x1f, 0x8b};
constexpr int gzip_window = 15 + 16;

}  // namespace

byte_source::byte_source(const std::string &path)
    : name_(path == "-" ? "standard input" : path),
      file_(path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
  if (file_ < 0) fail(std::string("cannot be opened: ") + std::strerror(errno));
  struct stat about;
  if (fstat(file_, &about) == 0 && S_ISREG(about.st_mode)) bytes_total_ = static_cast<std::uint64_t>(about.st_size);
  try {
    refill();
    compressed_ = stream_.avail_in >= 2 && std::equal(std::begin(gzip_magic), std::end(gzip_magic), input_.begin());
    if (compressed_ && inflateInit2(&stream_, gzip_window) != Z_OK) throw std::bad_alloc();
  } catch (...) {
    close(file_);
    throw;
  }
}

byte_source::~byte_source()
{
  if (compressed_) inflateEnd(&stream_);
  close(file_);
}

void byte_source::fail(const std::string &what) const { throw file_error(name_ + ": " + what); }

void byte_source::refill()
{
  std::size_t got = 0;
  while (got < 2) {  // a pipe may give less than tells plain from compressed
    const ssize_t more = ::read(file_, input_.data() + got, input_.size() - got);
    if (more < 0 && errno != EINTR) fail(std::string("cannot be read: ") + std::strerror(errno));
    if (more == 0) break;
    got += more > 0 ? static_cast<std::size_t>(more) : 0;
  }
  stream_.next_in = input_.data();
  stream_.avail_in = static_cast<uInt>(got);
  bytes_read_ += got;
}

std::size_t byte_source::read(char *to, std::size_t room)
{
  if (compressed_) return inflate_some(to, room);
  if (stream_.avail_in == 0) refill();
  const std::size_t given = std::min<std::size_t>(room, stream_.avail_in);
  std::memcpy(to, stream_.next_in, given);
  stream_.next_in += given;
  stream_.avail_in -= static_cast<uInt>(given);
  return given;
}

std::size_t byte_source::inflate_some(char *to, std::size_t room)
{
  stream_.next_out = reinterpret_cast<Bytef *>(to);
  stream_.avail_out = static_cast<uInt>(room);
  while (stream_.avail_out == room) {
    if (stream_.avail_in == 0) refill();
    if (stream_.avail_in == 0) {
      if (at_ == place::in_a_member) fail("ends in the middle of its compressed data; fetch it again");
      return 0;
    }
    if (at_ == place::after_a_member) {
      if (*stream_.next_in != gzip_magic[0]) fail("something else follows the compressed data; fetch it again");
      inflateReset(&stream_);
    }
    at_ = place::in_a_member;
    const int result = inflate(&stream_, Z_NO_FLUSH);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    if (result == Z_STREAM_END) {
      at_ = place::after_a_member;
    } else if (result != Z_OK && result != Z_BUF_ERROR) {
      fail(std::string("the compressed data is damaged: ") +
           (stream_.msg != nullptr ? stream_.msg : "no reason given"));
    }
  }
  return room - stream_.avail_out;
}

}  // namespace tarvex::route_load
