/*
 * Entry writes by hand.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "hand_written.h"
#include "tarvex_platform/driver.h"
#include "wire_bytes.h"

/* Device and pipe; what stands above them never reaches the driver. */
static const pd_dev_tgt_t target_bits = 0xffffffffffff;

static void *ecmp_members;

void hand_written_start(void *ecmp_member_state) { ecmp_members = ecmp_member_state; }

static inline void begin_action(drv_action_spec_t *action, uint8_t *data, uint16_t bits, uint16_t bytes)
{
  memset(action, 0, sizeof *action);
  action->act_kinds = DRV_ACT_DATA;
  action->act_data.data_bits = bits;
  action->act_data.data_bytes = bytes;
  action->act_data.data = data;
}

pd_status_t hand_written_ipv4Host_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                      const p4_pd_tarvex_switch_ipv4Host_match_spec_t *match_spec,
                                      const p4_pd_tarvex_switch_setNextHop_action_spec_t *action_spec, uint32_t ttl,
                                      pd_entry_hdl_t *entry_hdl)
{
  uint8_t value[5], mask[5], data[2];
  drv_match_spec_t key = {.key_bits = 40, .key_bytes = sizeof value, .key_value = value, .key_mask = mask};
  value[0] = (uint8_t)match_spec->l3Info_vrfId;
  put_32(value + 1, match_spec->ingIpv4_dip);
  memset(mask, 0xff, sizeof mask);

  drv_action_spec_t action;
  begin_action(&action, data, 16, sizeof data);
  put_16(data, (uint16_t)action_spec->action_nextHop);
  return pipe_mgr_mat_ent_add(sess_hdl, dev_tgt & target_bits, 0x100000a, &key, 0x2000007b, &action, ttl, 0, entry_hdl);
}

pd_status_t hand_written_ipv6Host_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                      const p4_pd_tarvex_switch_ipv6Host_match_spec_t *match_spec,
                                      const p4_pd_tarvex_switch_setNextHop_action_spec_t *action_spec, uint32_t ttl,
                                      pd_entry_hdl_t *entry_hdl)
{
  uint8_t value[17], mask[17], data[2];
  drv_match_spec_t key = {.key_bits = 136, .key_bytes = sizeof value, .key_value = value, .key_mask = mask};
  value[0] = (uint8_t)match_spec->l3Info_vrfId;
  memcpy(value + 1, match_spec->ingIpv6_dip, 16);
  memset(mask, 0xff, sizeof mask);

  drv_action_spec_t action;
  begin_action(&action, data, 16, sizeof data);
  put_16(data, (uint16_t)action_spec->action_nextHop);
  return pipe_mgr_mat_ent_add(sess_hdl, dev_tgt & target_bits, 0x100000b, &key, 0x20000089, &action, ttl, 0, entry_hdl);
}

pd_status_t hand_written_ipv4Partition_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                           const p4_pd_tarvex_switch_ipv4Partition_match_spec_t *match_spec,
                                           const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t *action_spec,
                                           pd_entry_hdl_t *entry_hdl)
{
  uint8_t value[5], mask[5], data[4];
  drv_match_spec_t key = {.key_bits = 40, .key_bytes = sizeof value, .key_value = value, .key_mask = mask};
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
  put_32(value + 1, match_spec->ingIpv4_dipAndVrf & prefix_mask);
  put_32(mask + 1, prefix_mask);

  drv_action_spec_t action;
  begin_action(&action, data, 32, sizeof data);
  put_16(data, action_spec->action_partitionIndex);
  put_16(data + 2, action_spec->action_ecmpGroup);
  return pipe_mgr_mat_ent_add(sess_hdl, dev_tgt & target_bits, 0x100000c, &key, 0x200000a4, &action, 0, 0, entry_hdl);
}

pd_status_t hand_written_ipv4FinalResolve_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                              const p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_t *match_spec,
                                              const p4_pd_tarvex_switch_setNextHop_action_spec_t *action_spec,
                                              pd_entry_hdl_t *entry_hdl)
{
  uint8_t value[6], mask[6], data[2];
  drv_match_spec_t key = {.partition_index = match_spec->ingIpv4_fibPartitionIndex,
                          .key_bits = 48,
                          .key_bytes = sizeof value,
                          .key_value = value,
                          .key_mask = mask};
  const uint16_t prefix = match_spec->ingIpv4_dip_prefix_length;
  uint32_t prefix_mask = 0xffffffff;
  uint16_t partition_mask = 0xffff;
  if (prefix > 32) {
    key.priority = 49;
  } else {
    key.priority = 32u - prefix;
    prefix_mask = prefix == 0 ? 0 : prefix_mask << (32 - prefix);
    partition_mask = 0;
  }
  put_16(value, 0);
  put_16(mask, partition_mask);
  put_32(value + 2, match_spec->ingIpv4_dip & prefix_mask);
  put_32(mask + 2, prefix_mask);

  drv_action_spec_t action;
  begin_action(&action, data, 16, sizeof data);
  put_16(data, (uint16_t)action_spec->action_nextHop);
  return pipe_mgr_mat_ent_add(sess_hdl, dev_tgt & target_bits, 0x100000f, &key, 0x200000cf, &action, 0, 0, entry_hdl);
}

/* Values are cut by the mask as it is given, masks to the width of the field. */

static inline void put_masked_8(uint8_t *value, uint8_t *mask, uint8_t v, uint8_t m, uint8_t width)
{
  *value = v & m;
  *mask = m & width;
}

static inline void put_masked_16(uint8_t *value, uint8_t *mask, uint16_t v, uint16_t m, uint16_t width)
{
  put_16(value, v & m);
  put_16(mask, m & width);
}

static inline void put_masked_24(uint8_t *value, uint8_t *mask, uint32_t v, uint32_t m, uint32_t width)
{
  put_24(value, v & m);
  put_24(mask, m & width);
}

static inline void put_masked_32(uint8_t *value, uint8_t *mask, uint32_t v, uint32_t m)
{
  put_32(value, v & m);
  put_32(mask, m);
}

pd_status_t hand_written_finalDropControl_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                              const p4_pd_tarvex_switch_finalDropControl_match_spec_t *match_spec,
                                              uint32_t priority, pd_entry_hdl_t *entry_hdl)
{
  const p4_pd_tarvex_switch_finalDropControl_match_spec_t *m = match_spec;
  uint8_t value[29], mask[29], data[1];
  drv_match_spec_t key = {
      .key_bits = 97, .key_bytes = sizeof value, .key_value = value, .key_mask = mask, .priority = priority};
  put_masked_16(value, mask, m->ig_intr_md_ingress_port, m->ig_intr_md_ingress_port_mask, 0x1ff);
  put_masked_32(value + 2, mask + 2, m->haloResultRow1_bestResult, m->haloResultRow1_bestResult_mask);
  put_masked_8(value + 6, mask + 6, m->ingMd_drop, m->ingMd_drop_mask, 1);
  put_masked_8(value + 7, mask + 7, m->ingMd_dropSmac, m->ingMd_dropSmac_mask, 1);
  put_masked_8(value + 8, mask + 8, m->ingMd_dropDmac, m->ingMd_dropDmac_mask, 1);
  put_masked_8(value + 9, mask + 9, m->ingMd_invalidEgressPort, m->ingMd_invalidEgressPort_mask, 1);
  put_masked_8(value + 10, mask + 10, m->ingMd_samePortBridging, m->ingMd_samePortBridging_mask, 1);
  put_masked_8(value + 11, mask + 11, m->ingMd_routedMartian, m->ingMd_routedMartian_mask, 1);
  put_masked_8(value + 12, mask + 12, m->ingMd_mlagPrune, m->ingMd_mlagPrune_mask, 1);
  put_masked_8(value + 13, mask + 13, m->ingMd_v4V6Valid, m->ingMd_v4V6Valid_mask, 7);
  put_masked_24(value + 14, mask + 14, m->egrMd_egrL2AintfUnresolved, m->egrMd_egrL2AintfUnresolved_mask, 0xfffff);
  put_masked_16(value + 17, mask + 17, m->ig_intr_md_for_tm_mcast_grp_a, m->ig_intr_md_for_tm_mcast_grp_a_mask, 0xffff);
  put_masked_8(value + 19, mask + 19, m->egrMd_routed, m->egrMd_routed_mask, 1);
  put_masked_8(value + 20, mask + 20, m->egrMd_trapToCpu, m->egrMd_trapToCpu_mask, 1);
  put_masked_8(value + 21, mask + 21, m->ingMd_dropDatalink, m->ingMd_dropDatalink_mask, 1);
  put_masked_8(value + 22, mask + 22, m->ingVlanStpCheck_stpBlocked, m->ingVlanStpCheck_stpBlocked_mask, 1);
  put_masked_8(value + 23, mask + 23, m->ingVlanStpCheck_invalidVlan, m->ingVlanStpCheck_invalidVlan_mask, 1);
  put_masked_8(value + 24, mask + 24, m->ingMd_dot1xDrop, m->ingMd_dot1xDrop_mask, 1);
  put_masked_8(value + 25, mask + 25, m->ig_intr_md_for_tm_copy_to_cpu, m->ig_intr_md_for_tm_copy_to_cpu_mask, 1);
  put_masked_8(value + 26, mask + 26, m->ingMd_stormControlDrop, m->ingMd_stormControlDrop_mask, 1);
  put_masked_8(value + 27, mask + 27, m->ingMd_bcast, m->ingMd_bcast_mask, 1);
  put_masked_8(value + 28, mask + 28, m->ingMd_mcast, m->ingMd_mcast_mask, 1);

  drv_action_spec_t action;
  begin_action(&action, data, 0, 0);
  action.res_count = 1;
  action.res[0].res_hdl = 0x4000006;
  action.res[0].res_tag = DRV_RES_ATTACHED;
  return pipe_mgr_mat_ent_add(sess_hdl, dev_tgt & target_bits, 0x100006a, &key, 0x2000040b, &action, 0, 0, entry_hdl);
}

pd_status_t hand_written_nextHop_modify(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                        const p4_pd_tarvex_switch_setNextHopDetails_action_spec_t *action_spec)
{
  uint8_t data[8];
  drv_action_spec_t action;
  begin_action(&action, data, 60, sizeof data);
  put_24(data, action_spec->action_dmacOui);
  put_24(data + 3, action_spec->action_dmacStation);
  put_16(data + 6, action_spec->action_domain);
  return pipe_mgr_mat_ent_set_action(sess_hdl, dev_id & 0xff, 0x100001b, entry_hdl, 0x20000122, &action, 0);
}

pd_status_t hand_written_ipv4ShortMaskLpm_delete(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                 const p4_pd_tarvex_switch_ipv4ShortMaskLpm_match_spec_t *match_spec)
{
  uint8_t value[5], mask[5];
  drv_match_spec_t key = {.key_bits = 40, .key_bytes = sizeof value, .key_value = value, .key_mask = mask};
  const uint16_t prefix = match_spec->ingIpv4_dip_prefix_length;
  uint32_t prefix_mask = 0xffffffff;
  if (prefix > 32) {
    key.priority = 41;
  } else {
    key.priority = 32u - prefix;
    prefix_mask = prefix == 0 ? 0 : prefix_mask << (32 - prefix);
  }
  value[0] = (uint8_t)match_spec->l3Info_vrfId;
  mask[0] = 0xff;
  put_32(value + 1, match_spec->ingIpv4_dip & prefix_mask);
  put_32(mask + 1, prefix_mask);
  return pipe_mgr_mat_ent_del_by_match_spec(sess_hdl, dev_tgt & target_bits, 0x1000015, &key, 0);
}

pd_status_t hand_written_ipv4Partition_default(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                               const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t *action_spec,
                                               pd_entry_hdl_t *entry_hdl)
{
  uint8_t data[4];
  drv_action_spec_t action;
  begin_action(&action, data, 32, sizeof data);
  put_16(data, action_spec->action_partitionIndex);
  put_16(data + 2, action_spec->action_ecmpGroup);
  return pipe_mgr_mat_default_entry_set(sess_hdl, dev_tgt & target_bits, 0x100000c, 0x200000a4, &action, 0, entry_hdl);
}

pd_status_t hand_written_ecmpGroup_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                       const p4_pd_tarvex_switch_ecmpGroup_match_spec_t *match_spec,
                                       pd_mbr_hdl_t mbr_hdl, pd_entry_hdl_t *entry_hdl)
{
  uint8_t value[2], mask[2] = {0xff, 0xff};
  drv_match_spec_t key = {.key_bits = 16, .key_bytes = sizeof value, .key_value = value, .key_mask = mask};
  put_16(value, match_spec->l3_ecmpGroup);

  drv_action_spec_t action;
  memset(&action, 0, sizeof action);
  action.act_kinds = DRV_ACT_MEMBER;
  action.mbr_hdl = mbr_hdl;
  uint32_t act_hdl = 0, res_count = 0;
  pd_res_spec_t *resources = NULL;
  const uint32_t device = (uint32_t)dev_tgt & 0xff;
  const pd_status_t status = p4_pd_ms_get_mbr_act(ecmp_members, device, mbr_hdl, &act_hdl);
  if (status != BF_SUCCESS) return status;
  p4_pd_ms_mbr_get_res(ecmp_members, device, mbr_hdl, &res_count, &resources);
  return pipe_mgr_mat_ent_add(sess_hdl, dev_tgt & target_bits, 0x1000018, &key, act_hdl, &action, 0, 0, entry_hdl);
}
