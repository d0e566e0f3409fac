// Where the prompt keeps what was typed, for the sessions to come.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace tarvex::shell {

/// tvsh/history in the user's state folder, in the form that the line editor loads; the user's alone. Several shells
/// may append to one file. What goes wrong with it is no error: the prompt works without.
class history_file {
 public:
  static constexpr std::size_t most_lines = 1000;        // that a file is cut to
  static constexpr std::size_t most_bytes = 256 * 1024;  // above which it is cut

  history_file();

  /// Empty where there can be none.
  const std::string &path() const { return path_; }
  /// Written before it returns, so that nothing typed is lost with the terminal. A line typed twice is kept once.
  void append(std::string_view line);

 private:
  std::string path_;
  std::string last_;
};

}  // namespace tarvex::shell
