// The part of the pipeline, played on the stand-in: frames look up what the control plane has programmed, count, keep
// entries alive, and have their unknown sources reported.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "bridge_tables.h"
#include "figures.h"
#include "plan.h"

namespace tarvex::l2_learning {

class data_plane {
 public:
  explicit data_plane(const bridge_tables &bridge);

  /// Lets the frames pass one after the other, and reports what is left to report at the end.
  void pass(std::span<const frame> frames);

  const forwarding_figures &figures() const { return figures_; }
  std::uint64_t messages() const { return messages_; }

 private:
  struct tables {
    std::uint32_t domains = 0, sources = 0, reports = 0, destinations = 0, unknown = 0;
  };

  void pass(const frame &frame);
  void look_for_source(const frame &frame);
  void look_for_destination(const frame &frame);
  void flood(const frame &frame);
  void report(const frame &frame);
  void deliver_reports();

  const bridge_tables &bridge_;
  tables tables_;
  forwarding_figures figures_;
  std::vector<std::uint8_t> reports_;
  std::optional<station_id> last_reported_;
  std::uint64_t messages_ = 0;
};

}  // namespace tarvex::l2_learning
