// A few packets, and the tables that each one meets on its way through the switch.
//
// SPDX-License-Identifier: Apache-2.0
#include "packet_walk.h"

namespace tarvex::examples {
namespace {

constexpr packet packets[] = {
    {.name = "HTTPS, office to web server", .port = 2, .source = 0x0a010203, .destination = 0x0a020107, .dscp = 10},
    {.name = "SSH, office to server", .source = 0x0a010203, .destination = 0x0a020909, .destination_port = 22},
    {.name = "SSH, site to server", .source = 0x0a630001, .destination = 0x0a020909, .destination_port = 22},
    {.name = "voice", .port = 5, .source = 0x0a010101, .destination = 0xac100101, .protocol = 17, .dscp = 46},
    {.name = "guest to storage",
     .port = 4,
     .source = 0x0a030303,
     .destination = 0x0a020222,
     .tagged = true,
     .priority = 3,
     .access_list = 3},
    {.name = "BGP", .source = 0xac1000fe, .destination = 0x0a000001, .destination_port = 179, .ttl = 1, .dscp = 48},
    {.name = "OSPF hello",
     .dmac_oui = 0x01005e,
     .dmac_station = 5,
     .source = 0xac1000fe,
     .destination = 0xe0000005,
     .protocol = 89,
     .ttl = 1,
     .dscp = 48},
    {.name = "LLDP", .port = 7, .dmac_oui = 0x0180c2, .dmac_station = 0x00000e, .ether_type = 0x88cc, .protocol = 0},
    {.name = "source 127.0.0.1",
     .source = 0x7f000001,
     .destination = 0x0a020035,
     .protocol = 17,
     .destination_port = 53},
    {.name = "GRE on a port in quarantine",
     .port = 21,
     .source = 0xc0a80001,
     .destination = 0x08080808,
     .protocol = 47},
};

/// Takes packets through the tables, one table to a line.
class packet_walk {
 public:
  packet_walk(acl_tables &acl, halo_tables &halo, qos_tables &qos, bool quiet, tally &compared)
      : acl_(acl), halo_(halo), qos_(qos), quiet_(quiet), compared_(compared)
  {
  }

  void take(const packet &p)
  {
    if (!quiet_) std::printf("%s\n", p.name);
    hit(acl_.dmac, {p.port, p.dmac_oui, 0, p.dmac_station, 0});
    const std::uint32_t access_result = p.ether_type == 0x0800 ? classify(p) : 0;
    const bool trapped = trap(p);
    mirror(p);
    mark(p);
    hit(acl_.police, {p.port, static_cast<std::uint8_t>(trapped ? 6 : p.dscp >> 3)});
    p4_pd_tarvex_switch_finalDropControl_match_spec_t end{};
    end.ig_intr_md_ingress_port = p.port;
    end.haloResultRow1_bestResult = access_result;
    end.egrMd_trapToCpu = trapped ? 1 : 0;
    end.egrMd_egrL2AintfUnresolved = 77;
    hit(acl_.drop, end);
  }

 private:
  /// The rule that a packet hits; null for none.
  template <typename Rules>
  const rule *hit(Rules &rules, const typename Rules::key_type &key)
  {
    return print(rules, rules.hit(key, compared_));
  }

  const rule *print(const rule_table &table, const rule *found) const
  {
    if (quiet_) return found;
    std::printf("  %-22s %s\n", table.name(), found != nullptr ? found->text().c_str() : "no entry");
    return found;
  }

  /// What the parameters of the rule are that a packet hits, as the structure of its action.
  template <typename Parameters, typename Rules>
  Parameters result(Rules &rules, const typename Rules::key_type &key)
  {
    const rule *const found = hit(rules, key);
    return found != nullptr ? found->template parameters_as<Parameters>() : Parameters{};
  }

  std::uint32_t classify(const packet &p)
  {
    const auto source = result<p4_pd_tarvex_switch_setHaloXformIpv4Sip_action_spec_t>(halo_.source4, {p.source, 0});
    const auto destination =
        result<p4_pd_tarvex_switch_setHaloXformDip_action_spec_t>(halo_.destination4, {p.destination, 0});
    const auto from =
        result<p4_pd_tarvex_switch_setHaloXformSrcPort_action_spec_t>(halo_.source_port, {p.source_port, 0});
    const auto to =
        result<p4_pd_tarvex_switch_setHaloXformDstPort_action_spec_t>(halo_.destination_port, {p.destination_port, 0});
    source_mirror_ = source.action_valMirror;
    destination_mirror_ = destination.action_valMirror;
    const halo_key key{source.action_val, destination.action_val, from.action_val, to.action_val, p.protocol};
    std::uint32_t best = 0;
    const auto look = [&](auto &stage) {
      const rule *const found = stage.hit(p.access_list, key, compared_);
      if (found == nullptr) return;
      print(stage.rules, found);
      best = found->template parameters_as<p4_pd_tarvex_switch_haloSetBestResultRow1_action_spec_t>().action_res;
    };
    std::apply([&](auto &...stage) { (look(stage), ...); }, halo_.stages);
    if (best != 0) hit(halo_.counters, {best});
    return best;
  }

  bool trap(const packet &p)
  {
    p4_pd_tarvex_switch_trapToCpu_match_spec_t key{};
    key.ingMd_etherType = p.ether_type;
    key.ingMd_ingL3Aintf = p.interface;
    key.ingMd_srcPort = p.source_port;
    key.ingMd_dstPort = p.destination_port;
    key.ingMd_protocol = p.protocol;
    key.ingMd_ttl = p.ttl;
    key.ingIpv4_dip = p.destination;
    const rule *const found = hit(acl_.trap, key);
    return found != nullptr && found->action == PD_ACTION(trapToCpu, trapPacket).name;
  }

  void mirror(const packet &p)
  {
    p4_pd_tarvex_switch_ingressMirrorSession_match_spec_t key{};
    key.ig_intr_md_ingress_port = p.port;
    key.haloKeyOrig_sipMirror = source_mirror_;
    key.haloKeyOrig_dipMirror = destination_mirror_;
    key.qosMd_dscp = p.dscp;
    key.ingMd_protocol = p.protocol;
    key.ingMd_ttl = p.ttl;
    key.l4PortHdr_srcPort = p.source_port;
    key.l4PortHdr_dstPort = p.destination_port;
    key.l4PortHdr_valid = 1;
    key.haloKeyOrig_flags = 0x10;  // an established connection
    hit(acl_.mirror, key);
  }

  void mark(const packet &p)
  {
    const auto port = result<p4_pd_tarvex_switch_setQosPortProperties_action_spec_t>(qos_.port, {p.port});
    // The three actions of this table have one parameter each, the class of service.
    const auto cos = result<p4_pd_tarvex_switch_setCosFromPacket_action_spec_t>(
        qos_.cos, {static_cast<std::uint8_t>(p.tagged ? 1 : 0), port.action_defaultCos, p.priority, 0});
    const bool is_ip = p.ether_type == 0x0800;
    hit(qos_.dscp, {0, static_cast<std::uint8_t>(is_ip ? 1 : 0)});
    p4_pd_tarvex_switch_ingressTrafficClass_match_spec_t key{};
    key.qosMd_trustMode = port.action_trustMode;
    key.qosMd_defaultCos = port.action_defaultCos;
    key.qosMd_cos = cos.action_pri;
    key.qosMd_dscp = is_ip ? p.dscp : port.action_defaultDscp;
    const std::uint8_t tc =
        result<p4_pd_tarvex_switch_setTrafficClassAndEgressQid_action_spec_t>(qos_.traffic_class, key).action_tc;
    hit(qos_.rewrite, {port.action_trustMode, 1, 1, tc, 0});
    hit(qos_.class_dscp, {tc});
    if (is_ip) hit(qos_.packet_dscp, {0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0});
  }

  acl_tables &acl_;
  halo_tables &halo_;
  qos_tables &qos_;
  bool quiet_;
  tally &compared_;
  std::uint16_t source_mirror_ = 0;
  std::uint16_t destination_mirror_ = 0;
};

}  // namespace

std::size_t walk_packets(acl_tables &acl, halo_tables &halo, qos_tables &qos, bool quiet, tally &compared)
{
  packet_walk walk(acl, halo, qos, quiet, compared);
  for (const packet &each : packets) walk.take(each);
  return std::size(packets);
}

}  // namespace tarvex::examples
