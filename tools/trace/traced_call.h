// A driver call that is told to the trace: what goes in is put down before the driver sees it, what comes out behind.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <span>

#include "call_row.h"

namespace tarvex::trace {

class traced_call {
 public:
  traced_call(const call_row &row, std::span<const word> arguments);
  traced_call(const traced_call &) = delete;
  traced_call &operator=(const traced_call &) = delete;
  ~traced_call();

  void left(word result);

 private:
  const call_row &row_;
  std::span<const word> arguments_;
  std::uint64_t trace_;  // the one that it began in; 0 for none
  std::uint64_t number_ = 0;
  std::chrono::system_clock::time_point entered_;
  std::chrono::steady_clock::time_point started_;
};

}  // namespace tarvex::trace
