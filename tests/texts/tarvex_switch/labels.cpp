// The counter labels as lists of their pieces.
//
// SPDX-License-Identifier: Apache-2.0
#include "reference.h"

namespace tarvex::test {

namespace {

using word = std::uint32_t;
using piece = label_piece;

constexpr word whole = 0xffffffff;
bool is_drop(word v) { return v == 0x8000; }
bool is_other_result(word v) { return v != 0 && v != 0x8000; }
bool is_invalid_port(word v) { return v == 511; }
bool is_other_interface(word v) { return v != 0 && v != 0x10000 && v != 511; }
bool is_there(word v) { return v != 0; }

[[maybe_unused]] const bool told =
    (told_labels() =
         {
             {"l2DmacClassify",
              {{"Ingress Port 0x%x ", "ig_intr_md_ingress_port", 0x7f, piece::always},
               {"dmacOui & 0xffffff 0x%x ", "outerEthHdr_dmacOui", 0xffffff, piece::always},
               {"dmacStation & 0xffffff 0x%x ", "outerEthHdr_dmacStation", 0xffffff, piece::always}}},
             {"ingL2DomainCount",
              {{"decap %1d ", "egrMd_decapType", 7, piece::always},
               {"l3Intf %4d ", "ingMd_ingL3Aintf", 0xfff, piece::always}}},
             {"egrL2DomainCount",
              {{"decap %1d ", "egrMd_decapType", 1, piece::always},
               {"Vlan %4d ", "egrMd_egrL2Domain", 0xfff, piece::always}}},
             {"haloCounters", {{"bestResult & 0x7fff 0x%x ", "haloResultRow1_bestResult", 0x7fff, piece::always}}},
             {"ingressPortDropCheck",
              {{"Ingress Port 0x%x ", "ig_intr_md_ingress_port", 0x7f, piece::always},
               {"invalidTunnel ", "ingMd_invalidTunnel", 1, piece::flag},
               {"illegalSmac ", "ingMd_illegalSmac", 1, piece::flag},
               {"illegalDmac ", "ingMd_illegalDmac", 1, piece::flag},
               {"Pause Frame ", "parserMd_outerHdrFlags", 8, piece::flag},
               {"Invalid IP Checksum ", "ig_intr_md_from_parser_aux_ingress_parser_err", 0x1000, piece::flag}}},
             {"egressPortDropCheck",
              {{"Egress Port 0x%x ", "eg_intr_md_egress_port", 0x7f, piece::always},
               {"stpBlocked ", "egrVlanStpCheck_stpBlocked", 1, piece::flag},
               {"invalidVlan ", "egrVlanStpCheck_invalidVlan", 1, piece::flag},
               {"wredDrop ", "qosMd_wredDrop", 1, piece::flag},
               {"Egress TCAM RACL Result 0x%x ", "egrMd_egrTcamRaclResult", 3, piece::always}}},
             {"finalDropControl",
              {{"Ingress Port 0x%x ", "ig_intr_md_ingress_port", 0x7f, piece::always},
               {"ACL Drop ", "haloResultRow1_bestResult", 0x18000, piece::some, is_drop},
               {"bestResult & 0x18000 0x%x ", "haloResultRow1_bestResult", 0x18000, piece::some, is_other_result},
               {"Ingress Port Drop - See ingressPortDropCount  ", "ingMd_drop", 1, piece::flag},
               {"dropSmac ", "ingMd_dropSmac", 1, piece::flag},
               {"dropDmac ", "ingMd_dropDmac", 1, piece::flag},
               {"invalidEgressPort ", "ingMd_invalidEgressPort", 1, piece::flag},
               {"samePortBridging ", "ingMd_samePortBridging", 1, piece::flag},
               {"routedMartian ", "ingMd_routedMartian", 1, piece::flag},
               {"mlagPrune ", "ingMd_mlagPrune", 1, piece::flag},
               {"Invalid IP Version ", "ingMd_v4V6Valid", 4, piece::flag},
               {"Invalid Port ", "egrMd_egrL2AintfUnresolved", 0xfffff, piece::some, is_invalid_port},
               {"egrL2AintfUnresolved & 0xfffff 0x%x ", "egrMd_egrL2AintfUnresolved", 0xfffff, piece::some,
                is_other_interface},
               {"mcast_grp_a & 0xffff 0x%x ", "ig_intr_md_for_tm_mcast_grp_a", whole, piece::some, is_there},
               {"Routed Drop  ", "egrMd_routed", 1, piece::flag},
               {"trapToCpu ", "egrMd_trapToCpu", 1, piece::flag},
               {"Datalink ", "ingMd_dropDatalink", 1, piece::flag},
               {"stpBlocked ", "ingVlanStpCheck_stpBlocked", 1, piece::flag},
               {"invalidVlan ", "ingVlanStpCheck_invalidVlan", 1, piece::flag},
               {"dot1xDrop ", "ingMd_dot1xDrop", 1, piece::flag},
               {"copy_to_cpu ", "ig_intr_md_for_tm_copy_to_cpu", 1, piece::flag},
               {"stormControlDrop ", "ingMd_stormControlDrop", 1, piece::flag},
               {"bcast ", "ingMd_bcast", 1, piece::flag},
               {"mcast ", "ingMd_mcast", 1, piece::flag}}},
             {"trapToCpu",
              {{"etherType & 0xffff 0x%x ", "ingMd_etherType", whole, piece::always},
               {"bcast ", "ingMd_bcast", 1, piece::flag},
               {"mcast ", "ingMd_mcast", 1, piece::flag},
               {"ingL3Aintf & 0xfff 0x%x ", "ingMd_ingL3Aintf", 0xfff, piece::always},
               {"l4Attr & 0x7 0x%x ", "ingMd_l4Attr", 7, piece::always},
               {"srcPort & 0xffff 0x%x ", "ingMd_srcPort", whole, piece::always},
               {"dstPort & 0xffff 0x%x ", "ingMd_dstPort", whole, piece::always},
               {"ingVPort & 0x3fff 0x%x ", "phase0_ingVPort", 0x3fff, piece::always},
               {"ingL3DmacValid ", "l3Info_ingL3DmacValid", 1, piece::flag},
               {"ttl & 0xff 0x%x ", "ingMd_ttl", whole, piece::always},
               {"opcode & 0xffff 0x%x ", "arpHdr_opcode", whole, piece::always},
               {"igmpSnoopingEnabled ", "ingMd_igmpSnoopingEnabled", 1, piece::flag},
               {"dip & 0xffffffff 0x%x ", "ingIpv4_dip", whole, piece::always},
               {"protocol & 0xff 0x%x ", "ingMd_protocol", whole, piece::always},
               {"vxlanFlood ", "egrMd_vxlanFlood", 1, piece::flag},
               {"decapType & 0x7 0x%x ", "egrMd_decapType", 7, piece::always},
               {"dip & 0xffff0000000000000000000000000000L ", "ingIpv6_dip", whole, piece::address},
               {"cpuMemberOfIngressVlan ", "ingMd_cpuMemberOfIngressVlan", 1, piece::flag},
               {"cpuReasonCode & 0xff 0x%x ", "egrMd_cpuReasonCode", whole, piece::always}}},
         },
     true);

}  // namespace

}  // namespace tarvex::test
