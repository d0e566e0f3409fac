/*
 * A user's program in C: a default entry, written and read back.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <stdio.h>
#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_standin/standin.h>

int main(void)
{
  pd_entry_hdl_t entry = 0;
  char text[PD_ENTRY_TEXT_SIZE] = "";
  if (standin_device_add(0) != BF_SUCCESS || p4_pd_tarvex_switch_init() != BF_SUCCESS) return 1;
  const pd_status_t status =
      p4_pd_tarvex_switch_ipv4Host_set_default_action_onMiss(1, pd_dev_tgt(0, PD_ALL_PIPES), &entry);
  p4_pd_tarvex_switch_ipv4Host_value(1, 0, entry, 0, text);
  printf("C: status %u, %s\n", (unsigned)status, text);
  return p4_pd_tarvex_switch_cleanup() != BF_SUCCESS;
}
