// What the tab key offers.
//
// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <fstream>

#include "command.h"
#include "shell_fixture.h"

namespace tarvex::shell {
namespace {

using names = std::vector<std::string>;

TEST(completion, goes_on_with_names_of_files)
{
  const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "tvsh_completion";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder / "states.d" / ".hidden");
  for (const char *name : {"state.json", "states.d/one.json", "two words", ".hidden", "liver"})
    std::ofstream(folder / name);
  const std::pair<std::string, names> cases[] = {
      {"load ", {"liver", "state.json", "states.d/"}},
      {"save states", {"states.d/"}},
      {"apply states.d/", {"states.d/one.json"}},
      {"apply states.d/.", {"states.d/.hidden/"}},
      {"load-routes " + (folder / "st").string(), {folder / "state.json", (folder / "states.d/").string()}},
      {"load none/", {}},
      {"load state.json r", {"replace"}},
      {"diff li", {"live", "liver"}},
      {"diff live s", {"state.json", "states.d/"}},
  };
  for (const auto &[line, expected] : cases) EXPECT_EQ(session::complete(line, folder), expected) << line;
}

TEST(completion, knows_commands_tables_actions_and_fields)
{
  EXPECT_EQ(session::complete("").size(), commands().size());
  EXPECT_EQ(session::complete("dump ").size(), 120u);
  const std::pair<const char *, names> cases[] = {
      {"sch", {"schema"}},
      {"dump ipv4Ho", {"ipv4Host"}},
      {"add ipv4Host dip=10.0.0.1 ", {"onMiss", "setEcmp", "setNextHop", "setNextHop2", "setNextHop3", "vrfId="}},
      {"add ipv4Host ingIpv4_dip=10.0.0.1 l3Info_vrfId=1 setE", {"setEcmp"}},
      {"add ipv4Host ", {"dip=", "onMiss", "setEcmp", "setNextHop", "setNextHop2", "setNextHop3", "vrfId="}},
      {"add ipv4Host vrfId=1 setN", {"setNextHop", "setNextHop2", "setNextHop3"}},
      {"add ipv4Host vrfId=1 dip=10.0.0.1 setEcmp ", {"ecmpGroup=", "ttl="}},
      {"add ipv4Host vrfId=1 dip=10.0.0.1 setEcmp ttl=5 ecmpGroup=1 ", {}},
      {"add l2SmacCheck priority=1 ", {"setIllegalSmac", "smac="}},
      {"add l2LookupMiss priority=1 l2LookupBcastHit cir=1 ", {"cburst=", "pburst=", "pir=", "type="}},
      {"modify ipv4Host handle=1 setN", {"setNextHop", "setNextHop2", "setNextHop3"}},
      {"modify ipv4Host h", {"handle="}},
      {"delete ipv4Host vrfId=1 ", {"dip="}},
      {"delete ipv4Host handle=1 ", {}},
      {"idle ipv4Host ttl vrfId=1 dip=10.0.0.1 ", {"ttl="}},
      {"idle ipv4Host enable mode=poll ", {"interval=", "max-ttl="}},
      {"entry ecmpGroup add ecmpGroup=1 ", {"group=", "member="}},
      {"entry ecmpGroup set-default group=1 ", {}},
      {"sim lookup ipv4Host vrfId=1 ", {"dip="}},
      {"sim corrupt ipv4Host handle=1 ", {"bit="}},
      {"set-default ipv4Host ", {"onMiss"}},
      {"show l2SmacCheck ", {"handle=", "priority=", "smac="}},
      {"add ingVlan", {}},
      {"entry ecmp", {"ecmpGroup"}},
      {"member ecmp", {"ecmpMemberActionProfile"}},
      {"member ecmpMemberActionProfile a", {"add"}},
      {"member ecmpMemberActionProfile add setEcmpNextHop ", {"as=", "nextHop="}},
      {"wred ", {"wredBlock"}},
      {"hash hashOuterIpv4", {"hashOuterIpv4Hdr"}},
      {"sim lo", {"lookup", "lose"}},
      {"tables | ", {"count", "exclude", "include"}},
      {"help sn", {"snapshot"}},
      {"snapshot f", {"fields"}},
      {"snapshot fields i", {"ingress"}},
      {"snapshot arm egress last", {"last-stage="}},
      {"snapshot arm egress last-stage=2 la", {}},
      {"snapshot show ", {}},
      {"dump ipv4Host --r", {"--raw"}},
      {"nothing ", {}},
      {"dump 'ipv4", {}},
  };
  for (const auto &[line, expected] : cases) EXPECT_EQ(session::complete(line), expected) << line;
  EXPECT_EQ(session::complete("snapshot arm ingress ").size(),
            session::complete("snapshot fields ingress ").size() + 2);
  EXPECT_GT(session::complete("snapshot fields egress ").size(), 100u);
}

}  // namespace
}  // namespace tarvex::shell
