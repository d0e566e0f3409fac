// The definitions that the interposer exports.
//
// SPDX-License-Identifier: Apache-2.0
#include "interposed.h"

using tarvex::trace::driver_call;

#include "driver_definitions.inc"
