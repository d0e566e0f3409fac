// Calls of any exported function with arguments that make sense, and a driver that obliges: what can go wrong is tried
// from there.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cjson/cJSON.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "caller.h"
#include "recorder.h"

namespace tarvex::test {

/// One call, with memory of its own behind every pointer.
class plausible_call : public call {
 public:
  explicit plausible_call(const exported_function &function);

  /// What the driver answers to such a call, so that it succeeds.
  std::uint64_t oblige(const recorded_call &asked) const;
  const calls::table_info &table() const { return *table_; }

 private:
  void prepare_records();
  void prepare_hash();
  std::uint64_t give_entry(const recorded_call &asked, std::size_t first) const;

  const calls::table_info *table_;  // that the call is about, by its own name or by a handle
  std::unique_ptr<cJSON, decltype(&cJSON_Delete)> log_;
};

/// What came of a call: what a caller or an allocator can see.
struct outcome {
  std::uint64_t result = 0;
  std::string stop;                // the function in which an assertion failed; empty where none did
  std::vector<std::string> asked;  // functions of the driver, in order
  unsigned blocks = 0;             // of the system allocator
  std::string wrong;               // blocks that were not given back
  std::vector<call::block> before, after;

  bool wrote_nothing() const { return before == after; }
};

/// A driver for the call: gives its status, or leaves the answer to the one that obliges.
using driver_function = std::function<std::uint64_t(const plausible_call &call, const recorded_call &asked)>;
std::uint64_t obliging(const plausible_call &call, const recorded_call &asked);

/// Makes a call. The n-th block of the system allocator is refused, none with 0.
outcome outcome_of(const exported_function &function, const driver_function &answer = obliging,
                   unsigned refused_block = 0);

/// The same call with nothing refused, after one that failed: how it differs from what it was before; empty where not.
std::string difference(const outcome &good, const outcome &again);

/// Services whose status is not looked at.
bool is_ignored(const std::string &name);

}  // namespace tarvex::test
