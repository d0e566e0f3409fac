// SPDX-License-Identifier: Apache-2.0
#include "catalogue.h"

#include <algorithm>
#include <string>

#include "nearest.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

template <typename Rows>
const auto &row_named(const Rows &rows, std::string_view name, std::string_view what)
{
  for (const auto &row : rows) {
    if (row.name == name) return row;
  }
  throw usage_error(no_such(what, name, names_of(rows)));
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
  throw usage_error(no_such(word_of(kinds[0]), name, resource_names(kinds)));
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
