// Looks the control functions up.
//
// SPDX-License-Identifier: Apache-2.0
#include "stand_in.h"

#include <dlfcn.h>

#include <optional>

#include "process_symbol.h"
#include "shell_error.h"
#include "tarvex_trace/tarvex_trace.h"

namespace tarvex::shell {

namespace {

/// Where the library's calls end up: behind the tracing library, where that is there.
const void *first_driver_function()
{
  const char *const name = "pipe_mgr_mat_ent_add";
  decltype(&tarvex_trace_next) next = nullptr;
  return find_in_process(next, "tarvex_trace_next") ? next(name) : dlsym(RTLD_DEFAULT, name);
}

bool same_library(const void *one, const void *other)
{
  Dl_info of_one{};
  Dl_info of_other{};
  return dladdr(one, &of_one) != 0 && dladdr(other, &of_other) != 0 && of_one.dli_fbase == of_other.dli_fbase;
}

/// Nothing, too, where the stand-in is in the process, but another driver ahead of it.
std::optional<stand_in_control> look_up()
{
  stand_in_control all{};
  const bool found = find_in_process(all.status_name, "standin_status_name") &&
                     find_in_process(all.device_add, "standin_device_add") &&
                     find_in_process(all.device_remove, "standin_device_remove") &&
                     find_in_process(all.size_limit, "standin_size_limit") &&
                     find_in_process(all.lookup, "standin_lookup") &&
                     find_in_process(all.count_packets, "standin_count_packets") &&
                     find_in_process(all.count_cell, "standin_count_cell") &&
                     find_in_process(all.idle_advance, "standin_idle_advance") &&
                     find_in_process(all.entry_hit, "standin_entry_hit") &&
                     find_in_process(all.digest_deliver, "standin_digest_deliver") &&
                     find_in_process(all.snapshot_packet, "standin_snapshot_packet") &&
                     find_in_process(all.snapshot_field_set, "standin_snapshot_field_set") &&
                     find_in_process(all.refuse_call, "standin_refuse_call") &&
                     find_in_process(all.placement_size, "standin_placement_size") &&
                     find_in_process(all.registered_callback, "standin_registered_callback") &&
                     find_in_process(all.corrupt_entry, "standin_corrupt_entry") &&
                     find_in_process(all.lose_entry, "standin_lose_entry");
  const bool drives = found && same_library(reinterpret_cast<const void *>(all.device_add), first_driver_function());
  return drives ? std::optional(all) : std::nullopt;
}

}  // namespace

const stand_in_control *stand_in()
{
  static const std::optional<stand_in_control> control = look_up();
  return control ? &*control : nullptr;
}

const stand_in_control &require_stand_in()
{
  const stand_in_control *const control = stand_in();
  if (control == nullptr) throw usage_error("there is no stand-in switch here: the driver is another one");
  return *control;
}

}  // namespace tarvex::shell
