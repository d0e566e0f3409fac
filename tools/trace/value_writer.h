// Writes values one behind the other, as text for a person or as JSON. In text the outermost are further apart.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarvex::trace {

class value_writer {
 public:
  value_writer(std::string &to, bool json) : to_(to), json_(json) {}

  bool json() const { return json_; }

  /// Begins a member of an object; a value, an object or a list follows.
  value_writer &member(std::string_view name);
  /// Begins an element of a list.
  value_writer &element();
  value_writer &open(char bracket = '{');
  value_writer &close(char bracket = '}');

  value_writer &number(std::uint64_t value);
  value_writer &signed_number(std::int64_t value);
  value_writer &real(float value);
  /// Text "0x1f"; a number in JSON.
  value_writer &hexadecimal(std::uint64_t value);
  value_writer &bytes(std::span<const std::uint8_t> value);
  /// A name: bare in text, quoted in JSON.
  value_writer &name(std::string_view value);
  /// Text of the program's: quoted in both.
  value_writer &quoted(std::string_view value);

 private:
  void separate();

  std::string &to_;
  bool json_;
  bool first_ = true;
  unsigned depth_ = 0;
};

}  // namespace tarvex::trace
