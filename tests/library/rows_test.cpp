// The rows as a whole: their totals, the order that they must stand in, and by hand the ones that everything else leans
// on.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "call_table.h"

namespace tarvex::test {

namespace {

using calls::match_kind;
using calls::table_kind;

TEST(rows, totals)
{
  std::map<table_kind, int> kinds;
  std::map<match_kind, int> fields;
  int validity_fields = 0, idle_time = 0, labels = 0, direct_actions = 0, keyless_actions = 0, member_actions = 0;
  int defaults = 0, with_parameters = 0;
  for (const calls::table_info &table : calls::tables) {
    ++kinds[table.kind];
    idle_time += table.idle_time;
    labels += table.counter_label;
    if (table.profile != nullptr) {
      member_actions += static_cast<int>(table.profile->actions.size());
    } else {
      (table.kind == table_kind::keyless ? keyless_actions : direct_actions) += static_cast<int>(table.actions.size());
      for (const calls::use_info &use : table.actions) defaults += use.is_default;
    }
    for (const calls::field_info &field : table.fields) {
      ++fields[field.match];
      validity_fields += std::string(field.name).ends_with("_valid") && field.bits == 1;
    }
  }
  for (const calls::action_info &action : calls::actions) with_parameters += !action.params.empty();
  EXPECT_EQ(kinds,
            (std::map<table_kind, int>{
                {table_kind::exact, 64}, {table_kind::ternary, 33}, {table_kind::lpm, 8}, {table_kind::keyless, 15}}));
  EXPECT_EQ(fields[match_kind::ternary], 174);
  EXPECT_EQ(fields[match_kind::lpm], 8);
  EXPECT_EQ(fields[match_kind::partition], 3);
  EXPECT_EQ(fields[match_kind::exact], 367 - 174 - 8 - 3);
  EXPECT_EQ(validity_fields, 42);
  EXPECT_EQ(idle_time, 7);
  EXPECT_EQ(labels, 8);
  EXPECT_EQ(direct_actions, 262);
  EXPECT_EQ(keyless_actions, 15);
  EXPECT_EQ(member_actions, 8);
  EXPECT_EQ(defaults, 183);
  EXPECT_EQ(with_parameters, 120);
}

// Tables by handle, 1 to 0x7b without the three behind partitioned tables; actions rise along; names count as first
// used.
TEST(rows, stand_in_order)
{
  std::uint32_t table_handle = 0x1000000, action_handle = 0x20000004;
  std::vector<const calls::action_info *> first_used;
  for (const calls::table_info &table : calls::tables) {
    do ++table_handle;
    while (table_handle == 0x1000010 || table_handle == 0x1000012 || table_handle == 0x1000014);
    EXPECT_EQ(table.handle, table_handle) << table.name;
    for (const calls::use_info &use : table.profile != nullptr ? table.profile->actions : table.actions) {
      EXPECT_GT(use.handle, action_handle) << table.name << ", " << use.action->name;
      action_handle = use.handle;
      if (std::ranges::find(first_used, use.action) == first_used.end()) first_used.push_back(use.action);
    }
  }
  EXPECT_EQ(table_handle, 0x100007bu);
  EXPECT_EQ(action_handle, 0x20000489u);
  ASSERT_EQ(first_used.size(), 231u);
  for (std::uint32_t i = 0; i < 231; ++i) EXPECT_EQ(first_used[i]->enum_value, i) << first_used[i]->name;
}

TEST(rows, profiles_by_hand)
{
  struct row {
    const char *profile, *table;
    std::uint32_t action_data_table, selector_table, table_handle;
    std::vector<std::pair<const char *, std::uint32_t>> actions;
  };
  const row rows[] = {
      {"ecmpMemberActionProfile", "ecmpGroup", 0x2000015, 0x3000001, 0x1000018, {{"setEcmpNextHop", 0x20000119}}},
      {"lagPortActionProfile",
       "lagGroup",
       0x200002e,
       0x3000002,
       0x1000031,
       {{"setLagPort", 0x200001ab},
        {"setPhysicalPort", 0x200001af},
        {"setTunnelInfo", 0x200001b2},
        {"invalidateUcastEgressPort", 0x200001b4}}},
      {"tunnelMember", "tunnelResolve", 0x2000032, 0x3000003, 0x1000035, {{"setTunnelEgressInfo", 0x200001dc}}},
      {"mirrorLagPortActionProfile",
       "ingressMirrorLagGroup",
       0x200006e,
       0x3000004,
       0x1000071,
       {{"setLagMemberSelector", 0x2000044c}}},
      {"egrMirrorLagPortActionProfile",
       "egressMirrorLagGroup",
       0x2000071,
       0x3000005,
       0x1000074,
       {{"setEgrLagMemberSelector", 0x20000471}}},
  };
  ASSERT_EQ(calls::profiles.size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const calls::profile_info &is = calls::profiles[i];
    EXPECT_EQ(is.name, std::string(rows[i].profile));
    EXPECT_EQ(is.action_data_table, rows[i].action_data_table) << is.name;
    EXPECT_EQ(is.selector_table, rows[i].selector_table) << is.name;
    EXPECT_EQ(is.table, rows[i].table_handle) << is.name;
    const auto table = std::ranges::find_if(calls::tables, [&](const auto &one) { return one.handle == is.table; });
    ASSERT_NE(table, calls::tables.end());
    EXPECT_EQ(table->name, std::string(rows[i].table));
    EXPECT_EQ(table->profile, &is);
    ASSERT_EQ(is.actions.size(), rows[i].actions.size()) << is.name;
    for (std::size_t at = 0; at < is.actions.size(); ++at) {
      EXPECT_EQ(is.actions[at].action->name, std::string(rows[i].actions[at].first));
      EXPECT_EQ(is.actions[at].handle, rows[i].actions[at].second);
    }
  }
}

TEST(rows, tables_with_idle_time_and_labels_by_name)
{
  std::set<std::string> idle_time, labels;
  for (const calls::table_info &table : calls::tables) {
    if (table.idle_time) idle_time.insert(table.name);
    if (table.counter_label) labels.insert(table.name);
  }
  EXPECT_EQ(idle_time, (std::set<std::string>{"ipv4Host", "ipv6Host", "ipv4ShortMaskLpm", "ipv6ShortMaskLpm",
                                              "l2LearningLookup", "ipv4McGroupVlan", "ipv4McSourceGroupVlan"}));
  EXPECT_EQ(labels,
            (std::set<std::string>{"l2DmacClassify", "ingressPortDropCheck", "haloCounters", "finalDropControl",
                                   "trapToCpu", "egressPortDropCheck", "ingL2DomainCount", "egrL2DomainCount"}));
}

}  // namespace

}  // namespace tarvex::test
