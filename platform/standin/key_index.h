// Hash index of entries by key: open addressing with linear probing over pairs of hash and slot number. The keys stay
// with the entries, so the index costs 8 bytes a place; growing it reads no key.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvex::standin {

/// Hash of a masked key and its partition.
std::uint32_t hash_key(const std::uint8_t *bytes, std::size_t count, std::uint32_t partition);

class key_index {
 public:
  /// The first slot that was put under the hash and that `same` accepts, or 0.
  template <class Same>
  std::uint32_t find(std::uint32_t hash, Same same) const
  {
    if (places_.empty()) return 0;
    for (std::size_t at = hash & mask(); places_[at].slot != 0; at = (at + 1) & mask())
      if (places_[at].hash == hash && same(places_[at].slot)) return places_[at].slot;
    return 0;
  }

  /// Makes room for one more; after it `put` cannot fail.
  void prepare();
  /// Slot numbers are not 0.
  void put(std::uint32_t hash, std::uint32_t slot);
  void remove(std::uint32_t hash, std::uint32_t slot);

  std::size_t size() const { return size_; }

 private:
  struct place {
    std::uint32_t hash;
    std::uint32_t slot;  // 0: free
  };

  std::size_t mask() const { return places_.size() - 1; }

  std::vector<place> places_;
  std::size_t size_ = 0;
};

}  // namespace tarvex::standin
