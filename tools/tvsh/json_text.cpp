// SPDX-License-Identifier: Apache-2.0
#include "json_text.h"

#include "value_text.h"

namespace tarvex::shell {

void append_json_text(std::string &to, std::string_view text)
{
  to += '"';
  for (const char letter : text) {
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
