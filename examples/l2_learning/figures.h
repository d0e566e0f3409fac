// What a run counts: once as it has to come out, once as it did.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <utility>

namespace tarvex::l2_learning {

/// Of the control plane.
struct learning_figures {
  std::uint64_t reported = 0;
  std::uint64_t learned = 0;
  std::uint64_t refreshed = 0;
  std::uint64_t moved = 0;
  std::uint64_t aged = 0;
};

inline constexpr std::array learning_figure_names{
    std::pair{"addresses reported", &learning_figures::reported}, std::pair{"learned", &learning_figures::learned},
    std::pair{"refreshed", &learning_figures::refreshed}, std::pair{"moved", &learning_figures::moved},
    std::pair{"aged", &learning_figures::aged}};

/// Of the pipeline.
struct forwarding_figures {
  std::uint64_t frames = 0;
  std::uint64_t stopped = 0;        // on the blocked interface
  std::uint64_t known_sources = 0;  // hits of l2LearningLookup
  std::uint64_t switched = 0;       // to a known station
  std::uint64_t broadcast = 0;
  std::uint64_t flooded = 0;  // to an unknown station
};

inline constexpr std::array forwarding_figure_names{
    std::pair{"frames", &forwarding_figures::frames},
    std::pair{"stopped", &forwarding_figures::stopped},
    std::pair{"from known stations", &forwarding_figures::known_sources},
    std::pair{"switched", &forwarding_figures::switched},
    std::pair{"broadcast", &forwarding_figures::broadcast},
    std::pair{"flooded", &forwarding_figures::flooded}};

/// Of a counter cell.
struct traffic {
  std::uint64_t packets = 0;
  std::uint64_t bytes = 0;

  void count(std::uint32_t frame_bytes)
  {
    ++packets;
    bytes += frame_bytes;
  }
};

}  // namespace tarvex::l2_learning
