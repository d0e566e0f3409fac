// Linked into route_load, makes the switch go wrong once, as the environment says.
//
// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_platform/driver.h>

#include "../examples/faults.h"

namespace tarvex::examples {

bool hole_wanted = false;

namespace {

fault faults[] = {{"lost entry", "pipe_mgr_get_first_entry_handle",
                   [] {
                     pd_entry_hdl_t first = 0;
                     p4_pd_tarvex_switch_ipv4FinalResolve_get_first_entry_handle(1, pd_dev_tgt(0, PD_ALL_PIPES),
                                                                                 &first);
                     p4_pd_tarvex_switch_ipv4FinalResolve_table_delete(1, 0, first);
                   }},
                  {"mask with a hole", "pipe_mgr_mat_ent_add", [] { hole_wanted = true; }}};

const bool armed = arm(faults);

}  // namespace
}  // namespace tarvex::examples

/// In place of the driver's: may leave a bit of an address out of the mask. The entry reads back as without
/// that.
pd_status_t pipe_mgr_mat_ent_add(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                 drv_match_spec_t *match_spec, uint32_t act_hdl, drv_action_spec_t *action_spec,
                                 uint32_t ttl, uint32_t flags, pd_entry_hdl_t *entry_hdl)
{
  constexpr std::size_t final_key_bytes = 6;
  const bool long_prefix = match_spec->key_bytes == final_key_bytes && match_spec->key_mask[4] != 0;
  if (tarvex::examples::hole_wanted && long_prefix) {
    match_spec->key_mask[3] &= 0xf7;  // the first bit that the table looks at
    tarvex::examples::hole_wanted = false;
  }
  static const auto add = reinterpret_cast<decltype(&pipe_mgr_mat_ent_add)>(dlsym(RTLD_NEXT, __func__));
  return add(sess_hdl, dev_tgt, tbl_hdl, match_spec, act_hdl, action_spec, ttl, flags, entry_hdl);
}
