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
    if (source == profile.action_data_table) return function_for(family_id::register_adt_update_cb, profile);
    if (source == profile.selector_table) return function_for(family_id::register_sel_update_cb, profile);
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
  for (const auto &[source, receivers] : receivers_) give_back(source);
}

borrowed_callback &update_feed::callback_of(std::uint32_t source)
{
  const bool groups = std::ranges::count(calls::profiles, source, &profile_info::selector_table) != 0;
  const std::lock_guard lock(mutex_);
  return callbacks_
      .try_emplace(
          source, source,
          groups ? reinterpret_cast<pd_callback_t>(&group_changed) : reinterpret_cast<pd_callback_t>(&entry_changed),
          this)
      .first->second;
}

void update_feed::set_callback(std::uint32_t source, const registered_callback &what, const char *doing) const
{
  function_call(registration_of(source), where_)
      .give(callback, reinterpret_cast<const void *>(what.function))
      .give(cookie, static_cast<const void *>(what.cookie))
      .must(doing);
}

void update_feed::give_back(std::uint32_t source)
{
  try {
    callback_of(source).give_back(where_.device, [&](const registered_callback &earlier) {
      set_callback(source, earlier, "giving the update callback back");
    });
  } catch (const shell_error &) {
    // The device may be gone, and the callbacks with it.
  }
}

void update_feed::begin(const target &where, const update_sources &sources, update_receiver &receiver)
{
  require_stand_in();  // another driver's callbacks have a form of their own
  const std::lock_guard switching(switching_);
  where_ = where;
  try {
    for (const std::uint32_t source : sources) {
      {
        const std::lock_guard lock(mutex_);
        std::vector<update_receiver *> &all = receivers_[source];
        if (std::ranges::count(all, &receiver) == 0) all.push_back(&receiver);
      }
      callback_of(source).take_place(
          where_.device, [&](const registered_callback &own) { set_callback(source, own, "asking for updates"); });
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
  for (const std::uint32_t source : unused) give_back(source);
}

std::size_t update_feed::displaced()
{
  const std::lock_guard switching(switching_);
  std::vector<std::uint32_t> sources;
  {
    const std::lock_guard lock(mutex_);
    for (const auto &[source, receivers] : receivers_) sources.push_back(source);
  }
  return static_cast<std::size_t>(std::ranges::count_if(
      sources, [&](std::uint32_t source) { return !callback_of(source).in_place(where_.device); }));
}

registered_callback update_feed::tell(const switch_update &update)
{
  const std::lock_guard lock(mutex_);
  const auto found = receivers_.find(update.source);
  if (found != receivers_.end()) {
    for (update_receiver *const each : found->second) each->take(update);
  }
  const auto callback = callbacks_.find(update.source);
  return callback != callbacks_.end() ? callback->second.earlier() : registered_callback{};
}

void update_feed::entry_changed(std::uint32_t dev_id, std::uint32_t source, std::uint32_t handle, std::uint32_t event,
                                const void *placement, void *self)
{
  switch_update update{std::chrono::system_clock::now(), source, event, handle, 0, {}};
  const auto *const bytes = static_cast<const std::byte *>(placement);
  update.placement.assign(bytes, bytes + require_stand_in().placement_size(placement));
  const registered_callback earlier = static_cast<update_feed *>(self)->tell(update);
  if (earlier.function == nullptr) return;
  reinterpret_cast<standin_update_cb_t>(earlier.function)(dev_id, source, handle, event, placement, earlier.cookie);
}

void update_feed::group_changed(std::uint32_t dev_id, std::uint32_t source, std::uint32_t group, std::uint32_t member,
                                std::uint32_t event, void *self)
{
  const registered_callback earlier =
      static_cast<update_feed *>(self)->tell({std::chrono::system_clock::now(), source, event, group, member, {}});
  if (earlier.function == nullptr) return;
  reinterpret_cast<standin_selector_cb_t>(earlier.function)(dev_id, source, group, member, event, earlier.cookie);
}

}  // namespace tarvex::shell
