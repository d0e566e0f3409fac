// Names and numbers of actions, some of them by hand.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "caller.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::test {

namespace {

TEST(action_names, by_hand)
{
  ASSERT_EQ(calls::actions.size(), 231u);
  const std::pair<std::uint32_t, const char *> by_hand[] = {{0, "setPhase0"},
                                                            {8, "onMiss"},
                                                            {42, "setEcmpNextHop"},
                                                            {86, "invalidateUcastEgressPort"},
                                                            {95, "setTunnelEgressInfo"},
                                                            {114, "noDecapNoEncapBridgeIpv4"},
                                                            {218, "setLagMemberSelector"},
                                                            {223, "setEgrLagMemberSelector"},
                                                            {230, "setEcn"}};
  for (const auto &[value, name] : by_hand) {
    EXPECT_EQ(p4_pd_tarvex_switch_action_enum_to_string(value), std::string("p4_pd_tarvex_switch_") + name);
  }
  for (std::uint32_t value = 0; value < calls::actions.size(); ++value) {
    const std::string name = p4_pd_tarvex_switch_action_name_strings[value];
    EXPECT_EQ(name, p4_pd_tarvex_switch_action_enum_to_string(value));
    EXPECT_LT(name.size(), std::size_t{P4_PD_TARVEX_SWITCH_ACTION_NAME_SIZE});
  }
}

}  // namespace

}  // namespace tarvex::test
