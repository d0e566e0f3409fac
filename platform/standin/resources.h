// Cells of the indirect counters, meters, WRED blocks and registers of a device. Only cells that were written take
// room.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <unordered_map>
#include <variant>
#include <vector>

#include "entry_store.h"
#include "pipeline_rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::standin {

/// A register cell: its values row by row.
using register_cell = std::vector<std::uint8_t>;

struct indirect_resource {
  explicit indirect_resource(const rows::resource_info &its_row) : row(&its_row) {}

  const rows::resource_info *row;
  std::uint32_t limit = 0xffffffff;  // of the index
  std::unordered_map<std::uint32_t, counter_cell> counters;
  std::unordered_map<std::uint32_t, drv_meter_spec_t> meters;
  std::unordered_map<std::uint32_t, drv_wred_spec_t> wreds;
  std::unordered_map<std::uint32_t, register_cell> registers;
  std::uint8_t register_rest = 0;  // value of the register cells that are not there
  std::uint32_t rows = 1;
  std::uint32_t values_per_row = 1;
};

}  // namespace tarvex::standin
