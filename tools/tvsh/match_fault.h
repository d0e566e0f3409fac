// Keys that do not say what the switch makes of them: bits that it does not look at, host bits beyond a prefix, bits of
// a value outside its mask.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "fields.h"
#include "value_text.h"

namespace tarvex::shell {

/// Why the switch would take a field for something else than `text` says, what it looks at, and what it would match;
/// empty where it takes it as it is.
std::string match_fault(const shown_field &field, const std::uint8_t *record, std::string_view text);

/// Reads a match as parse_match does; where it was typed, throws usage_error for one with a fault.
void parse_meant_match(const shown_field &field, std::string_view text, std::uint8_t *record, value_source from);

/// Why two matches on a field are one to the switch: "dip=11.1.2.3/32 and dip=11.0.0.0/12 both match 11.0.0.0/12, as
/// the switch looks at 255.240.0.0". Empty where they are the same.
std::string why_equal(const shown_field &field, const std::uint8_t *record, const std::uint8_t *other);

/// Whether a command with these fields is accepted with --force only.
bool needs_force(std::span<const shown_field> fields, const std::uint8_t *record);

}  // namespace tarvex::shell
