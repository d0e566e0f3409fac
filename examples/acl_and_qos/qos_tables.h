// Quality of service: what a port trusts, the class of service and DSCP that a packet comes with, its traffic class and
// queue, and what is written into it on the way out.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "rule_table.h"

namespace tarvex::examples {

/// What a port trusts of a packet.
enum trust_mode : std::uint8_t { trust_nothing = 0, trust_cos = 1, trust_dscp = 2 };

class qos_tables {
 public:
  qos_tables();
  ~qos_tables();  // in one place, with the tables' functions

  void program();
  void change();
  /// Compares the one entry of the table without a key, which no rule_table holds.
  void read_config_back(tally &compared) const;

  std::vector<rule_table *> all() { return {&port, &cos, &dscp, &traffic_class, &rewrite, &class_dscp, &packet_dscp}; }

  exact_rules<p4_pd_tarvex_switch_qosPortProperties_match_spec_t> port;
  exact_rules<p4_pd_tarvex_switch_normalizeCos_match_spec_t> cos;
  exact_rules<p4_pd_tarvex_switch_normalizeDscp_match_spec_t> dscp;
  ternary_rules<p4_pd_tarvex_switch_ingressTrafficClass_match_spec_t> traffic_class;
  exact_rules<p4_pd_tarvex_switch_qosRewrite_match_spec_t> rewrite;
  exact_rules<p4_pd_tarvex_switch_tcDscpMap_match_spec_t> class_dscp;
  ternary_rules<p4_pd_tarvex_switch_packetDscpRewrite_match_spec_t> packet_dscp;

 private:
  void program_ports();
  void program_normalisation();
  void program_traffic_class();
  void program_rewrite();
  void program_packet_dscp();
  void set_config(const p4_pd_tarvex_switch_setQosRewriteConfiguration_action_spec_t &config);

  p4_pd_tarvex_switch_setQosRewriteConfiguration_action_spec_t config_{};
  pd_entry_hdl_t config_handle_ = STANDIN_NO_HANDLE;
};

}  // namespace tarvex::examples
