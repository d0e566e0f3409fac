// Functions that this process may have or not: the engine is linked with no driver and no tracing library.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <dlfcn.h>

namespace tarvex::shell {

/// False, and null, where no library of the process exports the name.
template <typename Function>
bool find_in_process(Function &function, const char *name)
{
  function = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
  return function != nullptr;
}

}  // namespace tarvex::shell
