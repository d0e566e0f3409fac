// Looks the control functions up.
//
// SPDX-License-Identifier: Apache-2.0
#include "stand_in.h"

#include <dlfcn.h>

#include <optional>

#include "shell_error.h"

namespace tarvex::shell {

namespace {

template <typename Function>
bool find(Function &function, const char *name)
{
  function = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
  return function != nullptr;
}

std::optional<stand_in_control> look_up()
{
  stand_in_control all{};
  const bool found = find(all.status_name, "standin_status_name") && find(all.device_add, "standin_device_add") &&
                     find(all.device_remove, "standin_device_remove") && find(all.size_limit, "standin_size_limit") &&
                     find(all.lookup, "standin_lookup") && find(all.count_packets, "standin_count_packets") &&
                     find(all.count_cell, "standin_count_cell") && find(all.idle_advance, "standin_idle_advance") &&
                     find(all.entry_hit, "standin_entry_hit") && find(all.digest_deliver, "standin_digest_deliver") &&
                     find(all.snapshot_packet, "standin_snapshot_packet") &&
                     find(all.snapshot_field_set, "standin_snapshot_field_set") &&
                     find(all.refuse_call, "standin_refuse_call");
  return found ? std::optional(all) : std::nullopt;
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
