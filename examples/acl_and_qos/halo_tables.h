// The halo access lists: addresses and ports become classes, five stages match the classes, results are counted.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <tuple>

#include "halo_stage.h"

namespace tarvex::examples {

inline auto halo_stages()
{
  return std::tuple{halo_stage(PD_EXACT_TABLE(haloRow1Stage2), PD_ACTION(haloRow1Stage2, haloSetBestResultRow1),
                               PD_EXACT_TABLE(haloKeyMaskForRow1Stage2),
                               PD_ACTION(haloKeyMaskForRow1Stage2, haloKeyMaskedRow1Stage2)),
                    halo_stage(PD_EXACT_TABLE(haloRow1Stage3), PD_ACTION(haloRow1Stage3, haloSetBestResultRow1),
                               PD_EXACT_TABLE(haloKeyMaskForRow1Stage3),
                               PD_ACTION(haloKeyMaskForRow1Stage3, haloKeyMaskedRow1Stage3)),
                    halo_stage(PD_EXACT_TABLE(haloRow1Stage4), PD_ACTION(haloRow1Stage4, haloSetBestResultRow1),
                               PD_EXACT_TABLE(haloKeyMaskForRow1Stage4),
                               PD_ACTION(haloKeyMaskForRow1Stage4, haloKeyMaskedRow1Stage4)),
                    halo_stage(PD_EXACT_TABLE(haloRow1Stage5), PD_ACTION(haloRow1Stage5, haloSetBestResultRow1),
                               PD_EXACT_TABLE(haloKeyMaskForRow1Stage5),
                               PD_ACTION(haloKeyMaskForRow1Stage5, haloKeyMaskedRow1Stage5)),
                    halo_stage(PD_EXACT_TABLE(haloRow1Stage6), PD_ACTION(haloRow1Stage6, haloSetBestResultRow1),
                               PD_EXACT_TABLE(haloKeyMaskForRow1Stage6),
                               PD_ACTION(haloKeyMaskForRow1Stage6, haloKeyMaskedRow1Stage6))};
}

class halo_tables {
 public:
  halo_tables();
  ~halo_tables();  // in one place, with the tables' functions

  void program();
  void change();
  std::vector<rule_table *> all();

  ternary_rules<p4_pd_tarvex_switch_haloXformIpv4Sip_match_spec_t> source4;
  ternary_rules<p4_pd_tarvex_switch_haloXformIpv6Sip_match_spec_t> source6;
  ternary_rules<p4_pd_tarvex_switch_haloXformIpv4Dip_match_spec_t> destination4;
  ternary_rules<p4_pd_tarvex_switch_haloXformIpv6Dip_match_spec_t> destination6;
  ternary_rules<p4_pd_tarvex_switch_haloXformSrcPort_match_spec_t> source_port;
  ternary_rules<p4_pd_tarvex_switch_haloXformDstPort_match_spec_t> destination_port;
  decltype(halo_stages()) stages = halo_stages();
  exact_rules<p4_pd_tarvex_switch_haloCounters_match_spec_t> counters;

 private:
  void program_addresses();
  void program_ports();
  void program_stages();
};

}  // namespace tarvex::examples
