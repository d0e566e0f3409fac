// The keys of the access lists: their fields in the order of the key bytes, with the bits that a table looks at.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tarvex_pd/tarvex_pd.h>

#include "key_layout.h"

namespace tarvex::examples {

using dmac_key = p4_pd_tarvex_switch_l2DmacClassify_match_spec_t;
using trap_key = p4_pd_tarvex_switch_trapToCpu_match_spec_t;
using mirror_key = p4_pd_tarvex_switch_ingressMirrorSession_match_spec_t;
using police_key = p4_pd_tarvex_switch_pdpPolicy_match_spec_t;
using drop_key = p4_pd_tarvex_switch_finalDropControl_match_spec_t;

inline key_layout<dmac_key> dmac_layout()
{
  using k = dmac_key;
  return {
      {&k::ig_intr_md_ingress_port, 9, 0x7f},
      {&k::outerEthHdr_dmacOui, &k::outerEthHdr_dmacOui_mask, 24},
      {&k::outerEthHdr_dmacStation, &k::outerEthHdr_dmacStation_mask, 24},
  };
}

inline key_layout<trap_key> trap_layout()
{
  using k = trap_key;
  return {
      {&k::ingMd_etherType, &k::ingMd_etherType_mask, 16},
      {&k::ingMd_bcast, &k::ingMd_bcast_mask, 1},
      {&k::ingMd_mcast, &k::ingMd_mcast_mask, 1},
      {&k::ingMd_ingL3Aintf, &k::ingMd_ingL3Aintf_mask, 12},
      {&k::ingMd_l4Attr, &k::ingMd_l4Attr_mask, 3},
      {&k::ingMd_srcPort, &k::ingMd_srcPort_mask, 16},
      {&k::ingMd_dstPort, &k::ingMd_dstPort_mask, 16},
      {&k::phase0_ingVPort, &k::phase0_ingVPort_mask, 14},
      {&k::l3Info_ingL3DmacValid, &k::l3Info_ingL3DmacValid_mask, 1},
      {&k::ingMd_ttl, &k::ingMd_ttl_mask, 8},
      {&k::arpHdr_valid, &k::arpHdr_valid_mask, 1},
      {&k::arpHdr_opcode, &k::arpHdr_opcode_mask, 16},
      {&k::ingMd_igmpSnoopingEnabled, &k::ingMd_igmpSnoopingEnabled_mask, 1},
      {&k::ingIpv4_dip, &k::ingIpv4_dip_mask, 32},
      {&k::ingMd_protocol, &k::ingMd_protocol_mask, 8},
      {&k::egrMd_vxlanFlood, &k::egrMd_vxlanFlood_mask, 1},
      {&k::egrMd_decapType, &k::egrMd_decapType_mask, 3},
      {&k::ingIpv6_dip, &k::ingIpv6_dip_mask, 128, 2},
      {&k::ingMd_cpuMemberOfIngressVlan, &k::ingMd_cpuMemberOfIngressVlan_mask, 1},
      {&k::egrMd_cpuReasonCode, &k::egrMd_cpuReasonCode_mask, 8},
  };
}

inline key_layout<mirror_key> mirror_layout()
{
  using k = mirror_key;
  return {
      {&k::phase0_ingVPort, &k::phase0_ingVPort_mask, 14},
      {&k::ig_intr_md_ingress_port, &k::ig_intr_md_ingress_port_mask, 9},
      {&k::haloKeyOrig_sipMirror, &k::haloKeyOrig_sipMirror_mask, 16},
      {&k::haloKeyOrig_dipMirror, &k::haloKeyOrig_dipMirror_mask, 16},
      {&k::qosMd_dscp, &k::qosMd_dscp_mask, 6},
      {&k::ingMd_protocol, &k::ingMd_protocol_mask, 8},
      {&k::ingMd_ttl, &k::ingMd_ttl_mask, 8},
      {&k::l4PortHdr_srcPort, &k::l4PortHdr_srcPort_mask, 16},
      {&k::l4PortHdr_dstPort, &k::l4PortHdr_dstPort_mask, 16},
      {&k::l4PortHdr_valid, &k::l4PortHdr_valid_mask, 1},
      {&k::haloKeyOrig_isFrag, &k::haloKeyOrig_isFrag_mask, 1},
      {&k::haloKeyOrig_flags, &k::haloKeyOrig_flags_mask, 8},
      {&k::ingMd_v4V6Valid, &k::ingMd_v4V6Valid_mask, 3},
  };
}

inline key_layout<police_key> police_layout()
{
  return {{&police_key::ig_intr_md_ingress_port, 9, 0x7f}, {&police_key::qosMd_pdpClassId, 5}};
}

inline key_layout<drop_key> drop_layout()
{
  using k = drop_key;
  return {
      {&k::ig_intr_md_ingress_port, &k::ig_intr_md_ingress_port_mask, 9, 0x7f},
      {&k::haloResultRow1_bestResult, &k::haloResultRow1_bestResult_mask, 32, 0x18000},
      {&k::ingMd_drop, &k::ingMd_drop_mask, 1},
      {&k::ingMd_dropSmac, &k::ingMd_dropSmac_mask, 1},
      {&k::ingMd_dropDmac, &k::ingMd_dropDmac_mask, 1},
      {&k::ingMd_invalidEgressPort, &k::ingMd_invalidEgressPort_mask, 1},
      {&k::ingMd_samePortBridging, &k::ingMd_samePortBridging_mask, 1},
      {&k::ingMd_routedMartian, &k::ingMd_routedMartian_mask, 1},
      {&k::ingMd_mlagPrune, &k::ingMd_mlagPrune_mask, 1},
      {&k::ingMd_v4V6Valid, &k::ingMd_v4V6Valid_mask, 3, 0x4},
      {&k::egrMd_egrL2AintfUnresolved, &k::egrMd_egrL2AintfUnresolved_mask, 20},
      {&k::ig_intr_md_for_tm_mcast_grp_a, &k::ig_intr_md_for_tm_mcast_grp_a_mask, 16},
      {&k::egrMd_routed, &k::egrMd_routed_mask, 1},
      {&k::egrMd_trapToCpu, &k::egrMd_trapToCpu_mask, 1},
      {&k::ingMd_dropDatalink, &k::ingMd_dropDatalink_mask, 1},
      {&k::ingVlanStpCheck_stpBlocked, &k::ingVlanStpCheck_stpBlocked_mask, 1},
      {&k::ingVlanStpCheck_invalidVlan, &k::ingVlanStpCheck_invalidVlan_mask, 1},
      {&k::ingMd_dot1xDrop, &k::ingMd_dot1xDrop_mask, 1},
      {&k::ig_intr_md_for_tm_copy_to_cpu, &k::ig_intr_md_for_tm_copy_to_cpu_mask, 1},
      {&k::ingMd_stormControlDrop, &k::ingMd_stormControlDrop_mask, 1},
      {&k::ingMd_bcast, &k::ingMd_bcast_mask, 1},
      {&k::ingMd_mcast, &k::ingMd_mcast_mask, 1},
  };
}

}  // namespace tarvex::examples
