// Fills a stand-in switch with a few entries of every kind, then has all of its tables printed by a tool that knows
// none of them.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "dumper.h"
#include "program.h"
#include "switch_device.h"

namespace {

using namespace tarvex::examples;

constexpr char usage[] = R"(usage: dump [TABLE]

Fills a stand-in switch with a few entries of every kind, then prints all tables that have entries, by what the switch
says of itself: names of fields and actions, and values as addresses and numbers.

  TABLE   print this table alone, by its name, such as ipv4Host
  --help  this text
)";

constexpr std::uint32_t no_ttl = 0;
pd_entry_hdl_t entry;

/// 2001:db8:site::host
void set_address(std::uint8_t (&address)[16], std::uint8_t site, std::uint8_t host)
{
  const std::uint8_t bytes[16] = {0x20, 0x01, 0x0d, 0xb8, 0, site, 0, 0, 0, 0, 0, 0, 0, 0, 0, host};
  std::ranges::copy(bytes, address);
}

/// Exact keys, with and without parameters and with a default entry.
void load_hosts()
{
  p4_pd_tarvex_switch_ipv4Host_match_spec_t host{};
  for (std::uint32_t i = 1; i <= 3; ++i) {
    host.l3Info_vrfId = 1;
    host.ingIpv4_dip = 0x0a000000 + i;
    const p4_pd_tarvex_switch_setNextHop_action_spec_t next_hop{100 + i};
    must(p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(session, all_pipes, &host, &next_hop, no_ttl, &entry),
         "adding an IPv4 host");
  }
  must(p4_pd_tarvex_switch_ipv4Host_set_default_action_onMiss(session, all_pipes, &entry), "setting a default entry");
  p4_pd_tarvex_switch_ipv6Host_match_spec_t host6{};
  set_address(host6.ingIpv6_dip, 7, 1);
  const p4_pd_tarvex_switch_setEcmp_action_spec_t group{5};
  must(p4_pd_tarvex_switch_ipv6Host_table_add_with_setEcmp(session, all_pipes, &host6, &group, no_ttl, &entry),
       "adding an IPv6 host");
}

/// Prefixes, one of them in a partition.
void load_prefixes()
{
  const p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_t route{12, 0x10200, 24};
  const p4_pd_tarvex_switch_setNextHop_action_spec_t next_hop{7};
  must(p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setNextHop(session, all_pipes, &route, &next_hop, &entry),
       "adding an IPv4 route");
  p4_pd_tarvex_switch_ipv6ShortMaskLpm_match_spec_t route6{};
  set_address(route6.ingIpv6_dip, 0, 0);
  route6.ingIpv6_dip_prefix_length = 20;
  must(p4_pd_tarvex_switch_ipv6ShortMaskLpm_table_add_with_setNextHop(session, all_pipes, &route6, &next_hop, no_ttl,
                                                                      &entry),
       "adding an IPv6 route");
}

/// Ternary keys with priorities: one with counters and one whose structure is in another order than its key.
void load_ternary()
{
  p4_pd_tarvex_switch_l2DmacClassify_match_spec_t multicast{};
  multicast.outerEthHdr_dmacOui = multicast.outerEthHdr_dmacOui_mask = 0x010000;
  must(p4_pd_tarvex_switch_l2DmacClassify_table_add_with_setMcast(session, all_pipes, &multicast, 20, &entry),
       "adding a class of addresses");
  p4_pd_tarvex_switch_l2DmacClassify_match_spec_t broadcast{};
  broadcast.outerEthHdr_dmacOui = broadcast.outerEthHdr_dmacOui_mask = 0xffffff;
  broadcast.outerEthHdr_dmacStation = broadcast.outerEthHdr_dmacStation_mask = 0xffffff;
  must(p4_pd_tarvex_switch_l2DmacClassify_table_add_with_setBcast(session, all_pipes, &broadcast, 10, &entry),
       "adding a class of addresses");
  p4_pd_tarvex_switch_trapToCpu_match_spec_t neighbours{};
  neighbours.ingMd_etherType = 0x86dd;
  neighbours.ingMd_etherType_mask = 0xffff;
  set_address(neighbours.ingIpv6_dip, 9, 0);
  std::ranges::fill_n(neighbours.ingIpv6_dip_mask, 6, 0xff);
  const p4_pd_tarvex_switch_trapPacket_action_spec_t reason{33};
  must(p4_pd_tarvex_switch_trapToCpu_table_add_with_trapPacket(session, all_pipes, &neighbours, 5, &reason, &entry),
       "adding a trap");
}

/// Tables without a key, and actions with a meter's index and with a meter of their own.
void load_others()
{
  must(p4_pd_tarvex_switch_routedMartian_set_default_action_setRoutedMartian(session, all_pipes, &entry),
       "setting the one entry of a table without a key");
  const p4_pd_tarvex_switch_setQosRewriteConfiguration_action_spec_t rewrite{1, 0};
  must(p4_pd_tarvex_switch_qosRewriteConfig_set_default_action_setQosRewriteConfiguration(session, all_pipes, &rewrite,
                                                                                          &entry),
       "setting the one entry of a table without a key");
  const p4_pd_tarvex_switch_ingressMirrorRate_match_spec_t buffer{3};
  const p4_pd_tarvex_switch_setIngressMirrorColor_action_spec_t meter{77};
  must(p4_pd_tarvex_switch_ingressMirrorRate_table_add_with_setIngressMirrorColor(session, all_pipes, &buffer, &meter,
                                                                                  &entry),
       "adding a rate with a meter's index");
}

/// Entries that point at a member and at a group.
void load_indirect()
{
  const p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t next_hop{{}, 41};
  pd_mbr_hdl_t member = 0;
  pd_grp_hdl_t group = 0;
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop(session, all_pipes, &next_hop,
                                                                                  &member),
       "adding a member");
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_create_group(session, all_pipes, 8, &group), "creating a group");
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_to_group(session, device_id, group, member),
       "adding a member to a group");
  p4_pd_tarvex_switch_ecmpGroup_match_spec_t key{1};
  must(p4_pd_tarvex_switch_ecmpGroup_add_entry(session, all_pipes, &key, member, &entry), "pointing at a member");
  key.l3_ecmpGroup = 2;
  must(p4_pd_tarvex_switch_ecmpGroup_add_entry_with_selector(session, all_pipes, &key, group, &entry),
       "pointing at a group");
}

std::string run(program_arguments arguments, tally &compared)
{
  const auto table = only_argument(arguments);
  switch_device device;
  load_hosts();
  load_prefixes();
  load_ternary();
  load_others();
  load_indirect();
  return dump_switch(table, compared);
}

}  // namespace

int main(int argc, char **argv) { return run_comparison({"dump", usage, {}}, argc, argv, run); }
