// Counts as a person says them: "1 entry", "2 entries".
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarvex::shell {

/// `many` where it is not `one` with an s.
inline std::string counted(std::uint64_t count, std::string_view one, std::string_view many = {})
{
  std::string text = std::to_string(count) + ' ';
  text += count == 1 || many.empty() ? one : many;
  if (count != 1 && many.empty()) text += 's';
  return text;
}

/// How far a command came: "2 of 5 changes made, 3 not".
inline std::string changes_text(std::uint64_t made, std::uint64_t total)
{
  return std::to_string(made) + " of " + counted(total, "change") + " made, " + std::to_string(total - made) + " not";
}

}  // namespace tarvex::shell
