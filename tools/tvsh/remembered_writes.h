// Writes of what the library cannot read back: each is made and then remembered, for all sessions of the device. All
// throw refused_error, and then nothing is remembered.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "invocation.h"
#include "switch_state.h"

namespace tarvex::shell {

/// The new group's handle.
std::uint32_t create_group(const invocation &call, const profile_info &profile, std::uint32_t size);
void delete_group(const invocation &call, const profile_info &profile, std::uint32_t group);
/// Without a member there is none to fall back to.
void set_fallback(const invocation &call, const profile_info &profile, std::optional<std::uint32_t> member);

void enable_idle_time(const invocation &call, const table_info &table, const idle_setting &setting);
void disable_idle_time(const invocation &call, const table_info &table);

/// A cell of what no entry carries; without an index all cells of a register.
void write_cell(const invocation &call, const resource_info &resource, const cell_state &state);
/// Cells of a register as they were at first; without a range all of them.
void reset_register(const invocation &call, const resource_info &reg, std::optional<cell_range> cells);

/// The new entry's handle.
std::uint32_t add_to_value_set(const invocation &call, const value_set_entry &entry);
void modify_in_value_set(const invocation &call, std::uint32_t handle, std::uint32_t value, std::uint32_t mask);
void delete_from_value_set(const invocation &call, std::uint32_t handle);

void set_learning_timeout(const invocation &call, std::uint32_t timeout);

}  // namespace tarvex::shell
