// Names of actions against their enumeration values.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "tarvex_pd/lifecycle.h"

const char *p4_pd_tarvex_switch_action_enum_to_string(uint32_t action)
{
  return action < P4_PD_TARVEX_SWITCH_ACTION_COUNT ? p4_pd_tarvex_switch_action_name_strings[action] : nullptr;
}

uint32_t p4_pd_tarvex_switch_action_string_to_enum(const char *name)
{
  if (name == nullptr) return P4_PD_TARVEX_SWITCH_ACTION_COUNT;
  for (uint32_t action = 0; action < P4_PD_TARVEX_SWITCH_ACTION_COUNT; ++action)
    if (std::strcmp(name, p4_pd_tarvex_switch_action_name_strings[action]) == 0) return action;
  return P4_PD_TARVEX_SWITCH_ACTION_COUNT;
}
