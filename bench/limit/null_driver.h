/*
 * A driver that does nothing, for measuring what stands above it. While it watches it keeps the last call with its
 * records; what it answers to a read is set beforehand.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_BENCH_NULL_DRIVER_H
#define TARVEX_BENCH_NULL_DRIVER_H

#include "tarvex_platform/driver.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { NULL_DRIVER_KEY_ROOM = 32, NULL_DRIVER_DATA_ROOM = 32 };

/* A call as it came in. Pointers in the records are null here; what they pointed at stands behind them. */
struct null_driver_call {
  const char *function;
  uint64_t target;
  uint32_t session, table, entry, action, further[2];
  drv_match_spec_t key;
  drv_action_spec_t action_spec;
  uint8_t key_value[NULL_DRIVER_KEY_ROOM], key_mask[NULL_DRIVER_KEY_ROOM], data[NULL_DRIVER_DATA_ROOM];
};

extern int null_driver_watches;
extern struct null_driver_call null_driver_seen;
/* The member-selector state of the last question about a member. */
extern ms_state *null_driver_state;
/* The action handle of read entries. */
extern uint32_t null_driver_read_action;

#ifdef __cplusplus
}
#endif

#endif
