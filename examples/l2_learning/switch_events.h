// What the switch tells the control plane. The stand-in calls the two functions below in the thread whose call gave
// rise to them, here the one that plays the traffic; they only queue, and the control plane works the queue off in a
// thread of its own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tarvex_standin/standin.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <variant>

namespace tarvex::l2_learning {

struct expired_entry {
  pd_entry_hdl_t handle;
};

/// A digest message stays the driver's and is there until it is acknowledged.
using switch_event = std::variant<standin_digest_msg_t *, expired_entry>;

class switch_events {
 public:
  /// The next event, waiting for it; nothing once the round has ended and all of its events were taken.
  std::optional<switch_event> next();

  void begin_round();
  void end_round();

  /// Of type standin_digest_cb_t, the cookie being the queue.
  static void on_digest(pd_sess_hdl_t sess_hdl, standin_digest_msg_t *message, void *cookie);

  /// Of type standin_idle_cb_t.
  static void on_expiry(std::uint32_t dev_id, std::uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl, void *cookie);

 private:
  void push(switch_event event);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<switch_event> waiting_;
  bool round_ended_ = true;
};

}  // namespace tarvex::l2_learning
