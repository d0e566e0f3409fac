// Hash index of entries by key.
//
// SPDX-License-Identifier: Apache-2.0
#include "key_index.h"

#include <cstring>

namespace tarvex::standin {
namespace {

/// Folds both halves of the full product: every bit of the input reaches every bit of the result.
std::uint64_t mix(std::uint64_t a, std::uint64_t b)
{
  __extension__ using wide = unsigned __int128;
  const wide product = wide{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

}  // namespace

std::uint32_t hash_key(const std::uint8_t *bytes, std::size_t count, std::uint32_t partition)
{
  constexpr std::uint64_t odd = 0x9e3779b97f4a7c15;
  std::uint64_t hash = mix(partition ^ odd, count ^ 0xd1b54a32d192ed03);
  while (count != 0) {
    const std::size_t part = count < 8 ? count : 8;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, part);
    hash = mix(hash ^ word, odd);
    bytes += part;
    count -= part;
  }
  return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

void key_index::prepare()
{
  if ((size_ + 1) * 4 <= places_.size() * 3) return;
  std::vector<place> old(places_.empty() ? 8 : 2 * places_.size());
  old.swap(places_);
  size_ = 0;
  for (const place &each : old)
    if (each.slot != 0) put(each.hash, each.slot);
}

void key_index::put(std::uint32_t hash, std::uint32_t slot)
{
  std::size_t at = hash & mask();
  while (places_[at].slot != 0) at = (at + 1) & mask();
  places_[at] = {hash, slot};
  ++size_;
}

void key_index::remove(std::uint32_t hash, std::uint32_t slot)
{
  std::size_t hole = hash & mask();
  while (places_[hole].slot != slot) hole = (hole + 1) & mask();
  // Close the gap: a later place moves into it unless that would put it ahead of where its own hash begins.
  for (std::size_t at = (hole + 1) & mask(); places_[at].slot != 0; at = (at + 1) & mask()) {
    const std::size_t home = places_[at].hash & mask();
    if (((at - home) & mask()) < ((at - hole) & mask())) continue;
    places_[hole] = places_[at];
    hole = at;
  }
  places_[hole] = {};
  --size_;
}

}  // namespace tarvex::standin
