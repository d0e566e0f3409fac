// What the engine remembers of a device, for all sessions of the process.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <mutex>

#include "change_queue.h"
#include "digest_log.h"
#include "guarded.h"
#include "own_writes.h"
#include "update_feed.h"
#include "update_record.h"

namespace tarvex::shell {

struct device_memory {
  guarded<own_writes> written;  // what the library cannot read back
  digest_log digests;
  update_record meant;
  update_feed updates;  // goes ahead of its receivers
  change_queue changes;
};

class switch_memory {
 public:
  /// Made at its first use; it stays where it is.
  device_memory &of(std::uint32_t device)
  {
    const std::lock_guard lock(mutex_);
    return devices_[device];
  }

 private:
  std::mutex mutex_;
  std::map<std::uint32_t, device_memory> devices_;
};

}  // namespace tarvex::shell
