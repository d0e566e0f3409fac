// All families on counters, meters, the WRED block and registers.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counters.h"
#include "meters.h"
#include "registers.h"
