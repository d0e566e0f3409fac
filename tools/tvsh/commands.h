// What the commands do, one function each.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "invocation.h"
#include "shell_error.h"

namespace tarvex::shell {

// tables
exit_code show_tables(const invocation &call);
exit_code show_schema(const invocation &call);
// entries
exit_code dump_entries(const invocation &call);
exit_code show_entry(const invocation &call);
exit_code count_entries(const invocation &call);
exit_code show_default(const invocation &call);
exit_code add_entry(const invocation &call);
exit_code modify_entry(const invocation &call);
exit_code delete_entry(const invocation &call);
exit_code set_default(const invocation &call);
exit_code reset_default(const invocation &call);
// profiles and indirect tables
exit_code show_members(const invocation &call);
exit_code show_groups(const invocation &call);
exit_code write_member(const invocation &call);
exit_code write_group(const invocation &call);
exit_code write_indirect_entry(const invocation &call);
// resources
exit_code show_counters(const invocation &call);
exit_code write_counter(const invocation &call);
exit_code show_meters(const invocation &call);
exit_code write_meter(const invocation &call);
exit_code write_wred(const invocation &call);
exit_code show_registers(const invocation &call);
exit_code write_register(const invocation &call);
// services
exit_code hash_calculation(const invocation &call);
exit_code value_set(const invocation &call);
exit_code digests(const invocation &call);
exit_code idle_time(const invocation &call);
exit_code snapshot(const invocation &call);
exit_code load_routes(const invocation &call);
exit_code simulate(const invocation &call);
exit_code trace_calls(const invocation &call);
// the whole state
exit_code save_state(const invocation &call);
exit_code load_state(const invocation &call);
exit_code compare_states(const invocation &call);
exit_code apply_state(const invocation &call);
exit_code name_handle(const invocation &call);
exit_code monitor_updates(const invocation &call);
exit_code audit_hardware(const invocation &call);
exit_code restart_library(const invocation &call);
// the shell itself
exit_code help(const invocation &call);
exit_code leave(const invocation &call);

}  // namespace tarvex::shell
