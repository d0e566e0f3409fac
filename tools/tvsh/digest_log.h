// Learning reports of the switch, as they came.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "borrowed_callback.h"
#include "function_call.h"

namespace tarvex::shell {

/// An entry of the pipeline's digest, as it came.
struct learned_entry {
  std::uint32_t device = 0;
  std::vector<std::uint8_t> bytes;
};

/// Keeps the latest reports. They come in a thread of the driver's; sessions of several threads read and switch it.
/// Whoever of the process listened before gets the reports all the same, and it is he who acknowledges them.
class digest_log {
 public:
  digest_log() = default;
  digest_log(const digest_log &) = delete;
  digest_log &operator=(const digest_log &) = delete;
  ~digest_log();

  /// Throw refused_error.
  void listen(const target &where);
  void stop();
  /// The device is gone, and the callback with it.
  void forget() { listening_ = false; }
  bool listening() const { return listening_; }

  std::vector<learned_entry> latest() const;

 private:
  static constexpr std::size_t most_kept = 1000;

  static void receive(std::uint32_t session, void *message, void *self);
  void keep(const void *message);
  void give_back();

  std::mutex switching_;      // held while the driver is told; its callback does without
  mutable std::mutex mutex_;  // of what is kept
  std::deque<learned_entry> kept_;
  borrowed_callback callback_{calls::digests.empty() ? 0 : calls::digests.front().handle,
                              reinterpret_cast<pd_callback_t>(&receive), this};
  target where_;
  std::atomic<bool> listening_ = false;
};

}  // namespace tarvex::shell
