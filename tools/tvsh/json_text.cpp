// SPDX-License-Identifier: Apache-2.0
#include "json_text.h"

#include "value_text.h"

namespace tarvex::shell {

namespace {

/// Bytes of the UTF-8 character that the text begins with; 0 where it is none.
std::size_t utf8_size(std::string_view text)
{
  const auto byte = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t size = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4) return 0;
  for (std::size_t at = 1; at < size; ++at) {
    if ((byte(at) & 0xc0) != 0x80) return 0;
  }
  // Longer than it has to be, a surrogate, or beyond the last character.
  if (first == 0xe0 && byte(1) < 0xa0) return 0;
  if (first == 0xed && byte(1) > 0x9f) return 0;
  if (first == 0xf0 && byte(1) < 0x90) return 0;
  if (first == 0xf4 && byte(1) > 0x8f) return 0;
  return size;
}

}  // namespace

void append_json_text(std::string &to, std::string_view text)
{
  to += '"';
  for (std::size_t at = 0; at < text.size();) {
    const char letter = text[at];
    if (static_cast<unsigned char>(letter) >= 0x80) {
      const std::size_t size = utf8_size(text.substr(at));
      to += size == 0 ? std::string_view("\xef\xbf\xbd") : text.substr(at, size);
      at += size == 0 ? 1 : size;
      continue;
    }
    ++at;
    if (letter == '"' || letter == '\\') {
      to += '\\';
      to += letter;
    } else if (static_cast<unsigned char>(letter) < 0x20) {
      constexpr std::string_view digits = "0123456789abcdef";
      to += "\\u00";
      to += digits[static_cast<unsigned char>(letter) >> 4];
      to += digits[static_cast<unsigned char>(letter) & 15];
    } else {
      to += letter;
    }
  }
  to += '"';
}

void json_objects::open()
{
  to_ += '{';
  first_ = true;
}

void json_objects::open(std::string_view called)
{
  name(called);
  open();
}

void json_objects::close()
{
  to_ += '}';
  first_ = false;
}

void json_objects::name(std::string_view text)
{
  if (!first_) to_ += ',';
  first_ = false;
  append_json_text(to_, text);
  to_ += ':';
}

void json_objects::number(std::string_view called, std::uint64_t value)
{
  name(called);
  append_decimal(to_, value);
}

void json_objects::text(std::string_view called, std::string_view value)
{
  name(called);
  append_json_text(to_, value);
}

void json_objects::plain(std::string_view called, std::string_view value)
{
  name(called);
  to_ += value;
}

}  // namespace tarvex::shell
