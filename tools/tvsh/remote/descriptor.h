// A file descriptor that is closed with its owner.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

#include <utility>

namespace tarvex::shell {

class descriptor {
 public:
  explicit descriptor(int number = -1) noexcept : number_(number) {}
  descriptor(descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
  descriptor &operator=(descriptor &&other) noexcept
  {
    std::swap(number_, other.number_);
    return *this;
  }
  ~descriptor()
  {
    if (number_ >= 0) close(number_);
  }

  int get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

 private:
  int number_;
};

}  // namespace tarvex::shell
