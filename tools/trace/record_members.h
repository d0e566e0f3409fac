// Members of the driver's plain records, for those who write and read them by name.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "call_row.h"

namespace tarvex::trace {

struct record_member {
  std::string_view name;
  std::uint8_t at;
  std::uint8_t size;
  bool real = false;
};

inline constexpr record_member meter_members[] = {
    {"color_mode", offsetof(drv_meter_spec_t, color_mode), 4},
    {"first_unit_kind", offsetof(drv_meter_spec_t, first_unit_kind), 4},
    {"first_rate", offsetof(drv_meter_spec_t, first_rate), 8},
    {"first_burst", offsetof(drv_meter_spec_t, first_burst), 8},
    {"second_unit_kind", offsetof(drv_meter_spec_t, second_unit_kind), 4},
    {"second_rate", offsetof(drv_meter_spec_t, second_rate), 8},
    {"second_burst", offsetof(drv_meter_spec_t, second_burst), 8},
};

inline constexpr record_member wred_members[] = {
    {"time_constant", offsetof(drv_wred_spec_t, time_constant), 4, true},
    {"min_threshold", offsetof(drv_wred_spec_t, min_threshold), 4},
    {"max_threshold", offsetof(drv_wred_spec_t, max_threshold), 4},
    {"max_probability", offsetof(drv_wred_spec_t, max_probability), 4, true},
};

inline constexpr record_member counter_members[] = {
    {"packets", offsetof(drv_stat_data_t, packets), 8},
    {"bytes", offsetof(drv_stat_data_t, bytes), 8},
};

inline constexpr record_member idle_members[] = {
    {"word_0", offsetof(pd_idle_params_t, word_0), 4}, {"word_1", offsetof(pd_idle_params_t, word_1), 4},
    {"word_2", offsetof(pd_idle_params_t, word_2), 4}, {"word_3", offsetof(pd_idle_params_t, word_3), 4},
    {"word_4", offsetof(pd_idle_params_t, word_4), 8}, {"word_5", offsetof(pd_idle_params_t, word_5), 8},
};

inline constexpr record_member capture_size_members[] = {
    {"total_size", offsetof(snap_capture_sizes_t, total_size), 8},
    {"ctrl_size", offsetof(snap_capture_sizes_t, ctrl_size), 8},
};

/// Members of the records that are plain; none for other kinds.
constexpr std::span<const record_member> members_of(value_kind kind)
{
  switch (kind) {
    case value_kind::meter: return meter_members;
    case value_kind::wred: return wred_members;
    case value_kind::counter: return counter_members;
    case value_kind::idle_params: return idle_members;
    case value_kind::capture_sizes: return capture_size_members;
    default: return {};
  }
}

}  // namespace tarvex::trace
