// JSON as it is written: text between quotes, and objects whose values come one after the other.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarvex::shell {

/// The text between quotes. Bytes that are no UTF-8, which a user may type, become U+FFFD.
void append_json_text(std::string &to, std::string_view text);

/// Writes objects to the end of a text.
class json_objects {
 public:
  explicit json_objects(std::string &to) : to_(to) {}

  void open();
  void open(std::string_view name);
  /// Goes on with an object whose last value is complete.
  void reopen() { first_ = false; }
  void close();
  void boolean(std::string_view name, bool value) { plain(name, value ? "true" : "false"); }
  void number(std::string_view name, std::uint64_t value);
  void text(std::string_view name, std::string_view value);
  /// A value that is JSON already.
  void plain(std::string_view name, std::string_view value);

 private:
  void name(std::string_view text);

  std::string &to_;
  bool first_ = true;
};

}  // namespace tarvex::shell
