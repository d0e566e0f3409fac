// Which member and group of one state is which of another: so that what changed is modified in place, and what refers
// to it needs no change.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>

#include "state_model.h"

namespace tarvex::shell {

struct profile_matching {
  /// Numbers of the state that is to be reached, and what they are in the state that is there.
  std::map<std::uint32_t, std::uint32_t> members;
  std::map<std::uint32_t, std::uint32_t> groups;
};

/// `there` and `wanted` are the profile in both states, the tables those that refer to it. Where the states differ only
/// in the numbers of members and groups, the matching makes them the same. Members pair only where they have the same
/// action, which no modification changes; groups only where their sizes may be the same.
profile_matching match_profile(const model_profile &there, const model_table &table_there, const model_profile &wanted,
                               const model_table &table_wanted);

}  // namespace tarvex::shell
