// The driver functions and the control functions, declared for export. Every source that defines one includes this
// header ahead of any other that declares them: the platform's header itself says nothing of visibility.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#pragma GCC visibility push(default)
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"
#pragma GCC visibility pop
