// Whole texts of some tables, written out.
//
// SPDX-License-Identifier: Apache-2.0
#include <map>

#include "capture.h"
#include "tarvex_pd/tarvex_pd.h"
#include "told_entry.h"

namespace tarvex::test {

namespace {

TEST(schema_text, lengths_by_hand)
{
  const std::map<std::string, std::size_t> lengths = {
      {"finalDropControl", 2991}, {"trapToCpu", 2702}, {"encapDecap", 1940}};
  for (const auto &[name, length] : lengths) EXPECT_EQ(table_schema(table_named(name)).size(), length) << name;
}

TEST(schema_text, whole_examples)
{
  const std::map<std::uint32_t, std::string> examples = {
      {0x100000a,
       "( ('ipv4Host','mat',(False,)),(( 'vrfId','l3Info_vrfId',8,0xff,None,None,None),( 'dip','ingIpv4_dip',32,"
       "0xffffffff,'v4addr',None,None),),(( ('onMiss'),()),( ('setEcmp'),(('ecmpGroup',None,16,None),)),( "
       "('setNextHop'),(('nextHop',None,16,None),)),( ('setNextHop2'),(('nextHop',None,16,None),)),( ('setNextHop3'),"
       "(('nextHop',None,16,None),)),))"},
      {0x100003e, "( ('vlanDecap','mat',(False,)),(),(( ('removeVlanHdr'),()),))"},
      {0x1000046,
       "( ('qosRewriteConfig','mat',(False,)),(),(( ('setQosRewriteConfiguration'),(('cosRewrite',None,1,None),"
       "('dscpRewrite',None,1,None),)),))"},
      {0x1000018,
       "( ('ecmpGroup','mat',(True,)),(( 'ecmpGroup','l3_ecmpGroup',16,0x3ff,None,None,None),),( ('setMbrHdl',"
       "(('mbrHdl',None,32,None),)),( 'setGrpHdl', ( ( 'grpHdl', None, 32, None ), ) ) ))"},
      {0x200002e,
       "(( ('invalidateUcastEgressPort'),()),( ('setLagPort'),(('egrL2AintfPort',None,9,None),)),( "
       "('setPhysicalPort'),()),( ('setTunnelInfo'),()),)"},
      {0x2000015, "(( ('setEcmpNextHop'),(('nextHop',None,16,None),)),)"},
  };
  for (const auto &[handle, text] : examples) EXPECT_TRUE(writes(text, text_by("cli_schema", handle)));
  EXPECT_EQ(examples.at(0x100000a).size(), 342U);
  EXPECT_STREQ(p4_pd_tarvex_switch_decapMplsOverUdpRouteIpv4_schema(),
               "( ('decapMplsOverUdpRouteIpv4'),(('routerMacOui','mac',24,None),('routerMacStation','mac',24,None),))");
  const std::string key = p4_pd_tarvex_switch_ipv6FinalResolve_match_spec_schema();
  EXPECT_NE(key.find(",128,0x3ffffffffff0000000000000000L,'v6addr',"), std::string::npos) << key;
}

TEST(value_text, stands_in_the_order_of_the_key_where_the_structure_does_not)
{
  p4_pd_tarvex_switch_tunnelTermination_match_spec_t key{};
  key.outerEthHdr_dmacOui = 0xff123456;
  key.outerEthHdr_dmacOui_mask = 0xfffffe;
  key.outerEthHdr_dmacStation = 0x1;
  key.outerIpv4Hdr_dip = 0x0a000001;
  key.outerIpv4Hdr_dip_mask = 0xffffffff;
  key.ingMd_tunnelType = 0xff;
  key.ingMd_tunnelType_mask = 3;
  key.outerIpv6Hdr_valid = 3;
  EXPECT_TRUE(writes("( 0x123456,0xfffffe,0x000001,0x000000,0x0a000001,0xffffffff,0x7,0x3,0x1,),",
                     [&](char *buf) { return p4_pd_tarvex_switch_tunnelTermination_match_spec_value(&key, buf); }));
}

TEST(value_text, whole_examples)
{
  const auto &host = table_named("ipv4Host");
  told_entry entry(host, &host.actions[0]);
  entry.value = {1, 10, 0, 0, 1};
  entry.data[0] = 0, entry.data[1] = 1;
  driver().answer = entry;
  const auto value_of = [](const calls::table_info &table) {
    return text_by("entry_value", 1U, 0U, table.handle, 5U, 0U);
  };
  EXPECT_TRUE(writes("((( 0x01,0x0a000001,),('setNextHop',(0x0001,)),),(0,True))", value_of(host)));
  const auto &martian = table_named("routedMartian");
  driver().answer = told_entry(martian, &martian.actions[0]);
  EXPECT_TRUE(writes("(((),('setRoutedMartian',()),),(0,True))", value_of(martian)));
  const auto &group = table_named("ecmpGroup");
  told_entry indirect(group, nullptr);
  indirect.value = {0, 0x11};
  indirect.act_kinds = 2;
  driver().answer = indirect;
  EXPECT_TRUE(writes("((( 0x0011,),('setMbrHdl',(0xabcd,))),(0,True))", value_of(group)));
}

TEST(width_and_priority, by_hand)
{
  EXPECT_EQ(p4_pd_tarvex_switch_l2DmacClassify_ig_intr_md_ingress_port_width(), 9U);
  EXPECT_EQ(p4_pd_tarvex_switch_l2DomainLookup_vlanHdr_0__width(), 1U);
}

TEST(print_text, of_a_key)
{
  const record key = {1, 0, 0, 0, 0xef, 0xbe, 0xad, 0xde, 20, 0, 0, 0};
  ASSERT_EQ(table_named("ipv4ShortMaskLpm").record_size, key.size());
  const auto print = [&](int fd) {
    p4_pd_tarvex_switch_ipv4ShortMaskLpm_match_spec_print(
        fd, 4, reinterpret_cast<const p4_pd_tarvex_switch_ipv4ShortMaskLpm_match_spec_t *>(key.data()));
  };
  EXPECT_EQ(joined(captured(print)),
            "    p4_pd_tarvex_switch_ipv4ShortMaskLpm_match_spec_t:\n"
            "     l3Info_vrfId: 0x01\n"
            "     ingIpv4_dip mask 0xfff00000: 0xdea00000\n"
            "     ingIpv4_dip_prefix_length: 0x0014\n");
}

TEST(label, in_full)
{
  p4_pd_tarvex_switch_finalDropControl_match_spec_t drop{};
  const auto of_drop = [&](char *buf) {
    return p4_pd_tarvex_switch_finalDropControl_match_spec_stringify_for_counter(&drop, buf);
  };
  const std::map<std::uint32_t, std::string> interfaces = {
      {0x1ff, "Invalid Port "}, {0x10000, ""}, {0, ""}, {0x1234, "egrL2AintfUnresolved & 0xfffff 0x1234 "}};
  for (const auto &[interface, text] : interfaces) {
    drop.egrMd_egrL2AintfUnresolved = interface;
    EXPECT_TRUE(writes("Ingress Port 0x0 " + text, of_drop));
  }
  drop.egrMd_egrL2AintfUnresolved = 0;
  for (const auto &[result, text] : std::map<std::uint32_t, std::string>{
           {0x8001, "ACL Drop "}, {0x10000, "bestResult & 0x18000 0x10000 "}, {0x7fff, ""}}) {
    drop.haloResultRow1_bestResult = result;
    EXPECT_TRUE(writes("Ingress Port 0x0 " + text, of_drop));
  }
  p4_pd_tarvex_switch_ingL2DomainCount_match_spec_t domain{};
  EXPECT_TRUE(writes("decap 0 l3Intf    0 ", [&](char *buf) {
    return p4_pd_tarvex_switch_ingL2DomainCount_match_spec_stringify_for_counter(&domain, buf);
  }));
  p4_pd_tarvex_switch_egressPortDropCheck_match_spec_t port{};
  port.qosMd_wredDrop = 1;  // without its mask
  EXPECT_TRUE(writes("Egress Port 0x0 Egress TCAM RACL Result 0x0 ", [&](char *buf) {
    return p4_pd_tarvex_switch_egressPortDropCheck_match_spec_stringify_for_counter(&port, buf);
  }));
}

}  // namespace

}  // namespace tarvex::test
