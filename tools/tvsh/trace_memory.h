// What a replayed trace writes and the library cannot read back is remembered, as of the shell's own writes.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "device_memory.h"

namespace tarvex::shell {

/// A driver call that went well, with its arguments as they were recorded. `handle` is as it is now: the one that came
/// out, or else the last one that went in. What names no device is of `device`.
void remember_replayed(switch_memory &memory, std::uint32_t device, std::string_view call,
                       const nlohmann::json &arguments, std::uint32_t handle);

}  // namespace tarvex::shell
