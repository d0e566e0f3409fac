/*
 * Makes the calls of the basket both ways, for a tool that counts instructions: first under the driver's eyes, then
 * round by round within `counted_rounds`. With --list it tells the names of the functions instead, a pair a line.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <stdio.h>
#include <string.h>

#include "basket.h"

enum { ROUNDS = 340 };

void counted_rounds(void);

__attribute__((noinline)) void counted_rounds(void)
{
  for (unsigned n = 0; n < ROUNDS; ++n) {
    basket_arguments(n);
    for (const struct basket_call *c = basket; c != basket + BASKET_CALLS; ++c) {
      c->call_library();
      c->call_by_hand();
    }
  }
}

int main(int argc, char **argv)
{
  if (argc == 2 && strcmp(argv[1], "--list") == 0) {
    for (const struct basket_call *c = basket; c != basket + BASKET_CALLS; ++c)
      printf("%s\t%s\t%s\n", c->what, c->library, c->by_hand);
    return 0;
  }
  basket_start();
  for (unsigned n = 0; n < ROUNDS; ++n) {
    basket_arguments(n);
    for (const struct basket_call *c = basket; c != basket + BASKET_CALLS; ++c)
      if (!basket_same(c)) return 1;
  }
  counted_rounds();
  return 0;
}
