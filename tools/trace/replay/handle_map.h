// Handles that the driver gave when a trace was made, and what it gives when the trace is replayed. Only those that
// differ are kept: on a fresh switch that is few or none.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <unordered_map>

#include "driver_kinds.h"

namespace tarvex::trace {

using driver::value_kind;

/// Where handles of a call are from: entries are known within their table, members and groups within their profile.
struct handle_scope {
  std::uint32_t table = 0;
  std::uint32_t profile = 0;

  std::uint32_t of(value_kind sort) const
  {
    return sort == value_kind::entry_handle                                        ? table
           : sort == value_kind::member_handle || sort == value_kind::group_handle ? profile
                                                                                   : 0;
  }
};

class handle_map {
 public:
  std::uint32_t now(value_kind sort, const handle_scope &scope, std::uint32_t recorded) const
  {
    const auto found = changed_.find({sort, scope.of(sort), recorded});
    return found == changed_.end() ? recorded : found->second;
  }

  void learn(value_kind sort, const handle_scope &scope, std::uint32_t recorded, std::uint32_t given)
  {
    const key of{sort, scope.of(sort), recorded};
    if (recorded == given) {
      changed_.erase(of);
    } else {
      changed_[of] = given;
    }
  }

 private:
  struct key {
    value_kind sort;
    std::uint32_t scope;
    std::uint32_t recorded;
    bool operator==(const key &) const = default;
  };
  struct key_hash {
    std::size_t operator()(const key &of) const
    {
      return std::hash<std::uint64_t>{}((std::uint64_t{of.scope} << 32 | of.recorded) * 8 +
                                        static_cast<std::uint64_t>(of.sort));
    }
  };

  std::unordered_map<key, std::uint32_t, key_hash> changed_;
};

}  // namespace tarvex::trace
