// A number of a trace. The conversions of the JSON library cut fractions and what is too wide, and turn what is below 0
// into something large.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "trace_error.h"

namespace tarvex::trace {

template <typename Number>
Number number(const nlohmann::json &value)
{
  if (!value.is_number_unsigned()) throw trace_error(value.dump() + " is no number from 0 up");
  const auto wide = value.get<std::uint64_t>();
  if (wide > std::numeric_limits<Number>::max()) {
    throw trace_error(std::to_string(wide) + " is too wide for its place");
  }
  return static_cast<Number>(wide);
}

}  // namespace tarvex::trace
