// An entry of l2Lookup, read back.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>

#include "station.h"
#include "switch_device.h"

namespace tarvex::l2_learning {

struct destination_entry {
  station_id id;
  std::uint32_t interface = 0;
  bool known_unicast = false;  // the one action that this example gives
};

inline destination_entry read_destination(pd_entry_hdl_t handle)
{
  p4_pd_tarvex_switch_l2Lookup_match_spec_t key{};
  p4_pd_tarvex_switch_l2LookupKnownUcastTunnel_action_spec_t widest{};  // of the table's parameter structures
  std::uint32_t action_enum = 0;
  std::uint8_t no_key = 0;
  examples::must(p4_pd_tarvex_switch_l2Lookup_get_entry(examples::session, examples::device_id, handle, 0, &key,
                                                        nullptr, &widest, &action_enum, &no_key),
                 "reading an entry of l2Lookup");
  p4_pd_tarvex_switch_l2LookupKnownUcast_action_spec_t action{};
  std::memcpy(&action, &widest, sizeof action);
  return {{{key.egrMd_dmacOui, key.egrMd_dmacStation}, key.egrMd_egrL2Domain},
          action.action_egrL2Aintf,
          action_enum == P4_PD_TARVEX_SWITCH_ACTION_l2LookupKnownUcast};
}

}  // namespace tarvex::l2_learning
