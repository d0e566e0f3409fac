// Learning reports of the switch, as they came.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "function_call.h"

namespace tarvex::shell {

struct learned_address {
  std::uint32_t device = 0;
  std::uint64_t mac = 0;
  std::uint32_t l2_domain = 0;
  std::uint32_t l2_interface = 0;
};

/// Keeps the latest reports. They come in a thread of the driver's; sessions of several threads read and switch it.
class digest_log {
 public:
  digest_log() = default;
  digest_log(const digest_log &) = delete;
  digest_log &operator=(const digest_log &) = delete;
  ~digest_log();

  /// Throw refused_error.
  void listen(const target &where);
  void stop();
  bool listening() const { return listening_; }

  std::vector<learned_address> latest() const;

 private:
  static constexpr std::size_t most_kept = 1000;

  static void receive(std::uint32_t session, void *message, void *self);
  void keep(std::uint32_t session, void *message);

  std::mutex switching_;      // held while the driver is told; its callback does without
  mutable std::mutex mutex_;  // of what is kept
  std::deque<learned_address> kept_;
  target where_;
  std::atomic<bool> listening_ = false;
};

}  // namespace tarvex::shell
