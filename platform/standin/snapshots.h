// Snapshots of a device that goes.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace tarvex::standin {

void drop_snapshots(std::uint32_t dev_id);

}  // namespace tarvex::standin
