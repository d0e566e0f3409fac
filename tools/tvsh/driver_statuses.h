// Statuses of the driver that are no refusals, but say that there is nothing (more).
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "tarvex_pd/types.h"

namespace tarvex::shell {

/// Known for the stand-in switch. Of another driver they are what was told; where nothing was, every status but 0 that
/// comes with no handle is taken for one.
struct driver_statuses {
  std::optional<pd_status_t> walk_end;  // behind the last entry, member or group
  std::optional<pd_status_t> no_entry;  // no entry has the handle; no default entry
  std::optional<pd_status_t> no_cell;   // the index is beyond the cells of a counter, meter or register
};

/// For the driver of this process; ahead of its first command.
void tell_driver_statuses(const driver_statuses &told);

/// Of a call that gave no handle.
bool ends_walk(pd_status_t status);
bool says_no_entry(pd_status_t status);
/// Of a call on an entry, member or group: it is not there, or not any more.
bool says_gone(pd_status_t status);
/// Of a read of a cell: the index is beyond the last one. Never guessed, as a guess would lose cells.
bool ends_cells(pd_status_t status);
/// What to do about a refusal that may be the end of the cells; empty where that end is known.
std::string hint_at_cells_end(pd_status_t status);

}  // namespace tarvex::shell
