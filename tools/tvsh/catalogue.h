// The rows of the catalogue and the exported functions, found by name or by what they are for.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <vector>

#include "call_table.h"

namespace tarvex::shell {

using calls::action_info;
using calls::exported_function;
using calls::family_id;
using calls::hash_info;
using calls::profile_info;
using calls::resource_info;
using calls::resource_kind;
using calls::table_info;
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

/// "exact", "ternary", "lpm" or "keyless".
std::string_view kind_name(calls::table_kind kind);
/// "counter", "meter", "wred" or "register".
std::string_view kind_name(resource_kind kind);

/// All functions of a family.
std::span<const exported_function *const> functions_of(family_id family);

/// The function of a family that a predicate holds for; null where there is none.
template <typename Predicate>
const exported_function *find_function(family_id family, Predicate predicate)
{
  for (const exported_function *function : functions_of(family)) {
    if (predicate(*function)) return function;
  }
  return nullptr;
}

bool takes(const exported_function &function, calls::argument_kind kind);

/// The function of a family for a row. Each exists wherever the shell asks for it: throws logic_error where it does
/// not.
/// Of a family with one function at most.
const exported_function &function_for(family_id family);
const exported_function &function_for(family_id family, const table_info &table);
const exported_function &function_for(family_id family, const resource_info &resource);
const exported_function &function_for(family_id family, const hash_info &hash);
/// `kind`: one of its arguments, where a family has functions for members and functions for groups.
const exported_function &function_for(family_id family, const table_info &table, calls::argument_kind kind);
const exported_function &function_for(family_id family, const profile_info &profile, calls::argument_kind kind);
/// For an action of a table or of a profile; null where the table has none for it (an action that is no default).
const exported_function *function_for(family_id family, const use_info &use);

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
