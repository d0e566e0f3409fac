// The plan of a run: the stations, the frames that they send in each round, and what has to come of it.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "figures.h"
#include "station.h"

namespace tarvex::l2_learning {

inline constexpr std::uint16_t first_domain = 100;
inline constexpr std::uint16_t domain_count = 16;
inline constexpr std::uint32_t interface_count = 48;  // 0 to 47 forward
inline constexpr std::uint32_t blocked_interface = interface_count;

/// The clock of a run, in milliseconds. What is silent for two steps of it has outlived its ttl, for one it has not.
inline constexpr std::uint32_t ttl = 300'000;
inline constexpr std::uint32_t clock_step = 200'000;
inline constexpr std::uint32_t ageing_interval = 10'000;

struct frame {
  station_id source;
  std::uint32_t interface = 0;
  mac_address destination;
  std::uint32_t bytes = 0;
};

/// An entry that has to be there at the end.
struct survivor {
  std::uint32_t interface = 0;
  std::uint32_t ttl_left = 0;
  bool was_hit = false;
};

struct plan {
  std::vector<frame> announcements;  // all stations; then time passes
  std::vector<frame> conversation;   // active stations to each other, moving ones announce themselves; time passes
  std::vector<frame> aftermath;      // active stations to aged ones, returning ones announce themselves

  learning_figures learning;
  forwarding_figures forwarding;
  std::map<std::uint16_t, traffic> by_domain;
  std::map<std::uint32_t, traffic> by_egress_interface;  // frames to known stations
  std::unordered_map<station_id, survivor, station_hash> survivors;
};

plan make_plan(const std::vector<std::uint32_t> &ouis, std::uint64_t addresses, std::uint64_t seed);

}  // namespace tarvex::l2_learning
