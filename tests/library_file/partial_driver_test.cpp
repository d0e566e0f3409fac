// A driver that lacks some functions: all that has no need of them works, and a call of one ends the process.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tarvex_pd/tarvex_pd.h"
#include "tarvex_standin/standin.h"

namespace {

constexpr pd_sess_hdl_t session = 1;
constexpr std::uint32_t device = 0;
constexpr pd_dev_tgt_t everywhere = pd_dev_tgt_t{PD_ALL_PIPES} << 32;

TEST(partial_driver, serves_all_that_does_not_need_what_it_lacks)
{
  ASSERT_EQ(standin_device_add(device), BF_SUCCESS);
  ASSERT_EQ(p4_pd_tarvex_switch_init(), BF_SUCCESS);

  p4_pd_tarvex_switch_ipv4Host_match_spec_t key{};
  p4_pd_tarvex_switch_setNextHop_action_spec_t action{};
  pd_entry_hdl_t entry = 0;
  EXPECT_EQ(p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(session, everywhere, &key, &action, 0, &entry),
            BF_SUCCESS);
  const std::uint8_t one = 1;
  std::uint8_t values[64] = {};
  std::uint32_t count = 0;
  EXPECT_EQ(p4_pd_tarvex_switch_register_write_ingVlanCheckData(session, everywhere, 7, &one), BF_SUCCESS);
  EXPECT_EQ(p4_pd_tarvex_switch_register_read_ingVlanCheckData(session, everywhere, 7, 0, values, &count), BF_SUCCESS);
  EXPECT_EQ(values[0], 1);

  // A replay brings the groups' resources up to date where the driver has a function for that.
  p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t next_hop{};
  pd_mbr_hdl_t member = 0;
  pd_grp_hdl_t group = 0;
  EXPECT_EQ(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop(session, everywhere, &next_hop,
                                                                                       &member),
            BF_SUCCESS);
  EXPECT_EQ(p4_pd_tarvex_switch_ecmpMemberActionProfile_create_group(session, everywhere, 4, &group), BF_SUCCESS);
  EXPECT_EQ(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_to_group(session, device, group, member),
            BF_SUCCESS);
  EXPECT_EQ(p4_pd_tarvex_switch_dev_remove(device), BF_SUCCESS);
  EXPECT_EQ(p4_pd_tarvex_switch_restore_virtual_dev_state(session, device, 0, 0, 0), BF_SUCCESS);
  p4_pd_tarvex_switch_ecmpGroup_match_spec_t ecmp{};
  EXPECT_EQ(p4_pd_tarvex_switch_ecmpGroup_add_entry_with_selector(session, everywhere, &ecmp, group, &entry),
            BF_SUCCESS);

  EXPECT_EXIT(p4_pd_tarvex_switch_register_hw_sync_direct(session, everywhere, 0, nullptr, nullptr),
              testing::ExitedWithCode(127), "undefined symbol: pipe_stful_direct_database_sync");
  EXPECT_EQ(p4_pd_tarvex_switch_cleanup(), BF_SUCCESS);
}

}  // namespace
