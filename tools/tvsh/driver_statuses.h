// Statuses of the driver that are no refusals, but say that there is nothing (more).
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "tarvex_pd/types.h"

namespace tarvex::shell {

/// Known for the stand-in switch. Of another driver they are what was told; where nothing was, every status but 0 that
/// comes with no handle is taken for one.
struct driver_statuses {
  std::optional<pd_status_t> walk_end;  // behind the last entry, member or group
  std::optional<pd_status_t> no_entry;  // no entry has the handle; no default entry
};

/// For the driver of this process; ahead of its first command.
void tell_driver_statuses(const driver_statuses &told);

/// Of a call that gave no handle.
bool ends_walk(pd_status_t status);
bool says_no_entry(pd_status_t status);
/// Of a call on an entry, member or group: it is not there, or not any more.
bool says_gone(pd_status_t status);

}  // namespace tarvex::shell
