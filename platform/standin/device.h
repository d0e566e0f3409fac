// A device with all that it holds, and the way in to it: every driver function passes through `serve`.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <unordered_map>
#include <vector>

#include "call_gate.h"
#include "match_table.h"
#include "pipeline_rows.h"
#include "profile.h"
#include "resources.h"
#include "services.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace tarvex::standin {

inline constexpr std::uint32_t most_devices = 256;

struct device {
  explicit device(std::uint32_t its_id);

  const std::uint32_t id;
  std::deque<match_table> tables;
  std::deque<profile> profiles;
  std::deque<indirect_resource> resources;
  device_services services;
  std::vector<std::function<void()>> events;  // callbacks that wait for the lock to be let go

  match_table *table(std::uint32_t handle);
  profile *profile_of(const match_table &table);
  profile *profile_of_members(std::uint32_t adt_hdl);
  profile *profile_of_groups(std::uint32_t sel_hdl);
  indirect_resource *resource(std::uint32_t handle, resource_kind kind);
  /// Entries, members or groups of whichever has the handle, or null.
  slot_pool *slots(std::uint32_t handle);

  /// Leaves a callback of type F for later; without a function nothing is left.
  template <class F, class... Arguments>
  void notify(const client_callback &callback, Arguments... arguments)
  {
    if (callback.function == nullptr) return;
    events.push_back([function = reinterpret_cast<F>(callback.function), ... arguments = std::move(arguments),
                      cookie = callback.cookie] { function(event_argument(arguments)..., cookie); });
  }

 private:
  template <class T>
  static const T &event_argument(const T &value)
  {
    return value;
  }
  static const void *event_argument(const std::vector<std::byte> &buffer) { return buffer.data(); }
};

/// Where a device may stand. The mutex guards the device; it is not held while callbacks run.
struct device_place {
  std::mutex mutex;
  std::unique_ptr<device> held;
};

/// Null for a number that no device can have.
device_place *place_of(std::uint32_t dev_id);

inline std::uint32_t device_of(pd_dev_tgt_t target) { return static_cast<std::uint32_t>(target); }

/// Runs body(device) under the device's lock, then the callbacks that it left.
template <class Body>
pd_status_t on_device(std::uint32_t dev_id, Body body)
{
  device_place *const place = place_of(dev_id);
  if (place == nullptr) return STANDIN_NO_DEVICE;
  std::vector<std::function<void()>> events;
  pd_status_t status = BF_SUCCESS;
  {
    const std::lock_guard lock(place->mutex);
    if (place->held == nullptr) return STANDIN_NO_DEVICE;
    try {
      status = body(*place->held);
    } catch (const std::bad_alloc &) {
      status = STANDIN_NO_MEMORY;
    }
    events.swap(place->held->events);
  }
  for (const auto &event : events) event();
  return status;
}

/// A driver function on a device: tells the listener, refuses where a test wants it, then runs body(device).
template <class Body>
pd_status_t serve(const char *function, std::uint32_t dev_id, std::uint32_t handle, Body body)
{
  if (const pd_status_t refused = announce(function, handle)) return refused;
  return on_device(dev_id, body);
}

/// Runs body(device, table).
template <class Body>
pd_status_t on_table(std::uint32_t dev_id, std::uint32_t tbl_hdl, Body body)
{
  return on_device(dev_id, [&](device &dev) {
    match_table *const table = dev.table(tbl_hdl);
    return table == nullptr ? pd_status_t{STANDIN_NO_OBJECT} : body(dev, *table);
  });
}

/// A driver function on a match table.
template <class Body>
pd_status_t serve_table(const char *function, std::uint32_t dev_id, std::uint32_t tbl_hdl, Body body)
{
  if (const pd_status_t refused = announce(function, tbl_hdl)) return refused;
  return on_table(dev_id, tbl_hdl, body);
}

/// A driver function on an entry, its default entry included: body(device, table, entry).
template <class Body>
pd_status_t serve_entry(const char *function, std::uint32_t dev_id, std::uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                        Body body)
{
  return serve_table(function, dev_id, tbl_hdl, [&](device &dev, match_table &table) {
    return table.holds(entry_hdl) ? body(dev, table, table.at(entry_hdl)) : pd_status_t{STANDIN_NO_ENTRY};
  });
}

/// A driver function on the members of an action data table: body(device, profile).
template <class Body>
pd_status_t serve_members(const char *function, std::uint32_t dev_id, std::uint32_t adt_hdl, Body body)
{
  return serve(function, dev_id, adt_hdl, [&](device &dev) {
    profile *const found = dev.profile_of_members(adt_hdl);
    return found == nullptr ? pd_status_t{STANDIN_NO_OBJECT} : body(dev, *found);
  });
}

/// A driver function on the groups of a selector table: body(device, profile).
template <class Body>
pd_status_t serve_groups(const char *function, std::uint32_t dev_id, std::uint32_t sel_hdl, Body body)
{
  return serve(function, dev_id, sel_hdl, [&](device &dev) {
    profile *const found = dev.profile_of_groups(sel_hdl);
    return found == nullptr ? pd_status_t{STANDIN_NO_OBJECT} : body(dev, *found);
  });
}

}  // namespace tarvex::standin
