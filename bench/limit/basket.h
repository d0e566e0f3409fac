/*
 * Twelve calls of the library, each beside a function written by hand that fills the same records.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_BENCH_BASKET_H
#define TARVEX_BENCH_BASKET_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

struct basket_call {
  const char *what;
  const char *library; /* names of the two functions */
  const char *by_hand;
  void (*call_library)(void);
  void (*call_by_hand)(void);
};

enum { BASKET_CALLS = 12 };
extern const struct basket_call basket[BASKET_CALLS];

/* Starts the library. To be called once, ahead of the others. */
void basket_start(void);

/* The arguments of round `n`: other addresses, prefix lengths and handles. */
void basket_arguments(unsigned n);

/* Makes call `c` both ways under the driver's eyes. Zero, told on standard error, if records or outputs differ. */
int basket_same(const struct basket_call *c);

#ifdef __cplusplus
}
#endif

#endif
