// Cells of counters, meters and registers: which ones a command means, and reading them one after the other.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string_view>

#include "catalogue.h"
#include "function_call.h"
#include "invocation.h"
#include "report.h"

namespace tarvex::shell {

/// Cells from `first` to `last`, both included.
struct cell_range {
  std::uint32_t first = 0;
  std::uint32_t last = 0;
};

/// "5" or "0-15". Throws usage_error.
cell_range parse_cells(std::string_view text);

/// The resources of some kinds with their handles and tables.
void list_resources(const invocation &call, std::string_view list, std::span<const resource_kind> kinds);

/// Gives `call` the cell or the entry that it works on, and calls `visit` with it: all entries of a direct resource's
/// table, or the cells that the second word of the command names.
void for_each_cell(const invocation &command, const resource_info &resource, function_call &call,
                   const std::function<void(std::uint32_t)> &visit);

/// Gives `call` the cell that a word names: an index, or handle=N for an entry of a direct resource.
std::string give_cell(function_call &call, const resource_info &resource, std::string_view word);

}  // namespace tarvex::shell
