// SPDX-License-Identifier: Apache-2.0
#include "counter_labels.h"

#include "text_writer.h"

namespace tarvex::pd {

namespace {

/// Pieces of a label; each ends in a blank.
class label_writer {
 public:
  explicit label_writer(char *buf) : to_(buf) {}

  label_writer &value(std::string_view name, std::uint32_t v)
  {
    to_.text(name).text("0x").natural_hex(v).character(' ');
    return *this;
  }
  label_writer &words(std::string_view text)
  {
    to_.text(text);
    return *this;
  }
  /// Written only if value and mask have the bit.
  label_writer &flag(std::string_view text, std::uint32_t v, std::uint32_t mask, std::uint32_t bit = 1)
  {
    if ((v & mask & bit) != 0) to_.text(text);
    return *this;
  }
  label_writer &number(std::string_view name, std::uint32_t v, unsigned width)
  {
    to_.text(name).decimal(static_cast<std::int32_t>(v), width).character(' ');
    return *this;
  }
  text_writer &writer() { return to_; }
  std::uint32_t end() { return to_.end(); }

 private:
  text_writer to_;
};

constexpr std::uint32_t front_panel_port = 0x7f;

}  // namespace

std::uint32_t counter_label(const p4_pd_tarvex_switch_l2DmacClassify_match_spec_t &key, char *buf)
{
  return label_writer(buf)
      .value("Ingress Port ", key.ig_intr_md_ingress_port & front_panel_port)
      .value("dmacOui & 0xffffff ", key.outerEthHdr_dmacOui & 0xffffff)
      .value("dmacStation & 0xffffff ", key.outerEthHdr_dmacStation & 0xffffff)
      .end();
}

std::uint32_t counter_label(const p4_pd_tarvex_switch_ingressPortDropCheck_match_spec_t &key, char *buf)
{
  return label_writer(buf)
      .value("Ingress Port ", key.ig_intr_md_ingress_port & front_panel_port)
      .flag("invalidTunnel ", key.ingMd_invalidTunnel, key.ingMd_invalidTunnel_mask)
      .flag("illegalSmac ", key.ingMd_illegalSmac, key.ingMd_illegalSmac_mask)
      .flag("illegalDmac ", key.ingMd_illegalDmac, key.ingMd_illegalDmac_mask)
      .flag("Pause Frame ", key.parserMd_outerHdrFlags, key.parserMd_outerHdrFlags_mask, 8)
      .flag("Invalid IP Checksum ", key.ig_intr_md_from_parser_aux_ingress_parser_err,
            key.ig_intr_md_from_parser_aux_ingress_parser_err_mask, 0x1000)
      .end();
}

std::uint32_t counter_label(const p4_pd_tarvex_switch_haloCounters_match_spec_t &key, char *buf)
{
  return label_writer(buf).value("bestResult & 0x7fff ", key.haloResultRow1_bestResult & 0x7fff).end();
}

std::uint32_t counter_label(const p4_pd_tarvex_switch_finalDropControl_match_spec_t &key, char *buf)
{
  label_writer to(buf);
  to.value("Ingress Port ", key.ig_intr_md_ingress_port & front_panel_port);
  const std::uint32_t acl = key.haloResultRow1_bestResult & 0x18000;
  if (acl == 0x8000)
    to.words("ACL Drop ");
  else if (acl != 0)
    to.value("bestResult & 0x18000 ", acl);
  to.flag("Ingress Port Drop - See ingressPortDropCount  ", key.ingMd_drop, key.ingMd_drop_mask)
      .flag("dropSmac ", key.ingMd_dropSmac, key.ingMd_dropSmac_mask)
      .flag("dropDmac ", key.ingMd_dropDmac, key.ingMd_dropDmac_mask)
      .flag("invalidEgressPort ", key.ingMd_invalidEgressPort, key.ingMd_invalidEgressPort_mask)
      .flag("samePortBridging ", key.ingMd_samePortBridging, key.ingMd_samePortBridging_mask)
      .flag("routedMartian ", key.ingMd_routedMartian, key.ingMd_routedMartian_mask)
      .flag("mlagPrune ", key.ingMd_mlagPrune, key.ingMd_mlagPrune_mask)
      .flag("Invalid IP Version ", key.ingMd_v4V6Valid, key.ingMd_v4V6Valid_mask, 4);
  constexpr std::uint32_t invalid_port = 511;
  constexpr std::uint32_t no_interface = 0x10000;
  const std::uint32_t interface = key.egrMd_egrL2AintfUnresolved & 0xfffff;
  if (interface == invalid_port)
    to.words("Invalid Port ");
  else if (interface != 0 && interface != no_interface)
    to.value("egrL2AintfUnresolved & 0xfffff ", interface);
  if (key.ig_intr_md_for_tm_mcast_grp_a != 0) to.value("mcast_grp_a & 0xffff ", key.ig_intr_md_for_tm_mcast_grp_a);
  return to.flag("Routed Drop  ", key.egrMd_routed, key.egrMd_routed_mask)
      .flag("trapToCpu ", key.egrMd_trapToCpu, key.egrMd_trapToCpu_mask)
      .flag("Datalink ", key.ingMd_dropDatalink, key.ingMd_dropDatalink_mask)
      .flag("stpBlocked ", key.ingVlanStpCheck_stpBlocked, key.ingVlanStpCheck_stpBlocked_mask)
      .flag("invalidVlan ", key.ingVlanStpCheck_invalidVlan, key.ingVlanStpCheck_invalidVlan_mask)
      .flag("dot1xDrop ", key.ingMd_dot1xDrop, key.ingMd_dot1xDrop_mask)
      .flag("copy_to_cpu ", key.ig_intr_md_for_tm_copy_to_cpu, key.ig_intr_md_for_tm_copy_to_cpu_mask)
      .flag("stormControlDrop ", key.ingMd_stormControlDrop, key.ingMd_stormControlDrop_mask)
      .flag("bcast ", key.ingMd_bcast, key.ingMd_bcast_mask)
      .flag("mcast ", key.ingMd_mcast, key.ingMd_mcast_mask)
      .end();
}

std::uint32_t counter_label(const p4_pd_tarvex_switch_trapToCpu_match_spec_t &key, char *buf)
{
  std::uint8_t address[16];
  for (unsigned i = 0; i < 16; ++i) address[i] = key.ingIpv6_dip[i] & key.ingIpv6_dip_mask[i];
  label_writer to(buf);
  to.value("etherType & 0xffff ", key.ingMd_etherType)
      .flag("bcast ", key.ingMd_bcast, key.ingMd_bcast_mask)
      .flag("mcast ", key.ingMd_mcast, key.ingMd_mcast_mask)
      .value("ingL3Aintf & 0xfff ", key.ingMd_ingL3Aintf & 0xfff)
      .value("l4Attr & 0x7 ", key.ingMd_l4Attr & 7u)
      .value("srcPort & 0xffff ", key.ingMd_srcPort)
      .value("dstPort & 0xffff ", key.ingMd_dstPort)
      .value("ingVPort & 0x3fff ", key.phase0_ingVPort & 0x3fff)
      .flag("ingL3DmacValid ", key.l3Info_ingL3DmacValid, key.l3Info_ingL3DmacValid_mask)
      .value("ttl & 0xff ", key.ingMd_ttl)
      .value("opcode & 0xffff ", key.arpHdr_opcode)
      .flag("igmpSnoopingEnabled ", key.ingMd_igmpSnoopingEnabled, key.ingMd_igmpSnoopingEnabled_mask)
      .value("dip & 0xffffffff ", key.ingIpv4_dip)
      .value("protocol & 0xff ", key.ingMd_protocol)
      .flag("vxlanFlood ", key.egrMd_vxlanFlood, key.egrMd_vxlanFlood_mask)
      .value("decapType & 0x7 ", key.egrMd_decapType & 7u);
  to.writer().text("dip & 0xffff0000000000000000000000000000L ").small_bytes(address, sizeof address).character(' ');
  return to.flag("cpuMemberOfIngressVlan ", key.ingMd_cpuMemberOfIngressVlan, key.ingMd_cpuMemberOfIngressVlan_mask)
      .value("cpuReasonCode & 0xff ", key.egrMd_cpuReasonCode)
      .end();
}

std::uint32_t counter_label(const p4_pd_tarvex_switch_egressPortDropCheck_match_spec_t &key, char *buf)
{
  return label_writer(buf)
      .value("Egress Port ", key.eg_intr_md_egress_port & front_panel_port)
      .flag("stpBlocked ", key.egrVlanStpCheck_stpBlocked, key.egrVlanStpCheck_stpBlocked_mask)
      .flag("invalidVlan ", key.egrVlanStpCheck_invalidVlan, key.egrVlanStpCheck_invalidVlan_mask)
      .flag("wredDrop ", key.qosMd_wredDrop, key.qosMd_wredDrop_mask)
      .value("Egress TCAM RACL Result ", key.egrMd_egrTcamRaclResult & 3u)
      .end();
}

std::uint32_t counter_label(const p4_pd_tarvex_switch_ingL2DomainCount_match_spec_t &key, char *buf)
{
  return label_writer(buf)
      .number("decap ", key.egrMd_decapType & 7u, 1)
      .number("l3Intf ", key.ingMd_ingL3Aintf & 0xfffu, 4)
      .end();
}

std::uint32_t counter_label(const p4_pd_tarvex_switch_egrL2DomainCount_match_spec_t &key, char *buf)
{
  return label_writer(buf)
      .number("decap ", key.egrMd_decapType & 1u, 1)
      .number("Vlan ", key.egrMd_egrL2Domain & 0xfffu, 4)
      .end();
}

}  // namespace tarvex::pd
