// The queue of what the switch tells the control plane.
//
// SPDX-License-Identifier: Apache-2.0
#include "switch_events.h"

namespace tarvex::l2_learning {

std::optional<switch_event> switch_events::next()
{
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return !waiting_.empty() || round_ended_; });
  if (waiting_.empty()) return std::nullopt;
  const switch_event event = waiting_.front();
  waiting_.pop_front();
  return event;
}

void switch_events::begin_round()
{
  const std::lock_guard lock(mutex_);
  round_ended_ = false;
}

void switch_events::end_round()
{
  const std::lock_guard lock(mutex_);
  round_ended_ = true;
  changed_.notify_one();
}

void switch_events::push(switch_event event)
{
  const std::lock_guard lock(mutex_);
  waiting_.push_back(event);
  changed_.notify_one();
}

void switch_events::on_digest(pd_sess_hdl_t, standin_digest_msg_t *message, void *cookie)
{
  static_cast<switch_events *>(cookie)->push(message);
}

void switch_events::on_expiry(std::uint32_t, std::uint32_t, pd_entry_hdl_t entry_hdl, void *cookie)
{
  static_cast<switch_events *>(cookie)->push(expired_entry{entry_hdl});
}

}  // namespace tarvex::l2_learning
