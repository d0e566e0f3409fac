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
    early_.clear();
    state_.since = std::chrono::system_clock::now();
  }
  feed.begin(where, all_sources(), *this);
  try {
    std::map<std::uint32_t, meant_objects> objects;
    for (const table_info &table : calls::tables) {
      if (!table.fields.empty()) objects[table.handle].untold = all_of(handle_walk::entries(table, where));
    }
    std::map<std::pair<std::uint32_t, std::uint32_t>, group_members> groups;
    for (const profile_info &profile : calls::profiles) {
      group_reader reader(profile, where);
      objects[profile.action_data_table].untold = all_of(handle_walk::members(profile, where));
      for (const std::uint32_t group : all_of(handle_walk::groups(profile, where))) {
        const auto there = reader.members_if_there(group);
        if (!there) continue;
        group_members &members = groups[{profile.selector_table, group}];
        for (const group_member &each : *there) members[each.id] = each.active;
      }
    }
    // What was told meanwhile may stand in what was found or not; the last word on each is the same in either case.
    const std::lock_guard lock(mutex_);
    state_.objects = std::move(objects);
    state_.groups = std::move(groups);
    for (const switch_update &each : early_) enter(each);
    early_ = {};
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
  early_ = {};
}

std::optional<meant_state> update_record::state() const
{
  const std::lock_guard lock(mutex_);
  return on_ ? std::optional(state_) : std::nullopt;
}

bool update_record::is_since(std::chrono::system_clock::time_point begin) const
{
  const std::lock_guard lock(mutex_);
  return on_ && state_.since == begin;
}

update_record::known_object update_record::object(std::uint32_t source, std::uint32_t handle) const
{
  const std::lock_guard lock(mutex_);
  const auto objects = state_.objects.find(source);
  if (objects == state_.objects.end()) return {};
  const auto placed = objects->second.placed.find(handle);
  return {placed != objects->second.placed.end() ? placed->second : std::vector<std::byte>{},
          objects->second.untold.contains(handle)};
}

std::optional<group_members> update_record::group(std::uint32_t source, std::uint32_t handle) const
{
  const std::lock_guard lock(mutex_);
  const auto found = state_.groups.find({source, handle});
  return found != state_.groups.end() ? std::optional(found->second) : std::nullopt;
}

void update_record::take(const switch_update &update)
{
  const std::lock_guard lock(mutex_);
  if (on_) {
    enter(update);
  } else {
    early_.push_back(update);
  }
}

void update_record::enter(const switch_update &update)
{
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
