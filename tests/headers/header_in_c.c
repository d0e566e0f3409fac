/*
 * The umbrella header, alone and first, in a C program that makes a write and reads an entry back.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <tarvex_pd/tarvex_pd.h>

#include <tarvex_platform/driver.h>
#include <tarvex_standin/standin.h>

pd_status_t add_and_read(pd_sess_hdl_t session);

pd_status_t add_and_read(pd_sess_hdl_t session)
{
  p4_pd_tarvex_switch_ipv4Host_match_spec_t key = {.l3Info_vrfId = 1, .ingIpv4_dip = 0x0a000001};
  p4_pd_tarvex_switch_setEcmp_action_spec_t action = {.action_ecmpGroup = 7};
  char name[P4_PD_TARVEX_SWITCH_ACTION_NAME_SIZE];
  uint8_t no_key;
  pd_entry_hdl_t entry;
  const pd_status_t status = p4_pd_tarvex_switch_ipv4Host_table_add_with_setEcmp(session, pd_dev_tgt(0, PD_ALL_PIPES),
                                                                                 &key, &action, 60, &entry);
  if (status != BF_SUCCESS) return status;
  return p4_pd_tarvex_switch_ipv4Host_get_entry(session, 0, entry, 0, &key, name, &action, NULL, &no_key);
}
