// Tables by handle, made at the first question.
//
// SPDX-License-Identifier: Apache-2.0
#include "catalogue_names.h"

#include <array>
#include <atomic>
#include <unordered_map>

namespace tarvex::trace {

namespace {

constexpr std::size_t most_profiles = 8;

class meanings {
 public:
  meanings()
  {
    for (const rows::table_info &table : rows::tables) {
      by_handle_[table.handle] = {table.name, &table, table.profile, nullptr, nullptr};
      add(table.actions, &table, nullptr);
    }
    for (const rows::profile_info &profile : rows::profiles) {
      for (const std::uint32_t handle : {profile.action_data_table, profile.selector_table}) {
        if (handle != 0) by_handle_[handle] = {profile.name, nullptr, &profile, nullptr, nullptr};
      }
      add(profile.actions, nullptr, &profile);
    }
    for (const rows::resource_info &resource : rows::resources) {
      by_handle_[resource.handle] = {resource.name, nullptr, nullptr, nullptr, &resource};
    }
    for (const rows::hash_info &hash : rows::hashes) by_handle_[hash.handle] = {hash.name};
    for (const rows::table_info &table : rows::tables) table_fields_.push_back(shell::key_fields(table));
    for (const rows::action_info &action : rows::actions) action_fields_.push_back(shell::parameter_fields(action));
  }

  const handle_meaning *find(std::uint32_t handle) const
  {
    const auto found = by_handle_.find(handle);
    return found == by_handle_.end() ? nullptr : &found->second;
  }
  const auto &fields(const rows::table_info &table) const
  {
    return table_fields_[static_cast<std::size_t>(&table - rows::tables.data())];
  }
  const auto &fields(const rows::action_info &action) const
  {
    return action_fields_[static_cast<std::size_t>(&action - rows::actions.data())];
  }

 private:
  void add(std::span<const rows::use_info> uses, const rows::table_info *table, const rows::profile_info *profile)
  {
    for (const rows::use_info &use : uses) {
      by_handle_[use.handle] = {use.action->name, table, profile, use.action, nullptr};
    }
  }

  std::unordered_map<std::uint32_t, handle_meaning> by_handle_;
  std::vector<std::vector<shell::shown_field>> table_fields_;
  std::vector<std::vector<shell::shown_field>> action_fields_;
};

const meanings &all_meanings()
{
  static const meanings all;
  return all;
}

constinit std::array<std::atomic<ms_state *>, most_profiles> states{};
constinit std::atomic<std::size_t> states_made = 0;

}  // namespace

const handle_meaning *meaning_of(std::uint32_t handle) { return all_meanings().find(handle); }

std::span<const shell::shown_field> fields_of(const rows::table_info &table) { return all_meanings().fields(table); }
std::span<const shell::shown_field> fields_of(const rows::action_info &action) { return all_meanings().fields(action); }

void remember_state(ms_state *state) { states[states_made++ % rows::profiles.size()] = state; }

ms_state *state_of(std::size_t profile) { return profile < states.size() ? states[profile].load() : nullptr; }

const rows::profile_info *profile_of(const void *state)
{
  for (std::size_t i = 0; state != nullptr && i < rows::profiles.size(); ++i) {
    if (states[i] == state) return &rows::profiles[i];
  }
  return nullptr;
}

}  // namespace tarvex::trace
