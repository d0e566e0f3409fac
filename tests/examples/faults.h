// Makes the switch under an example go wrong once, as the environment's FAULT names it: a file of faults that is linked
// into the program arms them while it is loaded.
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
