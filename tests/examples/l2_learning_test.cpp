// The parts of l2_learning that need no switch: reading identifiers out of a registry file, and the plan of a run.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <sstream>

#include "oui_list.h"
#include "plan.h"

namespace {

using namespace tarvex::l2_learning;

TEST(OuiList, TakesAssignmentsAndNothingElse)
{
  std::istringstream file(
      "Registry,Assignment,Organization Name,Organization Address\r\n"
      "MA-L,0A1b2C,\"A, B\",\"a street,\nand its second line\"\n"
      "MA-L,FEDCBA,C,\r\n"
      "MA-L,011122,a group's,\n"  // group bit
      "MA-L,12345,too short,\n"
      "MA-L,1234567,too long,\n"
      "MA-L,12345g,no digit,\n"
      "MA-M,223344,another registry,\n"
      "MA-L,445566,the last");
  EXPECT_EQ(read_ouis(file), (std::vector<std::uint32_t>{0x0a1b2c, 0xfedcba, 0x445566}));
  EXPECT_FALSE(find_ouis().ouis.empty());
}

TEST(Plan, IsOfItsSeedAloneAndHasAllStations)
{
  const std::vector<std::uint32_t> ouis{0x020001, 0x020002};
  const plan a = make_plan(ouis, 500, 7), same = make_plan(ouis, 500, 7), other = make_plan(ouis, 500, 8);
  EXPECT_EQ(a.by_domain.size(), std::size_t{domain_count});
  EXPECT_EQ(a.survivors.size(), same.survivors.size());
  for (const auto &[id, each] : a.survivors) EXPECT_TRUE(same.survivors.contains(id)) << to_text(id);
  EXPECT_NE(a.announcements.front().source, other.announcements.front().source);
  EXPECT_EQ(a.announcements.size(), 500 + a.learning.refreshed);
  EXPECT_EQ(a.learning.learned, a.learning.aged + a.survivors.size());
  for (const auto &[name, figure] : learning_figure_names) EXPECT_GT(a.learning.*figure, 0u) << name;
  for (const auto &[name, figure] : forwarding_figure_names) EXPECT_GT(a.forwarding.*figure, 0u) << name;
}

}  // namespace
