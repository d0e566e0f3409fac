// SPDX-License-Identifier: Apache-2.0
#include "echo_driver.h"

namespace tarvex::trace::test {

echo &last_call()
{
  static thread_local echo call;
  return call;
}

}  // namespace tarvex::trace::test

using namespace tarvex::trace::test;

void *bf_sys_calloc(size_t count, size_t size) { return echoed<void *>(__func__, count, size); }
void bf_sys_free(void *block) { echoed<pd_status_t>(__func__, block); }
