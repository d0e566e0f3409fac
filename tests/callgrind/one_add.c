/*
 * Adds entries both ways over a driver that does nothing. Both ways must hand it the same records.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <stdio.h>
#include <string.h>

#include "hand_written_add.h"
#include "tarvex_platform/driver.h"

enum { key_size = 5, rounds = 1000 };

static int watching = 1;
static uint8_t seen[sizeof(drv_match_spec_t) + 2 * key_size + sizeof(drv_action_spec_t) + 4];

pd_status_t pipe_mgr_mat_ent_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                 drv_match_spec_t *match_spec, uint32_t act_hdl, drv_action_spec_t *action_spec,
                                 uint32_t ttl, uint32_t flags, pd_entry_hdl_t *entry_hdl)
{
  (void)sess_hdl, (void)dev_tgt, (void)tbl_hdl, (void)act_hdl, (void)ttl, (void)flags, (void)entry_hdl;
  if (!watching) return 0;
  uint8_t *at = seen;
  memcpy(at, match_spec->key_value, key_size), at += key_size;
  memcpy(at, match_spec->key_mask, key_size), at += key_size;
  memcpy(at, action_spec->act_data.data, 4), at += 4;
  match_spec->key_value = match_spec->key_mask = action_spec->act_data.data = NULL;
  memcpy(at, match_spec, sizeof *match_spec), at += sizeof *match_spec;
  memcpy(at, action_spec, sizeof *action_spec);
  return 0;
}

/* The library takes its address when it is loaded. */
pd_status_t p4_pd_ms_grp_update_res(uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, pd_grp_hdl_t grp_hdl, void *state)
{
  (void)dev_id, (void)mbr_hdl, (void)grp_hdl, (void)state;
  return 0;
}

int main(void)
{
  const pd_dev_tgt_t target = pd_dev_tgt(0, PD_ALL_PIPES);
  p4_pd_tarvex_switch_ipv4Partition_match_spec_t key = {.l3Info_vrfId = 7, .ingIpv4_dipAndVrf = 0x0a0b0c0d};
  const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t action = {.action_partitionIndex = 0x1234,
                                                                      .action_ecmpGroup = 0x5678};
  pd_entry_hdl_t entry = 0;
  for (int round = 0; round < rounds; ++round) {
    uint8_t by_hand[sizeof seen];
    key.ingIpv4_dipAndVrf_prefix_length = (uint16_t)(round % 34);
    hand_written_add(1, target, &key, &action, &entry);
    memcpy(by_hand, seen, sizeof seen);
    p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxEcmp(1, target, &key, &action, &entry);
    if (watching && memcmp(by_hand, seen, sizeof seen) != 0) {
      fprintf(stderr, "prefix length %d: the library's records are not those written by hand\n", round % 34);
      return 1;
    }
    watching = round < 34; /* all prefix lengths are compared, the driver does nothing from here on */
  }
  return 0;
}
