// A value that several threads use, reached only with its lock held.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>

namespace tarvex::shell {

/// Holds the lock while it lives. No driver is called meanwhile.
template <typename Value>
class locked {
 public:
  locked(std::mutex &mutex, Value &value) : lock_(mutex), value_(value) {}

  Value *operator->() const { return &value_; }
  Value &operator*() const { return value_; }

 private:
  std::unique_lock<std::mutex> lock_;
  Value &value_;
};

template <typename Value>
class guarded {
 public:
  locked<Value> lock() { return {mutex_, value_}; }

 private:
  std::mutex mutex_;
  Value value_;
};

}  // namespace tarvex::shell
