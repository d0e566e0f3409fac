// Cells of counters, meters and registers: which ones a command means, and reading them one after the other.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string_view>

#include "catalogue.h"
#include "cell_set.h"
#include "entry_words.h"
#include "function_call.h"
#include "invocation.h"
#include "report.h"

namespace tarvex::shell {

/// Above any index that a switch has cells for. How many cells there are no driver tells, and some take any index.
inline constexpr std::uint32_t unlikely_index = 1 << 20;

/// "5" or "0-15". Throws usage_error, also for an index that is unlikely to be meant, but with --force.
cell_range parse_cells(std::string_view text, const options &chosen);

/// The resources of some kinds with their handles and tables.
void list_resources(const invocation &call, std::string_view list, std::span<const resource_kind> kinds);

/// Gives `call` the cell or the entry that it works on, and calls `visit` with it: all entries of a direct resource's
/// table, or the cells that the second word of the command names.
void for_each_cell(const invocation &command, const resource_info &resource, function_call &call,
                   const std::function<void(std::uint32_t)> &visit);

/// The index that a word names, of what no entry carries. Throws usage_error as parse_cells does.
std::uint32_t parse_index(const resource_info &resource, std::string_view word, const options &chosen);

/// An entry that carries a counter or meter, and the words of the command beside it.
struct carrying_entry {
  std::uint32_t handle = 0;
  own_words own;
};

/// The entry that the words behind the first name: by handle=N, by 'default', or by its key. `allowed`: the others.
carrying_entry carrying_entry_of(const invocation &call, const resource_info &resource,
                                 std::span<const std::string_view> allowed);

}  // namespace tarvex::shell
