// What stands in front of every driver call.
//
// SPDX-License-Identifier: Apache-2.0
#include "call_gate.h"

#include <mutex>

#include "tarvex_standin/standin.h"

namespace tarvex::standin {
namespace {

struct gate {
  std::mutex mutex;
  standin_listener_t listener = nullptr;
  void *cookie = nullptr;
  std::uint32_t calls_to_refusal = 0;  // 0: none
  pd_status_t refusal = BF_SUCCESS;

  void update_watch() const
  {
    detail::gate_watched.store(listener != nullptr || calls_to_refusal != 0, std::memory_order_relaxed);
  }
};

gate &the_gate()
{
  static gate instance;
  return instance;
}

}  // namespace

std::atomic<bool> detail::gate_watched{false};

pd_status_t detail::announce_watched(const char *function, std::uint32_t handle)
{
  gate &g = the_gate();
  standin_listener_t listener = nullptr;
  void *cookie = nullptr;
  pd_status_t status = BF_SUCCESS;
  {
    const std::lock_guard lock(g.mutex);
    listener = g.listener;
    cookie = g.cookie;
    if (g.calls_to_refusal != 0 && --g.calls_to_refusal == 0) {
      status = g.refusal;
      g.update_watch();
    }
  }
  if (listener != nullptr) listener(function, handle, cookie);
  return status;
}

void reset_gate()
{
  standin_set_listener(nullptr, nullptr);
  standin_refuse_call(0, BF_SUCCESS);
}

}  // namespace tarvex::standin

using namespace tarvex::standin;

void standin_refuse_call(uint32_t nth, pd_status_t status)
{
  const std::lock_guard lock(the_gate().mutex);
  the_gate().calls_to_refusal = nth;
  the_gate().refusal = status;
  the_gate().update_watch();
}

void standin_set_listener(standin_listener_t listener, void *cookie)
{
  const std::lock_guard lock(the_gate().mutex);
  the_gate().listener = listener;
  the_gate().cookie = cookie;
  the_gate().update_watch();
}
