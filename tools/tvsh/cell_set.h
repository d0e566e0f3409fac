// A set of the cells of a counter, meter or register, or of handles, kept as ranges.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>

namespace tarvex::shell {

/// Cells from `first` to `last`, both included.
struct cell_range {
  std::uint32_t first = 0;
  std::uint32_t last = 0;
};

class cell_set {
 public:
  void add(cell_range cells)
  {
    auto next = ranges_.lower_bound(cells.first);
    if (next != ranges_.begin() && reaches(std::prev(next)->second, cells.first)) --next;
    while (next != ranges_.end() && reaches(cells.last, next->first)) {
      cells.first = std::min(cells.first, next->first);
      cells.last = std::max(cells.last, next->second);
      next = ranges_.erase(next);
    }
    ranges_[cells.first] = cells.last;
  }

  bool holds(std::uint32_t cell) const
  {
    const auto next = ranges_.upper_bound(cell);
    return next != ranges_.begin() && std::prev(next)->second >= cell;
  }

  /// The last cell of each range by its first; ranges neither meet nor overlap.
  const std::map<std::uint32_t, std::uint32_t> &ranges() const { return ranges_; }

 private:
  /// Whether a range that ends at `last` and one that begins at `first`, not ahead of its beginning, are one.
  static bool reaches(std::uint32_t last, std::uint32_t first) { return last >= first || last + 1 == first; }

  std::map<std::uint32_t, std::uint32_t> ranges_;
};

}  // namespace tarvex::shell
