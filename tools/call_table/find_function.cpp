// Functions are sorted by family at the first question.
//
// SPDX-License-Identifier: Apache-2.0
#include "find_function.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvex::calls {

namespace {

bool is_of(const exported_function &function, const void *row)
{
  const std::array<const void *, 6> rows = {function.table,  function.profile,  function.use,
                                            function.action, function.resource, function.hash};
  return std::ranges::count(rows, row) != 0;
}

}  // namespace

std::span<const exported_function *const> functions_of(family_id family)
{
  static const auto lists = [] {
    std::array<std::vector<const exported_function *>, family_count> made;
    for (const exported_function &function : functions) {
      made[static_cast<std::size_t>(function.family)].push_back(&function);
    }
    return made;
  }();
  return lists[static_cast<std::size_t>(family)];
}

bool takes(const exported_function &function, argument_kind kind)
{
  return std::ranges::count(function.arguments, kind) != 0;
}

const exported_function &function_for(family_id family)
{
  const auto all = functions_of(family);
  if (all.empty()) lacks_function(family);
  return *all.front();
}

const exported_function *find_function(family_id family, const void *row, std::optional<argument_kind> with)
{
  for (const exported_function *function : functions_of(family)) {
    if (is_of(*function, row) && (!with || takes(*function, *with))) return function;
  }
  return nullptr;
}

void lacks_function(family_id family)
{
  throw std::logic_error("the call table lacks a function of family " + std::to_string(static_cast<int>(family)) +
                         " for a row");
}

}  // namespace tarvex::calls
