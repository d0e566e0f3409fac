// The control functions of the stand-in switch, where it is the driver of this process.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tarvex_standin/standin.h"

namespace tarvex::shell {

/// Found by name in the process: the engine itself is linked with no driver.
struct stand_in_control {
  decltype(&standin_status_name) status_name;
  decltype(&standin_device_add) device_add;
  decltype(&standin_device_remove) device_remove;
  decltype(&standin_size_limit) size_limit;
  decltype(&standin_lookup) lookup;
  decltype(&standin_count_packets) count_packets;
  decltype(&standin_count_cell) count_cell;
  decltype(&standin_idle_advance) idle_advance;
  decltype(&standin_entry_hit) entry_hit;
  decltype(&standin_digest_deliver) digest_deliver;
  decltype(&standin_snapshot_packet) snapshot_packet;
  decltype(&standin_snapshot_field_set) snapshot_field_set;
  decltype(&standin_refuse_call) refuse_call;
  decltype(&standin_placement_size) placement_size;
  decltype(&standin_registered_callback) registered_callback;
  decltype(&standin_corrupt_entry) corrupt_entry;
  decltype(&standin_lose_entry) lose_entry;
};

/// Null where another driver, or none, is there.
const stand_in_control *stand_in();

/// Throws usage_error where another driver is there.
const stand_in_control &require_stand_in();

}  // namespace tarvex::shell
