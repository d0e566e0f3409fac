// How the text face stops on what cannot be: assertions that stand in release builds too.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "call_conventions.h"

namespace tarvex::pd {

[[noreturn, gnu::cold, gnu::noinline]] inline void stop_in_text(const char *assertion, const char *function)
{
  __assert_fail(assertion, pd_tarvex_source, __LINE__, function);
}

}  // namespace tarvex::pd
