// Makes the writes of a trace again: a fresh switch ends up equal to the one that was traced.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "handle_map.h"
#include "trace_error.h"

namespace tarvex::trace {

struct replay_counts {
  std::uint64_t made = 0;
  std::uint64_t different = 0;  // of those made, answered with another status
  std::uint64_t reads = 0;      // what changes nothing is passed over, here and in the next two
  std::uint64_t refused = 0;    // by the driver of the traced program
  std::uint64_t nested = 0;     // made by the driver, or in a callback, while another call was under way
  std::uint64_t left_out = 0;   // of callbacks, documents and devices: they hang on the traced program
};

class replayer {
 public:
  /// Told of each write that went well: its function, its arguments as recorded, and as it is now the handle that came
  /// out, or else the last one that went in; 0 where there is none.
  using observer = std::function<void(std::string_view call, const nlohmann::json &arguments, std::uint32_t handle)>;

  /// `only_check` makes no call.
  explicit replayer(bool only_check, observer observe = {}) : only_check_(only_check), observe_(std::move(observe)) {}

  /// A line of the trace, in JSON. What the driver answered otherwise than then comes back in words. Throws trace_error
  /// for what is no line of a trace.
  std::string replay(std::string_view line);

  const replay_counts &counts() const { return counts_; }

 private:
  bool only_check_;
  observer observe_;
  handle_map handles_;
  replay_counts counts_;
};

}  // namespace tarvex::trace
