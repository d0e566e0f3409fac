// The members of a group, as the switch has them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "function_call.h"
#include "switch_state.h"

namespace tarvex::shell {

class group_reader {
 public:
  group_reader(const profile_info &profile, const target &where);

  /// In the order of the driver's walk; nothing where the group is gone. Throws refused_error.
  std::optional<std::vector<group_member>> members_if_there(std::uint32_t group);

 private:
  const profile_info &profile_;
  const target where_;
  function_call state_;
  std::uint32_t found_ = 0;
};

}  // namespace tarvex::shell
