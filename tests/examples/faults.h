// Makes the switch under an example go wrong once, as the environment says: FAULT names one of the faults in a file
// that is linked into the program and arms them while it is loaded; REFUSE_CALL=N refuses the N-th driver call as a
// full table would.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tarvex_standin/standin.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

namespace tarvex::examples {

struct fault {
  const char *name;
  const char *trigger;  // it happens ahead of the first driver call of this name
  void (*happens)();
};

inline void go_wrong(const char *function, std::uint32_t, void *cookie)
{
  const auto *const chosen = static_cast<const fault *>(cookie);
  if (std::strcmp(function, chosen->trigger) != 0) return;
  standin_set_listener(nullptr, nullptr);
  chosen->happens();
}

inline bool arm(std::span<fault> faults)
{
  if (const char *const nth = std::getenv("REFUSE_CALL"))
    standin_refuse_call(static_cast<std::uint32_t>(std::strtoul(nth, nullptr, 10)), STANDIN_FULL);
  const char *const wanted = std::getenv("FAULT");
  if (wanted == nullptr) return false;
  for (fault &each : faults) {
    if (std::strcmp(wanted, each.name) != 0) continue;
    standin_set_listener(go_wrong, &each);
    return true;
  }
  std::abort();  // the test has another name for it
}

}  // namespace tarvex::examples
