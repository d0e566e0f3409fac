// What a bridge programs before its first frame, and keeps to the end: counted domains, the blocked interface, when to
// report a source, what to do with a destination that is not known and how much of that, and how frames spread over
// links.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <map>

#include "switch_device.h"
#include "tally.h"

namespace tarvex::l2_learning {

/// The numbers of the pipeline's own that a frame meets on its way to l2LearningLookup.
inline constexpr std::uint8_t learning_application = 1;
inline constexpr std::uint8_t not_decapsulated = 0;

/// An entry of l2LookupMiss: what happens to frames that l2Lookup does not know.
enum class unknown_traffic : std::size_t { broadcast, multicast, unicast };
inline constexpr std::size_t unknown_traffic_count = 3;

class bridge_tables {
 public:
  bridge_tables();

  pd_entry_hdl_t domain_entry(std::uint16_t domain) const { return domains_.at(domain); }
  pd_entry_hdl_t unknown_entry(unknown_traffic kind) const { return unknown_[static_cast<std::size_t>(kind)]; }

  /// Halves the rate that broadcast is allowed.
  void throttle_broadcast();

  /// Reads back everything that is no entry.
  void check(examples::tally &compared) const;

 private:
  void add_domains();
  void add_learning();
  void add_unknown();
  void set_links();
  void check_links(examples::tally &compared) const;

  std::map<std::uint16_t, pd_entry_hdl_t> domains_;
  std::array<pd_entry_hdl_t, unknown_traffic_count> unknown_{};
  std::array<pd_meter_spec_t, unknown_traffic_count> rates_{};
};

}  // namespace tarvex::l2_learning
