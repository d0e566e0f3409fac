// SPDX-License-Identifier: Apache-2.0
#include "typed_line.h"

#include <cstdint>
#include <cstdio>

namespace tarvex::shell {

namespace {

constexpr std::uint32_t replacement = 0xfffd;  // stands for what was no character

struct character {
  std::uint32_t code = 0;
  std::size_t bytes = 1;
  bool valid = true;
};

/// The UTF-8 character at the beginning of a text; a byte that begins none stands alone.
character first_of(std::string_view text)
{
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  if (byte(0) < 0x80) return {byte(0)};
  const std::size_t length = byte(0) >= 0xf0 ? 4 : byte(0) >= 0xe0 ? 3 : 2;
  if (byte(0) < 0xc2 || byte(0) > 0xf4 || text.size() < length) return {byte(0), 1, false};
  std::uint32_t code = byte(0) & (0x7fu >> length);
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xc0) != 0x80) return {byte(0), 1, false};
    code = code << 6 | (byte(at) & 0x3f);
  }
  return {code, length, code != replacement};
}

bool plain(const character &what) { return (what.code >= ' ' && what.code < 0x7f) || what.code == '\t'; }

/// A character that is not plain, by its number.
std::string spelled(const character &what)
{
  if (!what.valid && what.code == replacement) return "<?>";
  char text[16];
  std::snprintf(text, sizeof text, what.valid ? "<U+%04X>" : "<0x%02X>", static_cast<unsigned>(what.code));
  return text;
}

}  // namespace

std::string character_fault(std::string_view line)
{
  std::string shown;
  std::string pointer;
  char quote = 0;
  bool comment = false;
  char before = ' ';
  while (!line.empty()) {
    const character next = first_of(line);
    line.remove_prefix(next.bytes);
    const char letter = next.code < 0x80 && next.valid ? static_cast<char>(next.code) : 'x';
    const bool meant = next.valid && next.code >= 0x80 && (quote != 0 || comment);
    if (pointer.empty() && !plain(next) && !meant) pointer = std::string(shown.size(), ' ') + '^';
    shown += plain(next) ? std::string(1, letter) : spelled(next);
    if (quote != 0) {
      if (letter == quote) quote = 0;
    } else if (letter == '"' || letter == '\'') {
      quote = letter;
    } else if (letter == '#' && (before == ' ' || before == '\t')) {
      comment = true;
    }
    before = letter;
  }
  if (pointer.empty()) return {};
  return "the line was not run: it holds a character that is not ASCII\n  " + shown + "\n  " + pointer;
}

}  // namespace tarvex::shell
