/*
 * A driver that is not the stand-in switch, as far as a program sees: it has no control functions, and its device is
 * there from the start, with 100 cells in the meter pdpMeter.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "tarvex_standin/standin.h"

__attribute__((constructor)) static void add_device(void)
{
  standin_device_add(0);
  standin_size_limit(0, 0x5000002, 100);
}
