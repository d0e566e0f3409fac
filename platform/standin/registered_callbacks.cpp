// Control function that tells who is called.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"

using namespace tarvex::standin;

namespace {

const client_callback *callback_of(device &dev, std::uint32_t hdl)
{
  if (is_digest(hdl)) return &dev.services.digest;
  if (const match_table *const table = dev.table(hdl)) return &table->updated;
  if (const profile *const owner = dev.profile_of_members(hdl)) return &owner->member_updated;
  if (const profile *const owner = dev.profile_of_groups(hdl)) return &owner->group_updated;
  return nullptr;
}

}  // namespace

pd_status_t standin_registered_callback(uint32_t dev_id, uint32_t hdl, standin_callback_t *callback)
{
  return on_device(dev_id, [&](device &dev) -> pd_status_t {
    if (callback == nullptr) return STANDIN_BAD_ARGUMENT;
    const client_callback *const found = callback_of(dev, hdl);
    if (found == nullptr) return STANDIN_NO_OBJECT;
    *callback = {found->function, found->cookie, is_digest(hdl) ? dev.services.digest_session : 0};
    return success;
  });
}
