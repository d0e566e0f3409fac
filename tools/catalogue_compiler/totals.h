// Numbers of the whole catalogue, stated beside the rows so that a lost or doubled row is noticed.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "diagnostics.h"
#include "model.h"
#include "toml_rows.h"

namespace catalogue {

struct total {
  std::string_view key;
  std::size_t (*count)(const model &);
};

/// Everything that is counted.
std::span<const total> all_totals();

/// The expected numbers, in the order of all_totals().
struct stated_totals : origin {
  std::vector<std::size_t> numbers;
};

stated_totals read_totals(const toml::table &node, row &file);

void check_totals(const model &m, const stated_totals &stated, diagnostics &diag);

}  // namespace catalogue
