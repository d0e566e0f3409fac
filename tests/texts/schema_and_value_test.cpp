// Schema text and value text of all tables, actions and profiles, byte for byte.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <limits>
#include <map>

#include "tarvex_pd/tarvex_pd.h"
#include "told_entry.h"

namespace tarvex::test {

namespace {

TEST(schema_text, every_text_byte_for_byte)
{
  std::map<std::string, std::size_t> lengths;
  std::size_t longest_key = 0, rows = 0;
  for (const auto &table : calls::tables) {
    const std::string text = table_schema(table);
    lengths[table.name] = text.size();
    const auto write = text_by(std::string(table.name) + "_schema");
    EXPECT_TRUE(writes(text, write)) << table.name;
    if (!keyed(table)) continue;
    EXPECT_EQ(invoke<const char *>(std::string(table.name) + "_match_spec_schema"), key_schema(table));
    longest_key = std::max(longest_key, key_schema(table).size());
    rows += rows_of(table).size();
  }
  for (const auto &action : calls::actions)
    EXPECT_EQ(invoke<const char *>(std::string(action.name) + "_schema"), action_schema(action));
  for (const auto &profile : calls::profiles) {
    const auto write = text_by(std::string(profile.name) + "_schema");
    EXPECT_TRUE(writes(profile_schema(profile), write)) << profile.name;
  }
  EXPECT_EQ(rows, 549U);
  EXPECT_EQ(longest_key, 2846U);
  EXPECT_EQ(lengths["finalDropControl"], 2991U);
  EXPECT_EQ(lengths["trapToCpu"], 2702U);
  EXPECT_EQ(lengths["encapDecap"], 1940U);
  std::erase_if(lengths, [](const auto &length) { return length.second < 1940; });
  EXPECT_EQ(lengths.size(), 3U);
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

/// All zeros, all ones, and some of anything.
std::vector<record> records(std::size_t size)
{
  std::vector<record> all = {record(size), record(size, 0xff)};
  for (unsigned i = 0; i < 20; ++i) all.push_back(random_record(size));
  return all;
}

TEST(value_text, keys_and_actions_byte_for_byte)
{
  std::size_t longest_key = 0, longest_action = 0;
  for (const auto &table : calls::tables) {
    if (!keyed(table)) continue;
    for (const record &key : records(table.record_size)) {
      const std::string text = key_value(table, key);
      longest_key = std::max(longest_key, text.size());
      const std::string name = std::string(table.name) + "_match_spec_value";
      ASSERT_TRUE(writes(text, text_by(name, key.data()))) << table.name;
    }
  }
  for (const auto &action : calls::actions) {
    const std::string name = std::string(action.name) + "_value";
    for (const record &spec : records(action.record_size)) {
      const std::string text = action_value(action, spec);
      longest_action = std::max(longest_action, text.size());
      ASSERT_TRUE(writes(text, [&](char *buf) {
        return action.params.empty() ? invoke<std::uint32_t>(name, buf) : invoke<std::uint32_t>(name, spec.data(), buf);
      })) << name;
    }
  }
  EXPECT_EQ(longest_key, 280U);
  EXPECT_EQ(longest_action, 98U);
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

TEST(value_text, of_entries)
{
  std::size_t longest = 0;
  for_each_entry([&](const told_entry &told) {
    for (const std::uint32_t priority : {0U, 42U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
      told_entry entry = told;
      entry.priority = priority;
      entry.mbr_hdl = entry.grp_hdl = priority;
      driver().reset();
      driver().answer = entry;
      const bool ternary = entry.table->kind == calls::table_kind::ternary;
      const std::string text =
          "(" + entry.key_and_action() + formatted("),(%d,True))", ternary ? static_cast<int>(priority) : 0);
      longest = std::max(longest, text.size());
      const std::string name = entry.table->name;
      ASSERT_TRUE(writes(text, text_by(name + "_value", 7U, 0x302U, 9U, 0x1ffU))) << name;
      ASSERT_TRUE(writes(text, text_by("entry_value", 7U, 0x302U, entry.table->handle, 9U, 0x100U))) << name;
      const std::vector<std::uint64_t> flags = {driver().calls.at(0).arguments.at(7).word,
                                                driver().calls.at(1).arguments.at(7).word};
      ASSERT_EQ(flags, (std::vector<std::uint64_t>{0xff, 0}));
    }
  });
  EXPECT_EQ(longest, 330U);
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

TEST(value_text, of_an_entry_that_cannot_be_read_is_nothing)
{
  for (const auto &table : calls::tables) {
    const bool indirect = table.profile != nullptr;
    told_entry entry(table, indirect ? nullptr : &table.actions[0]);
    const auto write = text_by("entry_value", 1U, 0U, table.handle, 5U, 0U);
    entry.status = 0x41;
    driver().answer = entry;
    EXPECT_TRUE(writes_nothing(write)) << table.name;
    if (indirect) continue;
    entry.status = 0;
    entry.act_kinds = 2;
    driver().answer = entry;
    EXPECT_TRUE(writes_nothing(write)) << table.name;
  }
}

TEST(equality, looks_at_live_bits_alone)
{
  const auto check = [](const std::string &function, const std::vector<text_row> &rows, std::size_t size) {
    record live(size);
    for (const text_row &row : rows) {
      for (std::size_t i = 0; i < row.size; ++i)
        live[row.member + i] |= row.bits == 128 ? row.live[i] : row.live[15 - i];
    }
    const record a = random_record(size);
    for (std::size_t bit = 0; bit < 8 * size; ++bit) {
      record b = a;
      b[bit / 8] = static_cast<std::uint8_t>(b[bit / 8] ^ 1U << bit % 8);
      const std::uint8_t equal = (live[bit / 8] >> bit % 8 & 1) != 0 ? 0 : 1;
      ASSERT_EQ(invoke<std::uint8_t>(function, a.data(), b.data()), equal) << function << ", bit " << bit;
    }
    EXPECT_EQ(invoke<std::uint8_t>(function, a.data(), a.data()), 1) << function;
  };
  for (const auto &table : calls::tables)
    if (keyed(table)) check(std::string(table.name) + "_match_specs_are_equal", rows_of(table), table.record_size);
  for (const auto &action : calls::actions)
    if (!action.params.empty())
      check(std::string(action.name) + "_action_specs_are_equal", rows_of(action), action.record_size);
}

TEST(width_and_priority, follow_the_rows)
{
  unsigned widths = 0, priorities = 0;
  for (const auto &table : calls::tables) {
    for (const auto &field : table.fields) {
      std::string name = field.name;
      if (name.ends_with("_valid")) name.resize(name.size() - 6);
      EXPECT_EQ(invoke<std::uint32_t>(std::string(table.name) + "_" + name + "_width"), field.bits);
      ++widths;
    }
    const auto rows = rows_of(table);
    const bool masked = std::ranges::any_of(rows, [](const auto &row) { return row.name.ends_with("_mask"); });
    EXPECT_EQ(invoke<std::uint32_t>(std::string(table.name) + "_supports_entry_priority"), masked ? 1U : 0U);
    priorities += masked ? 1 : 0;
  }
  EXPECT_EQ(widths, 367U);
  EXPECT_EQ(priorities, 33U);
  EXPECT_EQ(p4_pd_tarvex_switch_l2DmacClassify_ig_intr_md_ingress_port_width(), 9U);
  EXPECT_EQ(p4_pd_tarvex_switch_l2DomainLookup_vlanHdr_0__width(), 1U);
}

}  // namespace

}  // namespace tarvex::test
