// A file that is written whole or not at all: under another name beside it, then renamed.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace tarvex::shell {

class replaced_file {
 public:
  /// Throws file_error, as the others do.
  explicit replaced_file(const std::string &name);
  replaced_file(const replaced_file &) = delete;
  replaced_file &operator=(const replaced_file &) = delete;
  /// Drops what was written where it was not kept.
  ~replaced_file();

  void write(std::string_view text);
  /// Puts the file in its place.
  void keep();

 private:
  [[noreturn]] void fail(const char *what) const;
  void flush();

  std::string name_;
  std::string temporary_;
  std::string waiting_;
  int descriptor_ = -1;
};

}  // namespace tarvex::shell
