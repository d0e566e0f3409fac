// A file that is written whole or not at all: under another name beside it, then renamed.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace tarvex::shell {

/// A file that is there keeps its mode and owner, and a symbolic link goes on pointing at it; a new one is the user's
/// alone, as the state of a switch is nobody else's business.
class replaced_file {
 public:
  /// Throws file_error, as the others do.
  explicit replaced_file(const std::string &name);
  replaced_file(const replaced_file &) = delete;
  replaced_file &operator=(const replaced_file &) = delete;
  /// Drops what was written where it was not kept.
  ~replaced_file();

  void write(std::string_view text);
  /// Puts the file in its place, for good: what is told as kept outlives a loss of power.
  void keep();

 private:
  [[noreturn]] void fail(const char *what) const;
  void drop();
  void flush();

  std::string name_;    // as the user wrote it
  std::string target_;  // behind symbolic links
  std::string temporary_;
  std::string waiting_;
  int descriptor_ = -1;
};

}  // namespace tarvex::shell
