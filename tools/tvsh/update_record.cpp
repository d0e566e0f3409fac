// SPDX-License-Identifier: Apache-2.0
#include "update_record.h"

#include "group_reader.h"
#include "handle_walk.h"
#include "stand_in.h"

namespace tarvex::shell {

namespace {

std::unordered_set<std::uint32_t> all_of(handle_walk walk)
{
  std::unordered_set<std::uint32_t> handles;
  while (const auto handle = walk.next()) handles.insert(*handle);
  return handles;
}

}  // namespace

void update_record::begin(const target &where, update_feed &feed)
{
  const std::lock_guard switching(switching_);
  {
    const std::lock_guard lock(mutex_);
    if (on_) return;
    state_ = {};
    state_.since = std::chrono::system_clock::now();
  }
  feed.begin(where, all_sources(), *this);
  try {
    // What is told meanwhile goes ahead of what is found here.
    std::map<std::uint32_t, std::unordered_set<std::uint32_t>> there;
    for (const table_info &table : calls::tables) {
      if (!table.fields.empty()) there[table.handle] = all_of(handle_walk::entries(table, where));
    }
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::map<std::uint32_t, bool>> groups;
    for (const profile_info &profile : calls::profiles) {
      group_reader reader(profile, where);
      there[profile.action_data_table] = all_of(handle_walk::members(profile, where));
      for (const std::uint32_t group : all_of(handle_walk::groups(profile, where))) {
        std::map<std::uint32_t, bool> &members = groups[{profile.selector_table, group}];
        for (const group_member &each : reader.members(group)) members[each.id] = each.active;
      }
    }
    const std::lock_guard lock(mutex_);
    for (auto &[source, handles] : there) {
      meant_objects &objects = state_.objects[source];
      std::erase_if(handles, [&](std::uint32_t handle) { return objects.placed.contains(handle); });
      objects.untold = std::move(handles);
    }
    state_.groups.merge(groups);
    on_ = true;
  } catch (...) {
    feed.end(*this);
    throw;
  }
}

void update_record::end(update_feed &feed)
{
  const std::lock_guard switching(switching_);
  feed.end(*this);
  const std::lock_guard lock(mutex_);
  on_ = false;
  state_ = {};
}

std::optional<meant_state> update_record::state() const
{
  const std::lock_guard lock(mutex_);
  return on_ ? std::optional(state_) : std::nullopt;
}

void update_record::take(const switch_update &update)
{
  const std::lock_guard lock(mutex_);
  ++state_.updates;
  if (update.placement.empty()) {
    const std::pair group(update.source, update.handle);
    if (update.member == 0) {
      if (update.event == STANDIN_DELETED) {
        state_.groups.erase(group);
      } else {
        state_.groups[group].clear();
      }
    } else if (update.event == STANDIN_DELETED) {
      state_.groups[group].erase(update.member);
    } else {
      state_.groups[group][update.member] = update.event != STANDIN_DISABLED;
    }
    return;
  }
  meant_objects &objects = state_.objects[update.source];
  objects.untold.erase(update.handle);
  if (update.event == STANDIN_DELETED || update.event == STANDIN_DEFAULT_RESET) {
    objects.placed.erase(update.handle);
  } else {
    objects.placed[update.handle] = update.placement;
  }
}

}  // namespace tarvex::shell
