// Updates of tables and profiles as the switch tells them, for any number of receivers: the driver keeps one callback
// for each table, and what it tells goes to all who asked for that table, and to whoever of the process was told
// before.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "borrowed_callback.h"
#include "catalogue.h"
#include "function_call.h"

namespace tarvex::shell {

/// Handles of the tables, action data tables and selector tables that updates come from.
using update_sources = std::vector<std::uint32_t>;

update_sources sources_of(const table_info &table);
update_sources sources_of(const profile_info &profile);
update_sources all_sources();

struct switch_update {
  std::chrono::system_clock::time_point time;
  std::uint32_t source = 0;
  std::uint32_t event = 0;           // STANDIN_ADDED and so on
  std::uint32_t handle = 0;          // of the entry, member or group
  std::uint32_t member = 0;          // of a membership
  std::vector<std::byte> placement;  // a copy; empty for groups and memberships
};

/// Called in whatever thread writes to the switch, while the feed is locked: it must be quick, and call neither the
/// feed nor the driver.
class update_receiver {
 public:
  update_receiver() = default;
  update_receiver(const update_receiver &) = delete;
  update_receiver &operator=(const update_receiver &) = delete;
  virtual ~update_receiver() = default;

  virtual void take(const switch_update &update) = 0;
};

class update_feed {
 public:
  update_feed() = default;
  update_feed(const update_feed &) = delete;
  update_feed &operator=(const update_feed &) = delete;
  ~update_feed();

  /// From now on the receiver gets what the sources tell. Throws refused_error where the driver takes no callback, and
  /// usage_error where the driver's callbacks are of a form that is not known.
  void begin(const target &where, const update_sources &sources, update_receiver &receiver);
  /// Once it returns the receiver is called no more. Callbacks that nobody needs any more give their place back.
  void end(update_receiver &receiver);
  /// Of how many sources another took the place since: what they tell is missed. Throws refused_error.
  std::size_t displaced();
  /// The device is gone, and the callbacks with it: nobody receives anything any more.
  void forget();

 private:
  static void entry_changed(std::uint32_t dev_id, std::uint32_t source, std::uint32_t handle, std::uint32_t event,
                            const void *placement, void *self);
  static void group_changed(std::uint32_t dev_id, std::uint32_t source, std::uint32_t group, std::uint32_t member,
                            std::uint32_t event, void *self);

  /// Who was called ahead of the feed.
  registered_callback tell(const switch_update &update);
  borrowed_callback &callback_of(std::uint32_t source);
  void set_callback(std::uint32_t source, const registered_callback &what, const char *doing) const;
  void give_back(std::uint32_t source);
  void drop_unused();

  std::mutex switching_;  // held while the driver is told; its callbacks do without
  std::mutex mutex_;      // of the receivers and callbacks
  std::map<std::uint32_t, std::vector<update_receiver *>> receivers_;  // by source
  std::map<std::uint32_t, borrowed_callback> callbacks_;               // by source; they stay
  target where_;
};

}  // namespace tarvex::shell
