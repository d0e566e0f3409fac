// Linked into route_load, makes the switch go wrong as the environment says: REFUSE_CALL=N refuses the N-th driver call
// as a full table would, LOSE_ENTRY drops an entry of ipv4FinalResolve when the first table is walked.
//
// SPDX-License-Identifier: Apache-2.0
#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_standin/standin.h>

#include <cstdlib>
#include <cstring>

namespace {

void lose_entry_at_walk(const char *function, uint32_t, void *)
{
  if (std::strcmp(function, "pipe_mgr_get_first_entry_handle") != 0) return;
  standin_set_listener(nullptr, nullptr);
  pd_entry_hdl_t first = 0;
  p4_pd_tarvex_switch_ipv4FinalResolve_get_first_entry_handle(1, pd_dev_tgt(0, PD_ALL_PIPES), &first);
  p4_pd_tarvex_switch_ipv4FinalResolve_table_delete(1, 0, first);
}

const bool armed = [] {
  if (const char *nth = std::getenv("REFUSE_CALL")) {
    standin_refuse_call(static_cast<uint32_t>(std::strtoul(nth, nullptr, 10)), STANDIN_FULL);
  }
  if (std::getenv("LOSE_ENTRY") != nullptr) standin_set_listener(lose_entry_at_walk, nullptr);
  return true;
}();

}  // namespace
