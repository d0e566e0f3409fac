// The rows of the catalogue and the exported functions, found by name or by what they are for.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <vector>

#include "find_function.h"

namespace tarvex::shell {

using calls::action_info;
using calls::exported_function;
using calls::family_id;
using calls::find_function;
using calls::function_for;
using calls::functions_of;
using calls::hash_info;
using calls::profile_info;
using calls::resource_info;
using calls::resource_kind;
using calls::table_info;
using calls::takes;
using calls::use_info;

/// These throw usage_error, with the nearest names, where nothing has the name.
const table_info &table_named(std::string_view name);
const profile_info &profile_named(std::string_view name);
const resource_info &resource_named(std::string_view name, std::span<const resource_kind> kinds);
const hash_info &hash_named(std::string_view name);
/// An action among those of a table or profile; `owner` is its name.
const use_info &use_named(std::span<const use_info> uses, std::string_view name, std::string_view owner);

/// The pipeline's learning digest and its value set. Throw usage_error where it has none.
const calls::digest_info &the_digest();
const calls::value_set_info &the_value_set();
const table_info &table_of(std::uint32_t handle);

/// Names of all rows of a span, for completion and suggestions.
template <typename Rows>
std::vector<std::string_view> names_of(const Rows &rows)
{
  std::vector<std::string_view> names;
  names.reserve(std::size(rows));
  for (const auto &row : rows) names.emplace_back(row.name);
  return names;
}

/// Columns that the longest of some names takes.
inline std::size_t longest_name(std::span<const std::string_view> names)
{
  return names.empty() ? 0 : std::ranges::max(names, {}, &std::string_view::size).size();
}

std::vector<std::string_view> action_names(std::span<const use_info> uses);
std::vector<std::string_view> resource_names(std::span<const resource_kind> kinds);

}  // namespace tarvex::shell
