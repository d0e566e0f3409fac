// The access lists: what a destination MAC means, what goes to the CPU and how fast, what is mirrored and dropped.
//
// SPDX-License-Identifier: Apache-2.0
#include "acl_tables.h"

#include "acl_keys.h"

namespace tarvex::examples {
namespace {

/// The field is to have this value.
template <typename Field>
void match(Field &field, Field &mask, std::uint32_t value)
{
  field = static_cast<Field>(value);
  mask = static_cast<Field>(~Field{0});
}

/// A key that asks for what `ask` sets, and for nothing else.
template <typename Key, typename Ask>
Key asking(Ask ask)
{
  Key key{};
  ask(key);
  return key;
}

}  // namespace

acl_tables::acl_tables()
    : dmac(PD_TERNARY_TABLE(l2DmacClassify), dmac_layout(), p4_pd_tarvex_switch_counter_read_l2DmacClassifyCount),
      trap(PD_TERNARY_TABLE(trapToCpu), trap_layout(), p4_pd_tarvex_switch_counter_read_trapToCpuCount),
      mirror(PD_TERNARY_TABLE(ingressMirrorSession), mirror_layout()),
      police(PD_EXACT_TABLE(pdpPolicy), police_layout()),
      drop(PD_TERNARY_TABLE(finalDropControl), drop_layout(), p4_pd_tarvex_switch_counter_read_finalDropControlCount)
{
  police.on_hit([this](const rule &hit, const pd_counter_value_t &counted) {
    std::uint32_t index = 0;  // the only parameter of both actions
    std::memcpy(&index, hit.parameters.data(), sizeof index);
    cells_[index].packets += counted.packets;
    cells_[index].bytes += counted.bytes;
  });
}

acl_tables::~acl_tables() = default;

void acl_tables::program()
{
  program_dmac();
  program_trap();
  program_mirror();
  program_police();
  program_drop();
}

void acl_tables::program_dmac()
{
  const auto for_ports = [&](const char *note, std::uint32_t priority, std::uint32_t oui, std::uint32_t oui_mask,
                             std::uint32_t station, std::uint32_t station_mask, const auto &...action) {
    for (std::uint16_t port = 1; port <= 12; ++port) {
      dmac.add(std::string(note) + ", port " + std::to_string(port), priority,
               {port, oui, oui_mask, station, station_mask}, action...);
    }
  };
  const p4_pd_tarvex_switch_setL2ControlFrame_action_spec_t control{9, 1};
  const p4_pd_tarvex_switch_classifyL2ControlFrame_action_spec_t slow{10, 0};
  for_ports("no MAC", 10, 0, 0xffffff, 0, 0xffffff, PD_ACTION(l2DmacClassify, setIllegalDmac));
  for_ports("LACP", 20, 0x0180c2, 0xffffff, 0x000002, 0xffffff, PD_ACTION(l2DmacClassify, classifyL2ControlFrame),
            slow);
  for_ports("link-local control", 30, 0x0180c2, 0xffffff, 0x000000, 0xfffff0,
            PD_ACTION(l2DmacClassify, setL2ControlFrame), control);
  for_ports("IPv4 multicast", 40, 0x01005e, 0xffffff, 0, 0x800000, PD_ACTION(l2DmacClassify, setIpMcast));
  for_ports("IPv6 multicast", 50, 0x333300, 0xffff00, 0, 0, PD_ACTION(l2DmacClassify, setIpMcast));
  for_ports("broadcast", 60, 0xffffff, 0xffffff, 0xffffff, 0xffffff, PD_ACTION(l2DmacClassify, setBcast));
  for_ports("multicast", 70, 0x010000, 0x010000, 0, 0, PD_ACTION(l2DmacClassify, setMcast));
  for_ports("unicast", 80, 0, 0, 0, 0, PD_ACTION(l2DmacClassify, setUcast));
  dmac.set_default("port without rules", PD_DEFAULT(l2DmacClassify, onMiss));
}

void acl_tables::program_trap()
{
  std::uint32_t priority = 100;
  std::uint8_t reason = 0;
  const auto to_cpu = [&](const std::string &note, auto ask) {
    trap.add(note, ++priority, asking<trap_key>(ask), PD_ACTION(trapToCpu, trapPacket),
             p4_pd_tarvex_switch_trapPacket_action_spec_t{++reason});
  };
  const auto copy_to_cpu = [&](const std::string &note, auto ask) {
    trap.add(note, ++priority, asking<trap_key>(ask), PD_ACTION(trapToCpu, copyPacket),
             p4_pd_tarvex_switch_copyPacket_action_spec_t{++reason, 0});
  };
  const auto ether_type = [](std::uint16_t type) {
    return [=](trap_key &k) { match(k.ingMd_etherType, k.ingMd_etherType_mask, type); };
  };
  const auto protocol = [](std::uint8_t number) {
    return [=](trap_key &k) { match(k.ingMd_protocol, k.ingMd_protocol_mask, number); };
  };
  const auto to_port = [=](std::uint8_t number, std::uint16_t port) {
    return [=](trap_key &k) {
      protocol(number)(k);
      match(k.ingMd_dstPort, k.ingMd_dstPort_mask, port);
    };
  };
  const auto from_port = [=](std::uint8_t number, std::uint16_t port) {
    return [=](trap_key &k) {
      protocol(number)(k);
      match(k.ingMd_srcPort, k.ingMd_srcPort_mask, port);
    };
  };
  constexpr std::uint8_t tcp = 6, udp = 17;

  for (const std::uint16_t opcode : {std::uint16_t{1}, std::uint16_t{2}}) {
    copy_to_cpu(opcode == 1 ? "ARP request" : "ARP reply", [&](trap_key &k) {
      match(k.arpHdr_valid, k.arpHdr_valid_mask, 1);
      match(k.arpHdr_opcode, k.arpHdr_opcode_mask, opcode);
    });
  }
  to_cpu("LLDP", ether_type(0x88cc));
  to_cpu("LACP", ether_type(0x8809));
  to_cpu("IS-IS", ether_type(0x00fe));
  to_cpu("BGP server", to_port(tcp, 179));
  to_cpu("BGP client", from_port(tcp, 179));
  to_cpu("LDP", to_port(tcp, 646));
  to_cpu("BFD", to_port(udp, 3784));
  to_cpu("multihop BFD", to_port(udp, 4784));
  to_cpu("DHCP to server", to_port(udp, 67));
  to_cpu("DHCP to client", to_port(udp, 68));
  to_cpu("DHCPv6 to server", to_port(udp, 547));
  to_cpu("PIM", protocol(103));
  to_cpu("VRRP", protocol(112));
  to_cpu("RSVP", protocol(46));
  copy_to_cpu("PTP event", to_port(udp, 319));
  for (const std::uint32_t router : {5u, 6u}) {
    to_cpu("OSPF to 224.0.0." + std::to_string(router), [&](trap_key &k) {
      protocol(89)(k);
      match(k.ingIpv4_dip, k.ingIpv4_dip_mask, 0xe0000000 + router);
    });
  }
  copy_to_cpu("IGMP where snooped", [&](trap_key &k) {
    protocol(2)(k);
    match(k.ingMd_igmpSnoopingEnabled, k.ingMd_igmpSnoopingEnabled_mask, 1);
  });
  copy_to_cpu("IPv6 link-local multicast", [](trap_key &k) {
    k.ingIpv6_dip[0] = 0xff;
    k.ingIpv6_dip[1] = 0x02;
    k.ingIpv6_dip_mask[0] = k.ingIpv6_dip_mask[1] = 0xff;
  });
  for (std::uint16_t interface = 1; interface <= 8; ++interface) {
    to_cpu("SSH on interface " + std::to_string(interface), [&](trap_key &k) {
      to_port(tcp, 22)(k);
      match(k.ingMd_ingL3Aintf, k.ingMd_ingL3Aintf_mask, interface);
      match(k.l3Info_ingL3DmacValid, k.l3Info_ingL3DmacValid_mask, 1);
    });
  }
  to_cpu("TTL run out", [](trap_key &k) {
    k.ingMd_ttl_mask = 0xfe;
    match(k.l3Info_ingL3DmacValid, k.l3Info_ingL3DmacValid_mask, 1);
  });
  for (std::uint8_t code = 64; code < 72; ++code) {
    to_cpu("reason " + std::to_string(code) + " of an earlier table",
           [&](trap_key &k) { match(k.egrMd_cpuReasonCode, k.egrMd_cpuReasonCode_mask, code); });
  }
  trap.add("broadcast stays", ++priority,
           asking<trap_key>([](trap_key &k) { match(k.ingMd_bcast, k.ingMd_bcast_mask, 1); }),
           PD_ACTION(trapToCpu, noOp));
  trap.set_default("nothing for the CPU", PD_DEFAULT(trapToCpu, noOp));
}

void acl_tables::program_mirror()
{
  constexpr auto mirror_to = PD_ACTION(ingressMirrorSession, setIngressMirrorSession);
  std::uint32_t priority = 0;
  const auto mirror_if = [&](const std::string &note, std::uint16_t mirror_session, auto ask) {
    mirror.add(note, ++priority, asking<mirror_key>(ask), mirror_to,
               p4_pd_tarvex_switch_setIngressMirrorSession_action_spec_t{mirror_session});
  };
  mirror.add("TCP scan without flags", ++priority, asking<mirror_key>([](mirror_key &k) {
               match(k.ingMd_protocol, k.ingMd_protocol_mask, 6);
               k.haloKeyOrig_flags_mask = 0xff;
             }),
             PD_ACTION(ingressMirrorSession, dropDatalink));
  for (std::uint16_t group = 1; group <= 12; ++group) {
    mirror_if("tapped source group " + std::to_string(group), 100 + group,
              [&](mirror_key &k) { match(k.haloKeyOrig_sipMirror, k.haloKeyOrig_sipMirror_mask, group); });
  }
  for (std::uint16_t port = 1; port <= 12; ++port) {
    mirror_if("voice on port " + std::to_string(port), 200 + port, [&](mirror_key &k) {
      match(k.ig_intr_md_ingress_port, k.ig_intr_md_ingress_port_mask, port);
      match(k.qosMd_dscp, k.qosMd_dscp_mask, 46);
    });
  }
  mirror_if("fragments", 300, [](mirror_key &k) { match(k.haloKeyOrig_isFrag, k.haloKeyOrig_isFrag_mask, 1); });
  mirror_if("DNS", 301, [](mirror_key &k) {
    match(k.l4PortHdr_dstPort, k.l4PortHdr_dstPort_mask, 53);
    match(k.l4PortHdr_valid, k.l4PortHdr_valid_mask, 1);
  });
}

void acl_tables::set_meter(std::uint32_t index, const pd_meter_spec_t &rates)
{
  must(p4_pd_tarvex_switch_meter_set_pdpMeter(session, all_pipes, index, &rates),
       [&] { return "setting pdpMeter " + std::to_string(index); });
  meters_[index] = rates;
}

void acl_tables::program_police()
{
  for (std::uint16_t port = 1; port <= 8; ++port) {
    for (std::uint8_t pdp_class = 0; pdp_class < 8; ++pdp_class) {
      const std::string note = "class " + std::to_string(pdp_class) + " of port " + std::to_string(port);
      const police_key key{port, pdp_class};
      if (pdp_class < 6) {  // a meter for each class, shared by all ports
        police.add(note, key, PD_ACTION(pdpPolicy, pdpPolice), p4_pd_tarvex_switch_pdpPolice_action_spec_t{pdp_class});
      } else {
        police.add(note, key, PD_ACTION(pdpPolicy, setPdpClassCount),
                   p4_pd_tarvex_switch_setPdpClassCount_action_spec_t{std::uint32_t{port} * 100 + pdp_class});
      }
    }
  }
  for (std::uint32_t pdp_class = 0; pdp_class < 6; ++pdp_class) {
    set_meter(pdp_class, {1000 * (pdp_class + 1), 64, 2000 * (pdp_class + 1), 128, PD_METER_TYPE_COLOR_UNAWARE});
  }
  police.set_default("any other class", PD_DEFAULT(pdpPolicy, setPdpClassCount),
                     p4_pd_tarvex_switch_setPdpClassCount_action_spec_t{4095});
}

void acl_tables::program_drop()
{
  std::uint32_t priority = 0;
  const auto when = [&](const std::string &note, const auto &action, auto ask) {
    drop.add(note, priority += 10, asking<drop_key>(ask), action);
  };
  constexpr auto accept = PD_ACTION(finalDropControl, accept);
  constexpr auto count = PD_ACTION(finalDropControl, dropCount);
  constexpr auto count_and_log = PD_ACTION(finalDropControl, dropCountAndLog);
  constexpr auto discard = PD_ACTION(finalDropControl, finalDrop);
  when("goes to the CPU", accept, [](drop_key &k) { match(k.egrMd_trapToCpu, k.egrMd_trapToCpu_mask, 1); });
  for (std::uint16_t port = 20; port < 28; ++port) {
    when("port " + std::to_string(port) + " in quarantine", discard,
         [&](drop_key &k) { match(k.ig_intr_md_ingress_port, k.ig_intr_md_ingress_port_mask, port); });
  }
  when("access list denies", count, [](drop_key &k) {
    k.haloResultRow1_bestResult = 0x8000;
    k.haloResultRow1_bestResult_mask = 0x18000;
  });
  when("access list denies and logs", count_and_log,
       [](drop_key &k) { k.haloResultRow1_bestResult = k.haloResultRow1_bestResult_mask = 0x18000; });
  when("illegal source", count, [](drop_key &k) { match(k.ingMd_dropSmac, k.ingMd_dropSmac_mask, 1); });
  when("illegal destination", count, [](drop_key &k) { match(k.ingMd_dropDmac, k.ingMd_dropDmac_mask, 1); });
  when("blocked by spanning tree", discard,
       [](drop_key &k) { match(k.ingVlanStpCheck_stpBlocked, k.ingVlanStpCheck_stpBlocked_mask, 1); });
  when("not a member of the VLAN", count,
       [](drop_key &k) { match(k.ingVlanStpCheck_invalidVlan, k.ingVlanStpCheck_invalidVlan_mask, 1); });
  when("storm control", count, [](drop_key &k) { match(k.ingMd_stormControlDrop, k.ingMd_stormControlDrop_mask, 1); });
  when("martian, routed", count_and_log, [](drop_key &k) {
    match(k.ingMd_routedMartian, k.ingMd_routedMartian_mask, 1);
    match(k.egrMd_routed, k.egrMd_routed_mask, 1);
  });
  when("back out of its port", discard,
       [](drop_key &k) { match(k.ingMd_samePortBridging, k.ingMd_samePortBridging_mask, 1); });
  when("no way out", count, [](drop_key &k) {
    k.egrMd_egrL2AintfUnresolved_mask = 0xfffff;
    k.ig_intr_md_for_tm_mcast_grp_a_mask = 0xffff;
  });
  drop.set_default("nothing against it", PD_DEFAULT(finalDropControl, accept));
}

void acl_tables::change()
{
  dmac.change_some(PD_ACTION(l2DmacClassify, setUcast));
  trap.change_some(PD_ACTION(trapToCpu, copyPacket), p4_pd_tarvex_switch_copyPacket_action_spec_t{0xee, 1});
  mirror.change_some(PD_ACTION(ingressMirrorSession, setIngressMirrorSession),
                     p4_pd_tarvex_switch_setIngressMirrorSession_action_spec_t{1000});
  police.change_some(PD_ACTION(pdpPolicy, pdpPolice), p4_pd_tarvex_switch_pdpPolice_action_spec_t{77});
  drop.change_some(PD_ACTION(finalDropControl, acceptLog));
  set_meter(77, {777, 7, 0xffffffff, 77, PD_METER_TYPE_COLOR_UNAWARE});
}

void acl_tables::read_cells_back(tally &compared) const
{
  for (const auto &[index, expected] : cells_) {
    pd_counter_value_t got{};
    must(p4_pd_tarvex_switch_counter_read_pdpClassCount(session, all_pipes, index, 1, &got),
         [&] { return "reading pdpClassCount " + std::to_string(index); });
    compared.expect(got.packets == expected.packets && got.bytes == expected.bytes, [&] {
      return "pdpClassCount " + std::to_string(index) + " has counted " + std::to_string(got.packets) +
             " packets, not " + std::to_string(expected.packets);
    });
  }
  for (const auto &[index, expected] : meters_) {
    pd_meter_spec_t got{};
    must(p4_pd_tarvex_switch_meter_read_pdpMeter(session, all_pipes, index, &got),
         [&] { return "reading pdpMeter " + std::to_string(index); });
    compared.expect(bytes_of(got) == bytes_of(expected),
                    [&] { return "pdpMeter " + std::to_string(index) + " reads back otherwise"; });
  }
}

}  // namespace tarvex::examples
