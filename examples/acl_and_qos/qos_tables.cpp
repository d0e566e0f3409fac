// Quality of service: what a port trusts, the class of service and DSCP that a packet comes with, its traffic class and
// queue, and what is written into it on the way out.
//
// SPDX-License-Identifier: Apache-2.0
#include "qos_tables.h"

namespace tarvex::examples {
namespace {

constexpr std::uint8_t classes = 8;
constexpr std::uint8_t is_ipv4 = 1, is_ipv4_with_options = 2, is_ipv6 = 4;  // of ingMd_v4V6Valid

std::string numbered(const char *what, unsigned number) { return what + (' ' + std::to_string(number)); }

key_layout<p4_pd_tarvex_switch_normalizeCos_match_spec_t> cos_layout()
{
  using k = p4_pd_tarvex_switch_normalizeCos_match_spec_t;
  return {
      {&k::ingMd_vlanHdrValid, 1}, {&k::qosMd_defaultCos, 3}, {&k::vlanHdr_0__priority, 3}, {&k::vlanHdr_1__valid, 1}};
}

key_layout<p4_pd_tarvex_switch_normalizeDscp_match_spec_t> dscp_layout()
{
  using k = p4_pd_tarvex_switch_normalizeDscp_match_spec_t;
  return {{&k::egrMd_decapType, 3}, {&k::ingMd_v4V6Valid, 3}};
}

key_layout<p4_pd_tarvex_switch_ingressTrafficClass_match_spec_t> traffic_class_layout()
{
  using k = p4_pd_tarvex_switch_ingressTrafficClass_match_spec_t;
  return {
      {&k::qosMd_trustMode, &k::qosMd_trustMode_mask, 2},
      {&k::qosMd_defaultCos, &k::qosMd_defaultCos_mask, 3},
      {&k::qosMd_cos, &k::qosMd_cos_mask, 3},
      {&k::qosMd_dscp, &k::qosMd_dscp_mask, 6},
      {&k::qosMd_highPriority, &k::qosMd_highPriority_mask, 1},
      {&k::egrMd_decapType, &k::egrMd_decapType_mask, 3},
      {&k::tarvexCpuHdr_trustMode, &k::tarvexCpuHdr_trustMode_mask, 2},
      {&k::tarvexCpuHdr_tc, &k::tarvexCpuHdr_tc_mask, 3},
  };
}

key_layout<p4_pd_tarvex_switch_qosRewrite_match_spec_t> rewrite_layout()
{
  using k = p4_pd_tarvex_switch_qosRewrite_match_spec_t;
  return {{&k::qosMd_trustMode, 2},
          {&k::qosMd_cosRewrite, 1},
          {&k::qosMd_dscpRewrite, 1},
          {&k::ig_intr_md_for_tm_ingress_cos, 3},
          {&k::egrMd_decapType, 3}};
}

key_layout<p4_pd_tarvex_switch_packetDscpRewrite_match_spec_t> packet_dscp_layout()
{
  using k = p4_pd_tarvex_switch_packetDscpRewrite_match_spec_t;
  return {
      {&k::egrMd_encapType, &k::egrMd_encapType_mask, 3},
      {&k::egrMd_decapType, &k::egrMd_decapType_mask, 3},
      {&k::egrMd_routed, &k::egrMd_routed_mask, 1},
      {&k::outerIpv4Hdr_valid, &k::outerIpv4Hdr_valid_mask, 1},
      {&k::outerIpv6Hdr_valid, &k::outerIpv6Hdr_valid_mask, 1},
      {&k::innerIpv4Hdr_valid, &k::innerIpv4Hdr_valid_mask, 1},
      {&k::innerIpv6Hdr_valid, &k::innerIpv6Hdr_valid_mask, 1},
  };
}

}  // namespace

qos_tables::qos_tables()
    : port(PD_EXACT_TABLE(qosPortProperties), {{&decltype(port)::key_type::ig_intr_md_ingress_port, 9}}),
      cos(PD_EXACT_TABLE(normalizeCos), cos_layout()),
      dscp(PD_EXACT_TABLE(normalizeDscp), dscp_layout()),
      traffic_class(PD_TERNARY_TABLE(ingressTrafficClass), traffic_class_layout()),
      rewrite(PD_EXACT_TABLE(qosRewrite), rewrite_layout()),
      class_dscp(PD_EXACT_TABLE(tcDscpMap), {{&decltype(class_dscp)::key_type::ig_intr_md_for_tm_ingress_cos, 3}}),
      packet_dscp(PD_TERNARY_TABLE(packetDscpRewrite), packet_dscp_layout())
{
}

qos_tables::~qos_tables() = default;

void qos_tables::program()
{
  program_ports();
  program_normalisation();
  program_traffic_class();
  program_rewrite();
  program_packet_dscp();
}

void qos_tables::program_ports()
{
  for (std::uint16_t number = 1; number <= 12; ++number) {
    const auto trust = static_cast<std::uint8_t>(number % 3);
    port.add(numbered("port", number), {number}, PD_ACTION(qosPortProperties, setQosPortProperties),
             p4_pd_tarvex_switch_setQosPortProperties_action_spec_t{static_cast<std::uint8_t>(number % 2), 8, trust});
  }
  port.set_default("any port", PD_DEFAULT(qosPortProperties, setQosPortProperties),
                   p4_pd_tarvex_switch_setQosPortProperties_action_spec_t{0, 0, trust_nothing});
}

void qos_tables::program_normalisation()
{
  for (std::uint8_t of_port = 0; of_port < 2; ++of_port) {
    for (std::uint8_t of_tag = 0; of_tag < classes; ++of_tag) {
      const std::string note = numbered("priority", of_tag) + numbered(", default", of_port);
      cos.add(note, {1, of_port, of_tag, 0}, PD_ACTION(normalizeCos, setCosFromPacket),
              p4_pd_tarvex_switch_setCosFromPacket_action_spec_t{of_tag});
      cos.add(note + ", two tags", {1, of_port, of_tag, 1}, PD_ACTION(normalizeCos, setCosFromPacketWithInner),
              p4_pd_tarvex_switch_setCosFromPacketWithInner_action_spec_t{of_tag});
    }
    cos.add(numbered("untagged, default", of_port), {0, of_port, 0, 0}, PD_ACTION(normalizeCos, setCosFromDefault),
            p4_pd_tarvex_switch_setCosFromDefault_action_spec_t{of_port});
  }
  dscp.add("not IP", {0, 0}, PD_ACTION(normalizeDscp, setDscpForNonIpPkt));
  dscp.add("not IP, from a tunnel", {1, 0}, PD_ACTION(normalizeDscp, setDscpForTTNonIpPkt));
  for (std::uint8_t decap = 0; decap < 2; ++decap) {
    dscp.add(numbered("IPv4, decap", decap), {decap, is_ipv4}, PD_ACTION(normalizeDscp, setDscpForIpv4Pkt));
    dscp.add(numbered("IPv4 options, decap", decap), {decap, is_ipv4_with_options},
             PD_ACTION(normalizeDscp, setDscpForIpv4OptionsPkt));
    dscp.add(numbered("IPv6, decap", decap), {decap, is_ipv6}, PD_ACTION(normalizeDscp, setDscpForIpv6Pkt));
  }
  dscp.set_default("anything else", PD_DEFAULT(normalizeDscp, setDscpForNonIpPkt));
}

void qos_tables::program_traffic_class()
{
  using key = p4_pd_tarvex_switch_ingressTrafficClass_match_spec_t;
  using result = p4_pd_tarvex_switch_setTrafficClassAndEgressQid_action_spec_t;
  constexpr auto set = PD_ACTION(ingressTrafficClass, setTrafficClassAndEgressQid);
  key control{};
  control.qosMd_highPriority = control.qosMd_highPriority_mask = 1;
  traffic_class.add("control", 1, control, set, result{7, 31});
  for (std::uint8_t tc = 0; tc < classes; ++tc) {
    key from_cpu{};
    from_cpu.tarvexCpuHdr_trustMode = from_cpu.tarvexCpuHdr_trustMode_mask = 3;
    from_cpu.tarvexCpuHdr_tc = tc;
    from_cpu.tarvexCpuHdr_tc_mask = 7;
    traffic_class.add(numbered("from the CPU, class", tc), 10u + tc, from_cpu, set, result{tc, tc});
  }
  for (std::uint8_t value = 0; value < classes; ++value) {
    key by_cos{};
    by_cos.qosMd_trustMode = trust_cos;
    by_cos.qosMd_trustMode_mask = 3;
    by_cos.qosMd_cos = value;
    by_cos.qosMd_cos_mask = 7;
    traffic_class.add(numbered("class of service", value), 20u + value, by_cos, set, result{value, value});
  }
  key voice{};
  voice.qosMd_trustMode = trust_dscp;
  voice.qosMd_trustMode_mask = 3;
  voice.qosMd_dscp = 46;
  voice.qosMd_dscp_mask = 0x3f;
  traffic_class.add("expedited forwarding", 30, voice, set, result{6, 30});
  for (std::uint8_t group = 0; group < classes; ++group) {  // DSCP by its upper three bits
    key by_dscp = voice;
    by_dscp.qosMd_dscp = static_cast<std::uint8_t>(group << 3);
    by_dscp.qosMd_dscp_mask = 0x38;
    traffic_class.add(numbered("class selector", group), 40u + group, by_dscp, set, result{group, group});
  }
  traffic_class.set_default("best effort", PD_DEFAULT(ingressTrafficClass, setTrafficClassAndEgressQid), result{0, 0});
}

void qos_tables::program_rewrite()
{
  using copy_cos = p4_pd_tarvex_switch_copyCosRewriteDscp_action_spec_t;
  using copy_dscp = p4_pd_tarvex_switch_rewriteCosCopyDscp_action_spec_t;
  using rewrite_both = p4_pd_tarvex_switch_rewriteCosRewriteDscp_action_spec_t;
  for (std::uint8_t tc = 0; tc < classes; ++tc) {
    const auto new_dscp = static_cast<std::uint8_t>(tc << 3);
    for (const trust_mode trust : {trust_nothing, trust_cos, trust_dscp}) {
      const std::string note = numbered("class", tc) + numbered(", trust", trust);
      rewrite.add(note + ", DSCP", {trust, 0, 1, tc, 0}, PD_ACTION(qosRewrite, copyCosRewriteDscp), copy_cos{new_dscp});
      rewrite.add(note + ", CoS", {trust, 1, 0, tc, 0}, PD_ACTION(qosRewrite, rewriteCosCopyDscp), copy_dscp{tc});
      rewrite.add(note + ", both", {trust, 1, 1, tc, 0}, PD_ACTION(qosRewrite, rewriteCosRewriteDscp),
                  rewrite_both{tc, new_dscp});
    }
    class_dscp.add(numbered("class", tc), {tc}, PD_ACTION(tcDscpMap, setTcDscp),
                   p4_pd_tarvex_switch_setTcDscp_action_spec_t{new_dscp});
  }
  set_config({1, 1});
}

void qos_tables::program_packet_dscp()
{
  constexpr std::uint8_t encap = 1, decap = 1;
  std::uint32_t priority = 0;
  // An outer header of one family, an inner one of another or none: 4, 6 or 0.
  const auto when = [&](const char *note, std::uint8_t encap_type, std::uint8_t decap_type, int outer, int inner,
                        const auto &action) {
    const auto is = [](int family, int wanted) { return static_cast<std::uint8_t>(family == wanted ? 1 : 0); };
    packet_dscp.add(
        note, ++priority,
        {encap_type, 7, decap_type, 7, 0, 0, is(outer, 4), 1, is(outer, 6), 1, is(inner, 4), 1, is(inner, 6), 1},
        action);
  };
  when("no tunnel, IPv4", 0, 0, 4, 0, PD_ACTION(packetDscpRewrite, noTunnelIpv4));
  when("no tunnel, IPv6", 0, 0, 6, 0, PD_ACTION(packetDscpRewrite, noTunnelIpv6));
  when("out of a tunnel, IPv4", 0, decap, 0, 4, PD_ACTION(packetDscpRewrite, onlyDecapInnerIpv4));
  when("out of a tunnel, IPv6", 0, decap, 0, 6, PD_ACTION(packetDscpRewrite, onlyDecapInnerIpv6));
  when("into IPv4", encap, 0, 4, 0, PD_ACTION(packetDscpRewrite, encapOuterIpv4));
  when("IPv4 into IPv4", encap, 0, 4, 4, PD_ACTION(packetDscpRewrite, encapOuterIpv4InnerIpv4));
  when("IPv6 into IPv4", encap, 0, 4, 6, PD_ACTION(packetDscpRewrite, encapOuterIpv4InnerIpv6));
  when("into IPv6", encap, 0, 6, 0, PD_ACTION(packetDscpRewrite, encapOuterIpv6));
  when("IPv4 into IPv6", encap, 0, 6, 4, PD_ACTION(packetDscpRewrite, encapOuterIpv6InnerIpv4));
}

void qos_tables::set_config(const p4_pd_tarvex_switch_setQosRewriteConfiguration_action_spec_t &config)
{
  must(p4_pd_tarvex_switch_qosRewriteConfig_set_default_action_setQosRewriteConfiguration(session, all_pipes, &config,
                                                                                          &config_handle_),
       "setting qosRewriteConfig");
  config_ = config;
}

void qos_tables::change()
{
  port.change_some(PD_ACTION(qosPortProperties, setQosPortProperties),
                   p4_pd_tarvex_switch_setQosPortProperties_action_spec_t{7, 63, trust_dscp});
  cos.change_some(PD_ACTION(normalizeCos, setCosFromDefault), p4_pd_tarvex_switch_setCosFromDefault_action_spec_t{5});
  dscp.change_some(PD_ACTION(normalizeDscp, setDscpForIpv6Pkt));
  traffic_class.change_some(PD_ACTION(ingressTrafficClass, setTrafficClassAndEgressQid),
                            p4_pd_tarvex_switch_setTrafficClassAndEgressQid_action_spec_t{3, 17});
  rewrite.change_some(PD_ACTION(qosRewrite, copyCosRewriteDscp),
                      p4_pd_tarvex_switch_copyCosRewriteDscp_action_spec_t{33});
  class_dscp.change_some(PD_ACTION(tcDscpMap, setTcDscp), p4_pd_tarvex_switch_setTcDscp_action_spec_t{62});
  packet_dscp.change_some(PD_ACTION(packetDscpRewrite, noTunnelIpv4));
  set_config({0, 1});
}

void qos_tables::read_config_back(tally &compared) const
{
  p4_pd_tarvex_switch_setQosRewriteConfiguration_action_spec_t got{};
  must(p4_pd_tarvex_switch_qosRewriteConfig_get_entry(session, device_id, config_handle_, 0, nullptr, &got, nullptr),
       "reading qosRewriteConfig");
  compared.expect(bytes_of(got) == bytes_of(config_), [] { return "qosRewriteConfig reads back otherwise"; });
}

}  // namespace tarvex::examples
