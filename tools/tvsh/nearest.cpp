// Names by their edit distance, letters of either case being the same.
//
// SPDX-License-Identifier: Apache-2.0
#include "nearest.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace tarvex::shell {

namespace {

std::string lower(std::string_view text)
{
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  });
  return result;
}

std::size_t edit_distance(std::string_view left, std::string_view right)
{
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::vector<std::string_view> nearest(std::string_view wanted, std::span<const std::string_view> names)
{
  constexpr std::size_t most = 3;
  const std::string typed = lower(wanted);
  const std::size_t farthest = std::max<std::size_t>(2, typed.size() / 3);
  std::vector<std::pair<std::size_t, std::string_view>> found;
  for (const std::string_view name : names) {
    const std::string other = lower(name);
    // Someone who types a part of a name is as near as someone who mistypes one letter.
    const bool part = typed.size() >= 3 && other.find(typed) != std::string::npos;
    const std::size_t distance = part ? 1 : edit_distance(typed, other);
    if (distance <= farthest) found.emplace_back(distance, name);
  }
  std::ranges::stable_sort(found, {}, [](const auto &pair) { return pair.first; });
  if (found.size() > most) found.resize(most);
  std::vector<std::string_view> result;
  for (const auto &[distance, name] : found) result.push_back(name);
  return result;
}

std::string no_such(std::string_view what, std::string_view wanted, std::span<const std::string_view> names)
{
  std::string text = "there is no " + std::string(what) + " '" + std::string(wanted) + '\'';
  const auto near = nearest(wanted, names);
  for (std::size_t i = 0; i < near.size(); ++i) {
    text += i == 0 ? "; did you mean " : i + 1 == near.size() ? " or " : ", ";
    text += near[i];
  }
  if (!near.empty()) return text + '?';
  constexpr std::size_t most_listed = 12;
  if (names.size() > most_listed) return text;
  for (const std::string_view &name : names) (text += &name == &names.front() ? "; there are " : ", ") += name;
  return text;
}

}  // namespace tarvex::shell
