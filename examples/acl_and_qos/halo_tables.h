// The halo access lists: addresses and ports become classes, five stages match the classes, results are counted.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tuple>

#include "halo_stage.h"

namespace tarvex::examples {

namespace halo {

using source4_key = p4_pd_tarvex_switch_haloXformIpv4Sip_match_spec_t;
using destination4_key = p4_pd_tarvex_switch_haloXformIpv4Dip_match_spec_t;
using source6_key = p4_pd_tarvex_switch_haloXformIpv6Sip_match_spec_t;
using destination6_key = p4_pd_tarvex_switch_haloXformIpv6Dip_match_spec_t;
using source_port_key = p4_pd_tarvex_switch_haloXformSrcPort_match_spec_t;
using destination_port_key = p4_pd_tarvex_switch_haloXformDstPort_match_spec_t;
using counter_key = p4_pd_tarvex_switch_haloCounters_match_spec_t;

inline auto make_stages()
{
  return std::make_tuple(
      halo_stage<p4_pd_tarvex_switch_haloRow1Stage2_match_spec_t, p4_pd_tarvex_switch_haloKeyMaskForRow1Stage2_match_spec_t, int>{});
}

}  // namespace halo
}  // namespace tarvex::examples
