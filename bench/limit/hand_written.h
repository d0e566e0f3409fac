/*
 * The functions that the library is measured against: each fills the driver's records for one table and one action, as
 * one would write it for that table alone, with the checks and results of the exported function of the same name.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_BENCH_HAND_WRITTEN_H
#define TARVEX_BENCH_HAND_WRITTEN_H

#include "tarvex_pd/tarvex_pd.h"

/* Entry writes. */

pd_status_t hand_written_ipv4Host_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                      const p4_pd_tarvex_switch_ipv4Host_match_spec_t *match_spec,
                                      const p4_pd_tarvex_switch_setNextHop_action_spec_t *action_spec, uint32_t ttl,
                                      pd_entry_hdl_t *entry_hdl);
pd_status_t hand_written_ipv6Host_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                      const p4_pd_tarvex_switch_ipv6Host_match_spec_t *match_spec,
                                      const p4_pd_tarvex_switch_setNextHop_action_spec_t *action_spec, uint32_t ttl,
                                      pd_entry_hdl_t *entry_hdl);
pd_status_t hand_written_ipv4Partition_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                           const p4_pd_tarvex_switch_ipv4Partition_match_spec_t *match_spec,
                                           const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t *action_spec,
                                           pd_entry_hdl_t *entry_hdl);
pd_status_t hand_written_ipv4FinalResolve_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                              const p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_t *match_spec,
                                              const p4_pd_tarvex_switch_setNextHop_action_spec_t *action_spec,
                                              pd_entry_hdl_t *entry_hdl);
pd_status_t hand_written_finalDropControl_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                              const p4_pd_tarvex_switch_finalDropControl_match_spec_t *match_spec,
                                              uint32_t priority, pd_entry_hdl_t *entry_hdl);
pd_status_t hand_written_nextHop_modify(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                        const p4_pd_tarvex_switch_setNextHopDetails_action_spec_t *action_spec);
pd_status_t hand_written_ipv4ShortMaskLpm_delete(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                 const p4_pd_tarvex_switch_ipv4ShortMaskLpm_match_spec_t *match_spec);
pd_status_t hand_written_ipv4Partition_default(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                               const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t *action_spec,
                                               pd_entry_hdl_t *entry_hdl);

/* An entry that points at a member. The state is that of the table's profile. */

void hand_written_start(void *ecmp_member_state);
pd_status_t hand_written_ecmpGroup_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                       const p4_pd_tarvex_switch_ecmpGroup_match_spec_t *match_spec,
                                       pd_mbr_hdl_t mbr_hdl, pd_entry_hdl_t *entry_hdl);

/* Reads. */

pd_status_t hand_written_ipv4Host_get_entry(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                            pd_flag8_t read_from_hw,
                                            p4_pd_tarvex_switch_ipv4Host_match_spec_t *match_spec, char *action_name,
                                            void *action_spec, uint32_t *action_enum, uint8_t *no_key);
pd_status_t hand_written_finalDropControl_get_entry(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                    pd_entry_hdl_t entry_hdl, pd_flag8_t read_from_hw,
                                                    p4_pd_tarvex_switch_finalDropControl_match_spec_t *match_spec,
                                                    uint32_t *priority, char *action_name, void *action_spec,
                                                    uint32_t *action_enum, uint8_t *no_key);
pd_status_t hand_written_haloCount_read(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, pd_entry_hdl_t entry_hdl,
                                        uint32_t flags, pd_counter_value_t *value);

#endif
