// Labels for counters: an entry's key in words that a person reads, for the tables with a counter to each entry.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>

#include "tarvex_pd/egress_drop_and_counters.h"
#include "tarvex_pd/halo_transforms.h"
#include "tarvex_pd/l2.h"
#include "tarvex_pd/policing_and_drop.h"
#include "tarvex_pd/port_mapping.h"
#include "text_rows.h"

namespace tarvex::pd {

// All give the length without the NUL.
std::uint32_t counter_label(const p4_pd_tarvex_switch_l2DmacClassify_match_spec_t &key, char *buf);
std::uint32_t counter_label(const p4_pd_tarvex_switch_ingressPortDropCheck_match_spec_t &key, char *buf);
std::uint32_t counter_label(const p4_pd_tarvex_switch_haloCounters_match_spec_t &key, char *buf);
std::uint32_t counter_label(const p4_pd_tarvex_switch_finalDropControl_match_spec_t &key, char *buf);
std::uint32_t counter_label(const p4_pd_tarvex_switch_trapToCpu_match_spec_t &key, char *buf);
std::uint32_t counter_label(const p4_pd_tarvex_switch_egressPortDropCheck_match_spec_t &key, char *buf);
std::uint32_t counter_label(const p4_pd_tarvex_switch_ingL2DomainCount_match_spec_t &key, char *buf);
std::uint32_t counter_label(const p4_pd_tarvex_switch_egrL2DomainCount_match_spec_t &key, char *buf);

/// Reads the entry from the hardware. 0 with the buffer untouched if it cannot be read or has no key.
template <class Key>
std::uint32_t entry_counter_label(const table_text &table, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                  pd_entry_hdl_t entry_hdl, char *buf)
{
  entry_contents entry;
  if (table.read(sess_hdl, dev_id, entry_hdl, 1, entry) != BF_SUCCESS || entry.no_key != 0) return 0;
  Key key;
  static_assert(sizeof key <= sizeof entry.key);
  std::memcpy(&key, entry.key, sizeof key);
  return counter_label(key, buf);
}

}  // namespace tarvex::pd
