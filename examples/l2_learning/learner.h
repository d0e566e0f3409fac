// The control plane of MAC learning: keeps l2LearningLookup, where the pipeline looks for a frame's source, and
// l2Lookup, where it looks for the destination, in step with what the switch reports.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <unordered_map>

#include "figures.h"
#include "station.h"
#include "switch_device.h"
#include "switch_events.h"

namespace tarvex::l2_learning {

/// The entries of a station.
struct learned_station {
  std::uint32_t interface = 0;
  pd_entry_hdl_t source = 0;       // in l2LearningLookup
  pd_entry_hdl_t destination = 0;  // in l2Lookup
};

using learned_stations = std::unordered_map<station_id, learned_station, station_hash>;

class learner {
 public:
  /// Subscribes to the digest and to the ends of ttls.
  explicit learner(switch_events &events);
  learner(const learner &) = delete;
  learner &operator=(const learner &) = delete;
  ~learner();

  /// Works off the events of a round, to its end.
  void serve();

  const learning_figures &figures() const { return figures_; }
  std::uint64_t acknowledged() const { return acknowledged_; }
  const learned_stations &stations() const { return stations_; }

 private:
  void take(standin_digest_msg_t *message);
  void take(expired_entry expired);
  void report(const station_id &id, std::uint32_t interface);
  void learn(const station_id &id, std::uint32_t interface);
  void move(const station_id &id, learned_station &station, std::uint32_t interface);

  pd_entry_hdl_t add_source(const station_id &id, std::uint32_t interface);
  void delete_source(pd_entry_hdl_t handle);

  switch_events &events_;
  learned_stations stations_;
  std::unordered_map<pd_entry_hdl_t, station_id> by_source_;
  learning_figures figures_;
  std::uint64_t acknowledged_ = 0;
};

}  // namespace tarvex::l2_learning
