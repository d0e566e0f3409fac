// Names of actions against their enumeration values.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "plain_functions.h"

namespace tarvex::pd {

const char *action_enum_to_string(std::uint32_t action)
{
  return action < action_count ? action_names[action] : nullptr;
}

std::uint32_t action_string_to_enum(const char *name)
{
  if (name == nullptr) return action_count;
  for (std::uint32_t action = 0; action < action_count; ++action)
    if (std::strcmp(name, action_names[action]) == 0) return action;
  return action_count;
}

}  // namespace tarvex::pd
