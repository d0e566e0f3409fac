// A route as the file gives it.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "prefix.h"

#include <cstdint>

namespace tarvex::route_load {

struct route {
  prefix destination;
  std::uint32_t origin_as = 0;
  std::uint32_t line = 0;
};

}  // namespace tarvex::route_load
