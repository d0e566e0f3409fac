// The arguments of a driver call, what went in and what came out.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "call_row.h"
#include "value_writer.h"

namespace tarvex::trace {

void write_inputs(value_writer &to, const call_row &row, std::span<const word> arguments);
/// For a call that succeeded.
void write_outputs(value_writer &to, const call_row &row, std::span<const word> arguments);
/// Status, state or address.
void write_result(value_writer &to, const call_row &row, word result);
/// "OK", the stand-in switch's name of a status, or nothing.
std::string_view status_name(std::uint32_t status);

}  // namespace tarvex::trace
