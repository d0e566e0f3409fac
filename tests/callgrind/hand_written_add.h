/*
 * An add of an ipv4Partition entry with setIpv4PrtIdxEcmp, written for this table and this action alone.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_HAND_WRITTEN_ADD_H
#define TARVEX_HAND_WRITTEN_ADD_H

#include "tarvex_pd/tarvex_pd.h"

pd_status_t hand_written_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                             const p4_pd_tarvex_switch_ipv4Partition_match_spec_t *match_spec,
                             const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t *action_spec,
                             pd_entry_hdl_t *entry_hdl);

#endif
