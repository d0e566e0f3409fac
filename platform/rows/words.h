// Kinds with their words: the names that rows, messages and tools give them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tarvex {

/// The words of a kind, in the order of its enumerators.
template <typename Kind>
inline constexpr std::array<std::string_view, 0> words;

template <typename Kind>
constexpr std::string_view word_of(Kind kind)
{
  return words<Kind>[static_cast<std::size_t>(kind)];
}

/// Nothing for a word that no kind has.
template <typename Kind>
constexpr std::optional<Kind> kind_of_word(std::string_view word)
{
  const auto found = std::ranges::find(words<Kind>, word);
  if (found == words<Kind>.end()) return std::nullopt;
  return static_cast<Kind>(found - words<Kind>.begin());
}

}  // namespace tarvex
