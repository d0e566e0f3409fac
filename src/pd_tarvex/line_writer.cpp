// SPDX-License-Identifier: Apache-2.0
#include "line_writer.h"

#include <cerrno>
#include <cstring>

#include <unistd.h>

#include "text_writer.h"

namespace tarvex::pd {

namespace {

/// Columns of a printf width: a negative one asks for the same, to the left.
std::uint32_t columns(std::int32_t indent)
{
  return indent < 0 ? 0u - static_cast<std::uint32_t>(indent) : static_cast<std::uint32_t>(indent);
}

}  // namespace

line_writer &line_writer::text(std::string_view piece)
{
  while (!piece.empty()) {
    if (used_ == block_size) send();
    const std::size_t room = block_size - used_;
    const std::size_t part = piece.size() < room ? piece.size() : room;
    std::memcpy(block_ + used_, piece.data(), part);
    used_ += static_cast<std::uint32_t>(part);
    piece.remove_prefix(part);
  }
  return *this;
}

line_writer &line_writer::hex(std::uint32_t value, unsigned digits)
{
  char made[8];
  text_writer(made).hex(value, digits);
  return text({made, digits});
}

line_writer &line_writer::capital_bytes(const std::uint8_t *bytes, unsigned count)
{
  for (unsigned i = 0; i < count; ++i) {
    char made[2];
    text_writer(made).capital_bytes(bytes + i, 1);
    text({made, 2});
  }
  return *this;
}

/// A line whose length no result could tell is not begun, as formatted output does not.
void line_writer::blanks(std::uint32_t count)
{
  constexpr std::uint32_t most_blanks = 0x7fff'ffff - block_size;
  if (count > most_blanks) failed_ = true;
  if (failed_) return;
  while (count > 0) {
    if (used_ == block_size) send();
    const std::uint32_t room = block_size - used_;
    const std::uint32_t part = count < room ? count : room;
    std::memset(block_ + used_, ' ', part);
    used_ += part;
    count -= part;
  }
}

line_writer &line_writer::indent(std::int32_t indent)
{
  blanks(columns(indent));
  return *this;
}

line_writer &line_writer::blank_column(std::int32_t indent)
{
  const std::uint32_t width = columns(indent);
  blanks(width > 0 ? width : 1);
  return *this;
}

void line_writer::send()
{
  std::uint32_t done = 0;
  while (!failed_ && done < used_) {
    const ssize_t written = ::write(fd_, block_ + done, used_ - done);
    if (written > 0)
      done += static_cast<std::uint32_t>(written);
    else if (written == 0 || errno != EINTR)
      failed_ = true;
  }
  sent_ += done;
  used_ = 0;
}

std::int32_t line_writer::end()
{
  text("\n");
  send();
  return failed_ ? -1 : static_cast<std::int32_t>(sent_);
}

}  // namespace tarvex::pd
