// The fields that snapshots know, by name, and their values.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tarvex_pd/snapshots.h"

namespace tarvex::shell {

struct snapshot_field {
  const char *name;
  std::uint32_t bytes;
};

/// A value as the library and the stand-in switch take it: one word, or 16 words of a byte each.
struct snapshot_value {
  const snapshot_field *field;
  std::array<std::uint32_t, 16> words;
};

struct captured_field {
  std::string name;
  std::string value;  // hexadecimal, in all digits of the field: the value that a trigger on it is given
};

/// True for egress. Throws usage_error.
bool parse_direction(std::string_view word);

/// In the order of the trigger record.
const std::vector<snapshot_field> &snapshot_fields(bool egress);

/// Throws usage_error for a name that is no field, and for a value that is too wide.
snapshot_value parse_snapshot_value(bool egress, std::string_view name, std::string_view value);

/// The fields of one capture that are not zero.
std::vector<captured_field> captured_fields(std::uint32_t handle, bool egress, std::span<const std::uint8_t> area,
                                            std::uint32_t index);

}  // namespace tarvex::shell
