// Kinds of a pipeline's rows, for the compiler of the rows and for everyone who reads them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "words.h"

namespace tarvex {

enum class table_kind : std::uint8_t { exact, ternary, lpm, keyless };
template <>
inline constexpr auto words<table_kind> = std::to_array<std::string_view>({"exact", "ternary", "lpm", "keyless"});

enum class match_kind : std::uint8_t { exact, ternary, lpm, partition };
template <>
inline constexpr auto words<match_kind> = std::to_array<std::string_view>({"exact", "ternary", "lpm", "partition"});

enum class resource_kind : std::uint8_t { counter, meter, wred, register_ };
template <>
inline constexpr auto words<resource_kind> = std::to_array<std::string_view>({"counter", "meter", "wred", "register"});

/// How an action uses a resource.
enum class resource_form : std::uint8_t { direct_counter, direct_meter, direct_register, indexed, detached };
template <>
inline constexpr auto words<resource_form> =
    std::to_array<std::string_view>({"direct counter", "direct meter", "direct register", "indexed", "detached"});

enum class snapshot_direction : std::uint8_t { ingress, egress };
template <>
inline constexpr auto words<snapshot_direction> = std::to_array<std::string_view>({"ingress", "egress"});

/// What an exported function returns.
enum class result_kind : std::uint8_t { status, none, number, text, pointer, count, truth };
template <>
inline constexpr auto words<result_kind> = std::to_array<std::string_view>({"status", "none", "number", "text",
                                                                            "pointer", "count", "truth"});

}  // namespace tarvex
