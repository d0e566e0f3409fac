// Reads members of an action profile.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "function_call.h"
#include "switch_state.h"
#include "tarvex_pd/actions.h"

namespace tarvex::shell {

class member_reader {
 public:
  member_reader(const profile_info &profile, const target &where, bool from_hardware);
  member_reader(const member_reader &) = delete;
  member_reader &operator=(const member_reader &) = delete;

  /// Null where it is gone; valid until the next one is read. Throws refused_error.
  const profile_member *read_if_there(std::uint32_t handle);

 private:
  const profile_info &profile_;
  function_call call_;
  plcmt_action_t found_{};
  profile_member member_;
};

}  // namespace tarvex::shell
