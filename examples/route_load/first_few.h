// Things to tell a user of which there may be very many: all are counted, the first few are kept.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tarvex::route_load {

template <typename T>
class first_few {
 public:
  static constexpr std::size_t most_kept = 20;

  void add(T thing)
  {
    ++count_;
    if (kept_.size() < most_kept) kept_.push_back(std::move(thing));
  }

  std::uint64_t count() const { return count_; }
  const std::vector<T> &kept() const { return kept_; }

 private:
  std::uint64_t count_ = 0;
  std::vector<T> kept_;
};

}  // namespace tarvex::route_load
