// SPDX-License-Identifier: Apache-2.0
#include "update_feed.h"

#include <algorithm>
#include <iterator>

#include "shell_error.h"
#include "stand_in.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

const exported_function &registration_of(std::uint32_t source)
{
  for (const profile_info &profile : calls::profiles) {
    if (source != profile.action_data_table && source != profile.selector_table) continue;
    const std::string_view ending =
        source == profile.selector_table ? "_register_sel_update_cb" : "_register_adt_update_cb";
    const exported_function *const found =
        find_function(family_id::register_profile_update_cb, [&](const exported_function &each) {
          return each.profile == &profile && std::string_view(each.name).ends_with(ending);
        });
    if (found != nullptr) return *found;
  }
  return function_for(family_id::register_mat_update_cb, table_of(source));
}

}  // namespace

update_sources sources_of(const table_info &table) { return {table.handle}; }
update_sources sources_of(const profile_info &profile) { return {profile.action_data_table, profile.selector_table}; }

update_sources all_sources()
{
  update_sources all;
  for (const table_info &table : calls::tables) all.push_back(table.handle);
  for (const profile_info &profile : calls::profiles) std::ranges::copy(sources_of(profile), std::back_inserter(all));
  return all;
}

update_feed::~update_feed()
{
  for (const auto &[source, receivers] : receivers_) {
    try {
      set_callback(source, false);
    } catch (const shell_error &) {
      // The device may be gone, and the callback with it.
    }
  }
}

void update_feed::set_callback(std::uint32_t source, bool on) const
{
  const exported_function &function = registration_of(source);
  const bool groups = function.profile != nullptr && source == function.profile->selector_table;
  const void *const entry = reinterpret_cast<const void *>(&entry_changed);
  const void *const group = reinterpret_cast<const void *>(&group_changed);
  function_call(function, where_)
      .give(callback, on ? (groups ? group : entry) : nullptr)
      .give(cookie, static_cast<const void *>(this))
      .must(on ? "asking for updates" : "taking the update callback off");
}

void update_feed::begin(const target &where, const update_sources &sources, update_receiver &receiver)
{
  require_stand_in();  // another driver's callbacks have a form of their own
  const std::lock_guard switching(switching_);
  where_ = where;
  try {
    for (const std::uint32_t source : sources) {
      bool first = false;
      {
        const std::lock_guard lock(mutex_);
        std::vector<update_receiver *> &all = receivers_[source];
        first = all.empty();
        if (std::ranges::count(all, &receiver) == 0) all.push_back(&receiver);
      }
      if (first) set_callback(source, true);
    }
  } catch (...) {
    {
      const std::lock_guard lock(mutex_);
      for (auto &[source, all] : receivers_) std::erase(all, &receiver);
    }
    drop_unused();
    throw;
  }
}

void update_feed::end(update_receiver &receiver)
{
  const std::lock_guard switching(switching_);
  {
    const std::lock_guard lock(mutex_);
    for (auto &[source, all] : receivers_) std::erase(all, &receiver);
  }
  drop_unused();
}

void update_feed::forget()
{
  const std::lock_guard lock(mutex_);
  receivers_.clear();
}

void update_feed::drop_unused()
{
  std::vector<std::uint32_t> unused;
  {
    const std::lock_guard lock(mutex_);
    std::erase_if(receivers_, [&](const auto &each) {
      if (each.second.empty()) unused.push_back(each.first);
      return each.second.empty();
    });
  }
  for (const std::uint32_t source : unused) {
    try {
      set_callback(source, false);
    } catch (const shell_error &) {
      // The device may be gone, and the callback with it.
    }
  }
}

void update_feed::tell(const switch_update &update)
{
  const std::lock_guard lock(mutex_);
  const auto found = receivers_.find(update.source);
  if (found == receivers_.end()) return;
  for (update_receiver *const each : found->second) each->take(update);
}

void update_feed::entry_changed(std::uint32_t, std::uint32_t source, std::uint32_t handle, std::uint32_t event,
                                const void *placement, void *self)
{
  switch_update update{std::chrono::system_clock::now(), source, event, handle, 0, {}};
  const auto *const bytes = static_cast<const std::byte *>(placement);
  update.placement.assign(bytes, bytes + require_stand_in().placement_size(placement));
  static_cast<update_feed *>(self)->tell(update);
}

void update_feed::group_changed(std::uint32_t, std::uint32_t source, std::uint32_t group, std::uint32_t member,
                                std::uint32_t event, void *self)
{
  static_cast<update_feed *>(self)->tell({std::chrono::system_clock::now(), source, event, group, member, {}});
}

}  // namespace tarvex::shell
