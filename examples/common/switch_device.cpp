// A device of the stand-in switch for as long as an example runs, and what becomes of a call that the driver refuses.
//
// SPDX-License-Identifier: Apache-2.0
#include "switch_device.h"

namespace tarvex::examples {

std::string to_text(pd_status_t status)
{
  const char *const name = standin_status_name(status);
  return "status " + std::to_string(status) + (name != nullptr ? " (" + std::string(name) + ')' : "");
}

void refuse(pd_status_t status, const std::string &what)
{
  throw driver_refused(what + ": the driver answers " + to_text(status));
}

switch_device::switch_device()
{
  must(standin_device_add(device_id), "adding device " + std::to_string(device_id));
  must(p4_pd_tarvex_switch_init(), "starting the library");
}

switch_device::~switch_device()
{
  p4_pd_tarvex_switch_cleanup();
  standin_device_remove(device_id);
}

}  // namespace tarvex::examples
