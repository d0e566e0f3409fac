// Programs entries into a switch, and reads back what stands there.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fib_switch.h"
#include "first_few.h"
#include "progress.h"

namespace tarvex::route_load {

/// What a user is told of a difference, one text each.
using differences = first_few<std::string>;

/// The handles of the entries, in their order.
std::vector<entry_handle> program(fib_switch &device, std::span<const fib_entry> entries,
                                  const progress_report &progress = {});

/// Walks the ten tables and compares both ways: each entry found must be one of `entries` as a whole, and each of
/// `entries` must be found, once. `handles` as program gave them. Gives the number of entries that were compared.
std::uint64_t read_back(fib_switch &device, std::span<const fib_entry> entries, std::span<const entry_handle> handles,
                        differences &found, const progress_report &progress = {});

}  // namespace tarvex::route_load
