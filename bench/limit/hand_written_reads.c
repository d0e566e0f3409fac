/*
 * Reads by hand.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <stdlib.h>

#include "hand_written.h"
#include "tarvex_platform/driver.h"
#include "wire_bytes.h"

enum { READ_DATA_BYTES = 28 };

/* Resources read back, attached ones alone. Zero if a block was needed and could not be had. */
static int build_resource_list(const drv_action_spec_t *action, pd_res_spec_t **list, uint32_t *count)
{
  *list = NULL;
  *count = 0;
  if (action->res_count == 0) return 1;
  const uint32_t told = action->res_count < DRV_ACTION_MAX_RES ? action->res_count : DRV_ACTION_MAX_RES;
  pd_res_spec_t *made = bf_sys_calloc(told, sizeof *made);
  if (made == NULL) return 0;
  for (uint32_t i = 0; i < told; ++i) {
    if (action->res[i].res_tag != DRV_RES_ATTACHED) continue;
    made[*count].res_hdl = action->res[i].res_hdl;
    made[*count].res_index = action->res[i].res_index;
    ++*count;
  }
  *list = made;
  return 1;
}

static inline void tell_action(char *name_out, uint32_t *enum_out, const char *name, uint32_t number)
{
  if (name_out != NULL) memcpy(name_out, name, strlen(name) + 1);
  if (enum_out != NULL) *enum_out = number;
}

pd_status_t hand_written_ipv4Host_get_entry(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                            pd_flag8_t read_from_hw,
                                            p4_pd_tarvex_switch_ipv4Host_match_spec_t *match_spec, char *action_name,
                                            void *action_spec, uint32_t *action_enum, uint8_t *no_key)
{
  uint8_t value[5] = {0}, mask[5] = {0}, data[READ_DATA_BYTES] = {0};
  drv_match_spec_t key = {.key_bits = 40, .key_bytes = sizeof value, .key_value = value, .key_mask = mask};
  drv_action_spec_t action;
  memset(&action, 0, sizeof action);
  action.act_data.data_bytes = sizeof data;
  action.act_data.data = data;
  uint32_t act_hdl = 0;
  const pd_status_t status =
      pipe_mgr_get_entry(sess_hdl, 0x100000a, dev_id & 0xff, entry_hdl, &key, &action, &act_hdl, read_from_hw & 0xff);
  if (status != BF_SUCCESS) return status;
  if (action.act_kinds != DRV_ACT_DATA) return PD_STATUS_UNEXPECTED_REPLY;
  if (key.key_mask == NULL) key.key_mask = mask;
  if (action.act_data.data == NULL) action.act_data.data = data;

  pd_res_spec_t *resources;
  uint32_t res_count;
  if (!build_resource_list(&action, &resources, &res_count)) return PD_STATUS_NO_MEMORY;
  /* All parameter structures of this table's actions are one word that the data has in two bytes. */
  const uint32_t parameter = get_16(action.act_data.data);
  switch (act_hdl) {
    case 0x2000007b:
      tell_action(action_name, action_enum, "p4_pd_tarvex_switch_setNextHop", 21);
      ((p4_pd_tarvex_switch_setNextHop_action_spec_t *)action_spec)->action_nextHop = parameter;
      break;
    case 0x2000007e:
      tell_action(action_name, action_enum, "p4_pd_tarvex_switch_setNextHop2", 22);
      ((p4_pd_tarvex_switch_setNextHop2_action_spec_t *)action_spec)->action_nextHop = parameter;
      break;
    case 0x20000081:
      tell_action(action_name, action_enum, "p4_pd_tarvex_switch_setNextHop3", 23);
      ((p4_pd_tarvex_switch_setNextHop3_action_spec_t *)action_spec)->action_nextHop = parameter;
      break;
    case 0x20000084:
      tell_action(action_name, action_enum, "p4_pd_tarvex_switch_setEcmp", 24);
      ((p4_pd_tarvex_switch_setEcmp_action_spec_t *)action_spec)->action_ecmpGroup = (uint16_t)parameter;
      break;
    case 0x20000086: tell_action(action_name, action_enum, "p4_pd_tarvex_switch_onMiss", 8); break;
    default: abort();
  }
  *no_key = key.key_value == NULL;
  if (key.key_value != NULL) {
    memset(match_spec, 0, sizeof *match_spec);
    match_spec->l3Info_vrfId = key.key_value[0];
    match_spec->ingIpv4_dip = get_32(key.key_value + 1);
  }
  if (resources != NULL) bf_sys_free(resources);
  return BF_SUCCESS;
}

pd_status_t hand_written_finalDropControl_get_entry(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                    pd_entry_hdl_t entry_hdl, pd_flag8_t read_from_hw,
                                                    p4_pd_tarvex_switch_finalDropControl_match_spec_t *match_spec,
                                                    uint32_t *priority, char *action_name, void *action_spec,
                                                    uint32_t *action_enum, uint8_t *no_key)
{
  (void)action_spec; /* no action of this table has parameters */
  uint8_t value[29] = {0}, mask[29] = {0}, data[READ_DATA_BYTES] = {0};
  drv_match_spec_t key = {.key_bits = 97, .key_bytes = sizeof value, .key_value = value, .key_mask = mask};
  drv_action_spec_t action;
  memset(&action, 0, sizeof action);
  action.act_data.data_bytes = sizeof data;
  action.act_data.data = data;
  uint32_t act_hdl = 0;
  const pd_status_t status =
      pipe_mgr_get_entry(sess_hdl, 0x100006a, dev_id & 0xff, entry_hdl, &key, &action, &act_hdl, read_from_hw & 0xff);
  if (status != BF_SUCCESS) return status;
  if (action.act_kinds != DRV_ACT_DATA) return PD_STATUS_UNEXPECTED_REPLY;
  if (key.key_mask == NULL) key.key_mask = mask;

  pd_res_spec_t *resources;
  uint32_t res_count;
  if (!build_resource_list(&action, &resources, &res_count)) return PD_STATUS_NO_MEMORY;
  switch (act_hdl) {
    case 0x20000406: tell_action(action_name, action_enum, "p4_pd_tarvex_switch_accept", 199); break;
    case 0x20000408: tell_action(action_name, action_enum, "p4_pd_tarvex_switch_acceptLog", 200); break;
    case 0x2000040b: tell_action(action_name, action_enum, "p4_pd_tarvex_switch_dropCount", 201); break;
    case 0x2000040e: tell_action(action_name, action_enum, "p4_pd_tarvex_switch_dropCountAndLog", 202); break;
    case 0x20000410: tell_action(action_name, action_enum, "p4_pd_tarvex_switch_finalDrop", 203); break;
    default: abort();
  }
  *no_key = key.key_value == NULL;
  *priority = key.priority;
  if (key.key_value != NULL) {
    p4_pd_tarvex_switch_finalDropControl_match_spec_t *to = match_spec;
    const uint8_t *v = key.key_value, *m = key.key_mask;
    memset(to, 0, sizeof *to);
    to->ig_intr_md_ingress_port = get_16(v);
    to->haloResultRow1_bestResult = get_32(v + 2);
    to->ingMd_drop = v[6];
    to->ingMd_dropSmac = v[7];
    to->ingMd_dropDmac = v[8];
    to->ingMd_invalidEgressPort = v[9];
    to->ingMd_samePortBridging = v[10];
    to->ingMd_routedMartian = v[11];
    to->ingMd_mlagPrune = v[12];
    to->ingMd_v4V6Valid = v[13];
    to->egrMd_egrL2AintfUnresolved = get_24(v + 14);
    to->ig_intr_md_for_tm_mcast_grp_a = get_16(v + 17);
    to->egrMd_routed = v[19];
    to->egrMd_trapToCpu = v[20];
    to->ingMd_dropDatalink = v[21];
    to->ingVlanStpCheck_stpBlocked = v[22];
    to->ingVlanStpCheck_invalidVlan = v[23];
    to->ingMd_dot1xDrop = v[24];
    to->ig_intr_md_for_tm_copy_to_cpu = v[25];
    to->ingMd_stormControlDrop = v[26];
    to->ingMd_bcast = v[27];
    to->ingMd_mcast = v[28];
    to->ig_intr_md_ingress_port_mask = get_16(m);
    to->haloResultRow1_bestResult_mask = get_32(m + 2);
    to->ingMd_drop_mask = m[6];
    to->ingMd_dropSmac_mask = m[7];
    to->ingMd_dropDmac_mask = m[8];
    to->ingMd_invalidEgressPort_mask = m[9];
    to->ingMd_samePortBridging_mask = m[10];
    to->ingMd_routedMartian_mask = m[11];
    to->ingMd_mlagPrune_mask = m[12];
    to->ingMd_v4V6Valid_mask = m[13];
    to->egrMd_egrL2AintfUnresolved_mask = get_24(m + 14);
    to->ig_intr_md_for_tm_mcast_grp_a_mask = get_16(m + 17);
    to->egrMd_routed_mask = m[19];
    to->egrMd_trapToCpu_mask = m[20];
    to->ingMd_dropDatalink_mask = m[21];
    to->ingVlanStpCheck_stpBlocked_mask = m[22];
    to->ingVlanStpCheck_invalidVlan_mask = m[23];
    to->ingMd_dot1xDrop_mask = m[24];
    to->ig_intr_md_for_tm_copy_to_cpu_mask = m[25];
    to->ingMd_stormControlDrop_mask = m[26];
    to->ingMd_bcast_mask = m[27];
    to->ingMd_mcast_mask = m[28];
  }
  if (resources != NULL) bf_sys_free(resources);
  return BF_SUCCESS;
}

pd_status_t hand_written_haloCount_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, pd_entry_hdl_t entry_hdl,
                                        uint32_t flags, pd_counter_value_t *value)
{
  enum { FROM_HARDWARE = 1 };
  if (flags & FROM_HARDWARE) {
    const pd_status_t synced =
        pipe_mgr_direct_stat_ent_database_sync(sess_hdl, dev_tgt & 0xffffffffffffu, 0x100005a, entry_hdl);
    if (synced != BF_SUCCESS) return synced;
  }
  drv_stat_data_t data = {0};
  const pd_status_t status =
      pipe_mgr_mat_ent_direct_stat_query(sess_hdl, (uint32_t)dev_tgt, 0x100005a, entry_hdl, &data);
  if (status != BF_SUCCESS) return status;
  value->packets = data.packets;
  value->bytes = data.bytes;
  return BF_SUCCESS;
}
