// A Unix socket that only its owner and root can open.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <string>

#include "descriptor.h"

namespace tarvex::shell {

/// Listens while it lives, and takes its path away behind it.
class listening_socket {
 public:
  /// Replaces a socket that nobody listens at any more. Throws file_error where another one listens, where the path is
  /// something else, or where it cannot be made.
  explicit listening_socket(const std::string &path);
  listening_socket(const listening_socket &) = delete;
  listening_socket &operator=(const listening_socket &) = delete;
  ~listening_socket();

  int get() const { return socket_.get(); }
  const std::string &path() const { return path_; }

 private:
  std::string path_;
  descriptor socket_;
  dev_t device_ = 0;
  ino_t inode_ = 0;
};

}  // namespace tarvex::shell
