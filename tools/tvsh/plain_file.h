// A plain file, open for reading. Pipes and devices are refused: whoever reads one waits for its writer, with no way to
// be interrupted.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace tarvex::shell {

class plain_file {
 public:
  /// Throws file_error, as the other does.
  explicit plain_file(const std::string &name);
  plain_file(const plain_file &) = delete;
  plain_file &operator=(const plain_file &) = delete;
  ~plain_file();

  std::uint64_t size() const { return size_; }
  /// The count of bytes that were read; 0 at the end.
  std::size_t read(char *to, std::size_t most);

 private:
  std::string name_;
  int descriptor_;
  std::uint64_t size_ = 0;
};

}  // namespace tarvex::shell
