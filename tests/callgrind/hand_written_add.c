/*
 * The records of one add, filled by hand: what the library is measured against.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "hand_written_add.h"

#include <string.h>

#include "tarvex_platform/driver.h"

static void put_word(uint8_t *to, uint32_t word)
{
  word = __builtin_bswap32(word);
  memcpy(to, &word, sizeof word);
}

static void put_half(uint8_t *to, uint16_t half)
{
  half = __builtin_bswap16(half);
  memcpy(to, &half, sizeof half);
}

pd_status_t hand_written_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                             const p4_pd_tarvex_switch_ipv4Partition_match_spec_t *match_spec,
                             const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t *action_spec,
                             pd_entry_hdl_t *entry_hdl)
{
  uint8_t value[5], mask[5], data[4];
  drv_match_spec_t key = {.key_bits = 40, .key_bytes = 5, .key_value = value, .key_mask = mask};
  const uint16_t prefix = match_spec->ingIpv4_dipAndVrf_prefix_length;
  uint32_t prefix_mask = 0xffffffff;
  if (prefix > 32) {
    key.priority = 41;
  } else {
    key.priority = 32u - prefix;
    prefix_mask = prefix == 0 ? 0 : prefix_mask << (32 - prefix);
  }
  value[0] = (uint8_t)match_spec->l3Info_vrfId;
  mask[0] = 0xff;
  put_word(value + 1, match_spec->ingIpv4_dipAndVrf & prefix_mask);
  put_word(mask + 1, prefix_mask);

  drv_action_spec_t action;
  memset(&action, 0, sizeof action);
  action.act_kinds = DRV_ACT_DATA;
  action.act_data.data_bits = 32;
  action.act_data.data_bytes = 4;
  action.act_data.data = data;
  put_half(data, action_spec->action_partitionIndex);
  put_half(data + 2, action_spec->action_ecmpGroup);

  return pipe_mgr_mat_ent_add(sess_hdl, dev_tgt & 0xffffffffffff, 0x100000c, &key, 0x200000a4, &action, 0, 0,
                              entry_hdl);
}
