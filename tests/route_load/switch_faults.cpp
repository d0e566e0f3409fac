// Linked into route_load, makes the switch go wrong once, as the environment says.
//
// SPDX-License-Identifier: Apache-2.0
#include <tarvex_pd/tarvex_pd.h>

#include "../examples/faults.h"

namespace tarvex::examples {
namespace {

fault faults[] = {{"lost entry", "pipe_mgr_get_first_entry_handle", [] {
                     pd_entry_hdl_t first = 0;
                     p4_pd_tarvex_switch_ipv4FinalResolve_get_first_entry_handle(1, pd_dev_tgt(0, PD_ALL_PIPES),
                                                                                 &first);
                     p4_pd_tarvex_switch_ipv4FinalResolve_table_delete(1, 0, first);
                   }}};

const bool armed = arm(faults);

}  // namespace
}  // namespace tarvex::examples
