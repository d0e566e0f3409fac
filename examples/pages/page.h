/*
 * What each of the pages begins and ends with: a stand-in switch with one empty device, and the library on it. With a
 * real driver the device is there already, and the session is one of the driver's.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef PAGE_H
#define PAGE_H

#include <stdio.h>
#include <stdlib.h>
#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_standin/standin.h>

enum { device = 0, session = 1 };

/** Ends the program if a call failed; 2 is the exit status for a driver that refused. */
static inline void must(pd_status_t status, const char *what)
{
  if (status == BF_SUCCESS) return;
  const char *const name = standin_status_name(status);
  fprintf(stderr, "%s: status %u (%s)\n", what, (unsigned)status, name != NULL ? name : "of the library");
  exit(2);
}

static inline pd_dev_tgt_t all_pipes(void) { return pd_dev_tgt(device, PD_ALL_PIPES); }

#define IPV4_TEXT_SIZE 16

/** Writes an address as 10.0.0.1, and returns the text. */
static inline const char *ipv4_text(uint32_t address, char text[IPV4_TEXT_SIZE])
{
  snprintf(text, IPV4_TEXT_SIZE, "%u.%u.%u.%u", (unsigned)(address >> 24), (unsigned)(address >> 16 & 0xff),
           (unsigned)(address >> 8 & 0xff), (unsigned)(address & 0xff));
  return text;
}

static inline void begin(void)
{
  must(standin_device_add(device), "adding the device");
  must(p4_pd_tarvex_switch_init(), "starting the library");
}

static inline void end(void)
{
  must(p4_pd_tarvex_switch_cleanup(), "stopping the library");
  must(standin_device_remove(device), "removing the device");
  if (fflush(stdout) == 0 && !ferror(stdout)) return;
  perror("standard output cannot be written");
  exit(4);
}

#endif
