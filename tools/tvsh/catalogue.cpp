// Rows by name; functions sorted by family at first use.
//
// SPDX-License-Identifier: Apache-2.0
#include "catalogue.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "nearest.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t family_count = static_cast<std::size_t>(family_id::snapshot) + 1;
using family_lists = std::array<std::vector<const exported_function *>, family_count>;

template <typename Rows>
const auto &row_named(const Rows &rows, std::string_view name, std::string_view what)
{
  for (const auto &row : rows) {
    if (row.name == name) return row;
  }
  throw usage_error(no_such(what, name, names_of(rows)));
}

template <typename Predicate>
const exported_function &require_function(family_id family, Predicate predicate)
{
  const exported_function *const found = find_function(family, predicate);
  if (found == nullptr) throw std::logic_error("the call table lacks a function of a family for a row");
  return *found;
}

}  // namespace

const table_info &table_named(std::string_view name) { return row_named(calls::tables, name, "table"); }
const profile_info &profile_named(std::string_view name) { return row_named(calls::profiles, name, "profile"); }
const hash_info &hash_named(std::string_view name) { return row_named(calls::hashes, name, "hash calculation"); }

const resource_info &resource_named(std::string_view name, std::span<const resource_kind> kinds)
{
  for (const resource_info &resource : calls::resources) {
    if (resource.name == name && std::ranges::count(kinds, resource.kind) != 0) return resource;
  }
  throw usage_error(no_such(kind_name(kinds[0]), name, resource_names(kinds)));
}

const use_info &use_named(std::span<const use_info> uses, std::string_view name, std::string_view owner)
{
  for (const use_info &use : uses) {
    if (use.action->name == name) return use;
  }
  throw usage_error(std::string(owner) + ": " + no_such("action", name, action_names(uses)));
}

const calls::digest_info &the_digest()
{
  if (calls::digests.empty()) throw usage_error("the pipeline has no learning digest");
  return calls::digests.front();
}

const calls::value_set_info &the_value_set()
{
  if (calls::value_sets.empty()) throw usage_error("the pipeline has no parser value set");
  return calls::value_sets.front();
}

const table_info &table_of(std::uint32_t handle)
{
  return *std::ranges::find(calls::tables, handle, &table_info::handle);
}

std::string_view kind_name(calls::table_kind kind)
{
  static constexpr std::array<std::string_view, 4> names = {"keyless", "exact", "ternary", "lpm"};
  return names[static_cast<std::size_t>(kind)];
}

std::string_view kind_name(resource_kind kind)
{
  static constexpr std::array<std::string_view, 4> names = {"counter", "meter", "wred", "register"};
  return names[static_cast<std::size_t>(kind)];
}

std::span<const exported_function *const> functions_of(family_id family)
{
  static const family_lists lists = [] {
    family_lists made;
    for (const exported_function &function : calls::functions) {
      made[static_cast<std::size_t>(function.family)].push_back(&function);
    }
    return made;
  }();
  return lists[static_cast<std::size_t>(family)];
}

bool takes(const exported_function &function, calls::argument_kind kind)
{
  return std::ranges::count(function.arguments, kind) != 0;
}

const exported_function &function_for(family_id family, const table_info &table)
{
  return require_function(family, [&](const auto &function) { return function.table == &table; });
}

const exported_function &function_for(family_id family)
{
  return require_function(family, [](const auto &) { return true; });
}

const exported_function &function_for(family_id family, const resource_info &resource)
{
  return require_function(family, [&](const auto &function) { return function.resource == &resource; });
}

const exported_function &function_for(family_id family, const hash_info &hash)
{
  return require_function(family, [&](const auto &function) { return function.hash == &hash; });
}

const exported_function &function_for(family_id family, const table_info &table, calls::argument_kind kind)
{
  return require_function(family,
                          [&](const auto &function) { return function.table == &table && takes(function, kind); });
}

const exported_function &function_for(family_id family, const profile_info &profile, calls::argument_kind kind)
{
  return require_function(family,
                          [&](const auto &function) { return function.profile == &profile && takes(function, kind); });
}

const exported_function *function_for(family_id family, const use_info &use)
{
  return find_function(family, [&](const auto &function) { return function.use == &use; });
}

std::vector<std::string_view> action_names(std::span<const use_info> uses)
{
  std::vector<std::string_view> names;
  for (const use_info &use : uses) names.emplace_back(use.action->name);
  return names;
}

std::vector<std::string_view> resource_names(std::span<const resource_kind> kinds)
{
  std::vector<std::string_view> names;
  for (const resource_info &resource : calls::resources) {
    if (std::ranges::count(kinds, resource.kind) != 0) names.emplace_back(resource.name);
  }
  return names;
}

}  // namespace tarvex::shell
