// SPDX-License-Identifier: Apache-2.0
#include "borrowed_callback.h"

#include "stand_in.h"
#include "status_text.h"

namespace tarvex::shell {

registered_callback borrowed_callback::registered(std::uint32_t device) const
{
  standin_callback_t found{};
  require_success(require_stand_in().registered_callback(device, handle_, &found), "asking who is told of updates");
  return {found.function, found.cookie, found.sess_hdl};
}

registered_callback borrowed_callback::earlier() const
{
  const std::lock_guard lock(mutex_);
  return earlier_;
}

void borrowed_callback::keep(const registered_callback &callback)
{
  const std::lock_guard lock(mutex_);
  earlier_ = callback;
}

}  // namespace tarvex::shell
