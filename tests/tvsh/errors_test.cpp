// Wrong input: what it is told, with which exit code, and that nothing was written.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <nlohmann/json.hpp>

#include "command.h"
#include "shell_fixture.h"
#include "typed_line.h"

namespace tarvex::shell {
namespace {

struct mistake {
  std::string_view line;
  exit_code code;
  std::string_view told;  // a part of the error
};

constexpr auto usage = exit_code::usage;
constexpr auto refused = exit_code::refused;

constexpr mistake mistakes[] = {
    // lines
    {"tabels", usage, "did you mean tables?"},
    {"tables -x", usage, "no option '-x'"},
    {"tables '", usage, "no end"},
    {"tables | inclde x", usage, "did you mean include"},
    {"tables | include", usage, "takes one regular expression"},
    {"tables | include [", usage, "no regular expression"},
    {"tables | count x", usage, "takes no argument"},
    {"tables |", usage, "a filter is missing"},
    {"| count", usage, "a command is missing"},
    {"tables -j | count", usage, "leave out either"},
    {"tables [", usage, "no regular expression"},
    {"tables a b", usage, "one word too many"},
    {"tables fib", usage, "there is no table that matches 'fib'; 'tables' lists all"},
    {"tables ipv4Hots -j", usage, "did you mean ipv4Host? 'tables' lists all"},
    {"snapshot fields ingress nothingLikeIt", usage, "no field that matches 'nothingLikeIt'; 'snapshot fields"},
    {"help no", usage, "no command 'no'"},
    {"exit now", usage, "too many"},
    {"quit now", usage, "too many"},
    {"dup ipv4Host ?", usage, "did you mean dump?"},
    {"add ipv4Hots ?", usage, "did you mean ipv4Host?"},
    // names
    {"schema ipv4host", usage, "did you mean ipv4Host"},
    {"schema", usage, "usage: schema TABLE"},
    {"dump", usage, "TABLE is missing"},
    {"dump ipv4Hots", usage, "did you mean ipv4Host"},
    {"count nothingLikeIt", usage, "there is no table 'nothingLikeIt'"},
    {"default x", usage, "no table"},
    {"members lagPort", usage, "did you mean lagPortActionProfile"},
    {"groups", usage, "PROFILE is missing"},
    {"counters pdpClassCnt 0", usage, "did you mean pdpClassCount"},
    {"counters pdpClassCount", usage, "INDEX is missing"},
    {"counters pdpClassCount 5-3", usage, "ends ahead"},
    {"meters pdpMeter x", usage, "no index"},
    {"meter wredBlock 0", usage, "there is no meter"},
    {"registers ingVlanCheck 0", usage, "did you mean ingVlanCheckData"},
    {"hash outer", usage, "no hash calculation"},
    // keys
    {"show ipv4Host vrfId=1", usage, "missing dip (32 bits, IPv4 address)"},
    {"show ipv4Host vrfid=1 dip=10.0.0.1", usage, "did you mean vrfId"},
    {"show ipv4Host vrfId=256 dip=10.0.0.1", usage, "vrfId (8 bits): 256 is too wide; the largest value is 255"},
    {"show ipv4Host vrfId=1 dip=10.0.0", usage, "dip (32 bits, IPv4 address): '10.0.0' is no value"},
    {"show ipv4Host vrfId=1 vrfId=1 dip=10.0.0.1", usage, "given twice"},
    {"show ipv4Host vrfId=1 dip=10.0.0.1 onMiss", usage, "no action is wanted"},
    {"show ipv4Host handle=1 vrfId=1", usage, "either the handle or the key"},
    {"show ipv4Host vrfId=1 dip=10.0.0.0/8", usage, "matched as a whole"},
    {"show ipv6Host vrfId=1 dip=10.0.0.1", usage, "IPv6 address"},
    {"show l2SmacCheck smac=00:00:00:00:00:01", usage, "priority= (32 bits) is missing"},
    {"show routedMartian", usage, "handle="},
    {"show ipv4Host handle=x", usage, "no handle"},
    {"show ipv4Host handle=99", refused, "no entry (STANDIN_NO_ENTRY, status 68)"},
    // entries
    {"add ipv4Host vrfId=1 dip=10.0.0.1", usage, "ACTION is missing; ipv4Host has setNextHop"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNexthop", usage, "did you mean setNextHop"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop", usage, "missing nextHop (16 bits)"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=65536", usage, "too wide"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nexthop=1", usage, "did you mean nextHop"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=1 priority=1", usage, "no parameter 'priority'"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=1 ttl=4294967296", usage, "too wide for 32 bits"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop setEcmp", usage, "setNextHop is the action"},
    {"add ipv4ShortMaskLpm vrfId=1 dip=10.0.0.0/33 setEcmp ecmpGroup=1", usage, "no prefix length from 0 to 32"},
    {"add l2SmacCheck smac=00:1c:73:00:00 priority=1 setIllegalSmac", usage, "smac (48 bits, MAC address)"},
    {"add l2LookupMiss priority=1 l2LookupBcastHit", usage, "cir= (32 bits) is missing"},
    {"add ecmpGroup ecmpGroup=1 member=1", usage, "use the command entry"},
    {"add ingVlanCheck ingVlanAction", usage, "has no key"},
    {"modify ipv4Host onMiss", usage, "missing vrfId"},
    {"modify ipv4Host handle=9 onMiss", refused, "modifying entry 9 of ipv4Host"},
    {"delete ipv4Host", usage, "missing vrfId (8 bits), dip"},
    {"delete ipv4Host vrfId=1 dip=10.9.9.9", refused, "no entry"},
    {"add finalDropControl ingressPort=300 priority=1 onMiss", usage, "it looks at 0x7f; it would match 44"},
    {"delete ipv4ShortMaskLpm vrfId=1 dip=11.1.2.3", usage, "would match 11.0.0.0/12. Write that, or add --force"},
    {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=1 --forced", usage, "did you mean --force?"},
    {"set-default ipv4Host setEcmp ecmpGroup=1", usage, "these can: onMiss"},
    {"set-default ipv4Host", usage, "ACTION is missing"},
    {"reset-default", usage, "TABLE is missing"},
    // profiles
    {"member ecmpMemberActionProfile ad", usage, "did you mean add?"},
    {"member ecmpMemberActionProfile add setEcmpNextHop nextHop=70000", usage, "too wide"},
    {"member ecmpMemberActionProfile delete 5", refused, "member 5"},
    {"group ecmpMemberActionProfile create", usage, "SIZE is missing"},
    {"group ecmpMemberActionProfile add 1", usage, "MEMBER is missing"},
    {"group ecmpMemberActionProfile delete 5", refused, "no group"},
    {"entry ipv4Host add", usage, "not indirect"},
    {"entry ecmpGroup add ecmpGroup=1", usage, "one of member= and group="},
    {"entry ecmpGroup add ecmpGroup=1 member=1 group=1", usage, "one of member= and group="},
    {"entry ecmpGroup add ecmpGroup=1 member=1", refused, "no member"},
    // resources and services
    {"counter l2DmacClassifyCount 5 packets=1 bytes=1", usage, "name one by handle=N"},
    {"counter pdpClassCount handle=5 packets=1 bytes=1", usage, "by an index"},
    {"counter pdpClassCount 5 packets=1", usage, "bytes= (64 bits) is missing"},
    {"meter pdpMeter 1 cir=1 cburst=1 pir=1 pburst=1 type=grey", usage, "'aware' or 'unaware'"},
    {"meter pdpMeter 1 cir=1 cburst=1 pir=1 pburst=1 type=aware", usage, "set unaware of it"},
    {"meter pdpMeter 1 cir=2 cburst=1 pir=1 pburst=1", usage, "pir=1 is below cir=2"},
    {"add l2LookupMiss priority=1 l2LookupBcastHit cir=10 cburst=20 pir=9 pburst=40", usage, "pir=9 is below cir=10"},
    {"meter pdpMeter 4294967295 cir=1 cburst=1 pir=1 pburst=1", usage, "is beyond what switches have cells for"},
    {"counter pdpClassCount 1048576 packets=1 bytes=1", usage, "0 to 1048575; add --force"},
    {"register ingVlanCheckData 0-9999999 reset", usage, "index 9999999 is beyond"},
    {"registers ingVlanCheckData 0-9999999", usage, "index 9999999 is beyond"},
    {"wred wredBlock 1 time=a min=1 max=2 probability=0.5", usage, "no number from 0 up"},
    {"wred wredBlock 1 time=1 min=3 max=2 probability=0.5", usage, "max is below min"},
    {"register ingVlanCheckData 1 2", usage, "too wide for 1 bit"},
    {"hash hashOuterIpv4Hdr fields 3", usage, "has the fields 0 to 2"},
    {"hash hashOuterIpv4Hdr sed 3", usage, "did you mean seed?"},
    {"trace of", usage, "did you mean on or off?"},
    {"trace replay", usage, "FILE is missing"},
    {"trace replay no/such", exit_code::file, "cannot be opened"},
    {"trace no/such/folder", exit_code::file, "No such file"},
    {"trace on off", usage, "one word too many"},
    {"value-set add value=0x806 mask=0x0f", usage, "0x806 has bits outside the mask 0xf; it would match 0x6"},
    {"value-set add mask=1", usage, "value= (32 bits) is missing"},
    {"value-set delete 9", refused, "entry 9"},
    {"digests maybe", usage, "no verb"},
    {"idle nextHop", usage, "has no idle time"},
    {"idle ipv4Host update", refused, "not enabled"},
    {"snapshot", usage, "VERB is missing"},
    {"snapshot arm ingress", usage, "FIELD=VALUE is missing"},
    {"snapshot arm ingress vlanHdr_0__vlanid=1", usage, "did you mean vlanHdr_0__vlanId"},
    {"snapshot arm ingress vlanHdr_0__vlanId=65536", usage, "too wide"},
    {"snapshot show 99", refused, "no snapshot"},
    {"load-routes /nowhere/routes", exit_code::file, "/nowhere/routes"},
    {"save", usage, "FILE is missing"},
    {"save /nowhere/state.json", exit_code::file, "/nowhere/state.json"},
    {"save state.json all", usage, "one word too many"},
    {"load /nowhere/state.json", exit_code::file, "cannot be opened"},
    {"diff live", usage, "B is missing"},
    {"diff live /nowhere/state.json", exit_code::file, "cannot be opened"},
    {"apply live cells=x", usage, "is no cells"},
    {"let 1 member tunnelMember 1", usage, "is no name"},
    {"let a member tunnelMember 1", usage, "has no member at position 1"},
    {"delete ipv4Host handle=$a", usage, "no handle has the name $a"},
    {"monitor ipv4Hots", usage, "did you mean ipv4Host"},
    {"monitor count=x", usage, "is no count"},
    {"audit", usage, "'audit on' begins it"},
    {"audit of", usage, "neither on nor off"},
    {"restart lgo", usage, "did you mean log?"},
    {"sim lose ipv4Host handle=1", refused, "no entry"},
    {"sim corrupt ipv4Host handle=1", refused, "no entry"},
    {"sim age 1 --dry-run", usage, "--dry-run"},
    {"sim dance", usage, "no verb"},
    {"sim device add 0", refused, "exists"},
    {"sim learn 00:00:00:00:00:01", refused, "not enabled"},
    {"sim lookup ipv4Host vrfId=1", usage, "missing dip"},
};

class errors_test : public shell_test {};

TEST_F(errors_test, each_mistake_is_told_and_writes_nothing)
{
  for (const mistake &each : mistakes) {
    const answer got = run(each.line);
    EXPECT_EQ(got.code, each.code) << each.line << "\n" << got.errors;
    EXPECT_NE((got.errors + got.lines).find(each.told), std::string::npos) << each.line << "\n" << got.errors;
  }
  EXPECT_EQ(lines_of("count"), "");
}

// With -j the error is the command's document, and nothing goes beside it.
TEST_F(errors_test, each_mistake_is_told_as_json)
{
  for (const mistake &each : mistakes) {
    if (each.line.find_first_of("'|") != std::string_view::npos) continue;  // -j would not be a word of its own
    const answer got = run(std::string(each.line) + " -j");
    EXPECT_EQ(got.errors, "") << each.line;
    const auto document = nlohmann::json::parse(got.lines, nullptr, false);
    ASSERT_TRUE(document.is_object()) << each.line << "\n" << got.lines;
    EXPECT_EQ(document["error"]["exit_code"], static_cast<int>(each.code)) << each.line;
    EXPECT_NE(document["error"].value("message", "").find(each.told), std::string::npos) << got.lines;
  }
  shell.defaults.json = true;
  EXPECT_EQ(run("tables '").lines,
            "{\"schema_version\":2,\"error\":{\"message\":\"the quote ' has no end\",\"exit_code\":1}}\n");
}

TEST_F(errors_test, a_refused_walk_names_what_is_walked)
{
  for (const auto &[line, what] : {std::pair("dump ipv4Host", "the entries of ipv4Host"),
                                   std::pair("members tunnelMember", "the members of tunnelMember"),
                                   std::pair("groups tunnelMember", "the groups of tunnelMember")}) {
    standin_refuse_call(1, 0x77);
    const std::string told = run(line).errors;
    EXPECT_NE(told.find(std::string("walking ") + what + ": the driver refused: status 119"), std::string::npos)
        << told;
  }
}

// The switch tells that an entry is in the way, and not which.
TEST_F(errors_test, the_entry_in_the_way_is_named)
{
  const auto errors_of = [&](std::string_view line) {
    const answer got = run(line);
    EXPECT_EQ(got.code, refused) << line;
    return got.errors.substr(got.errors.find("status 73") + 10);
  };
  lines_of("add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5");
  EXPECT_EQ(errors_of("add ipv4Host vrfId=1 dip=10.0.0.1 onMiss"),
            "; in the way is entry 1: vrfId=1 dip=10.0.0.1 setNextHop nextHop=5\n");
  lines_of("add ipv4ShortMaskLpm vrfId=1 dip=11.0.0.0/12 setEcmp ecmpGroup=1");
  EXPECT_EQ(
      errors_of("add ipv4ShortMaskLpm vrfId=1 dip=11.1.2.3 setEcmp ecmpGroup=2 --force"),
      "; in the way is entry 1: vrfId=1 dip=11.0.0.0/12 setEcmp ecmpGroup=1; dip=11.1.2.3/32 and dip=11.0.0.0/12 both "
      "match 11.0.0.0/12, as the switch looks at 255.240.0.0\n");
  lines_of("add l2SmacCheck smac=00:1c:73:00:00:00/24 priority=1 setIllegalSmac");
  EXPECT_EQ(errors_of("add l2SmacCheck smac=00:1c:73:00:00:01/24 priority=1 setIllegalSmac --force"),
            "; in the way is entry 1: smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 priority=1 setIllegalSmac; "
            "smac=00:1c:73:00:00:01/ff:ff:ff:00:00:00 and smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 both match "
            "00:1c:73:00:00:00/ff:ff:ff:00:00:00, as the switch ignores bits outside the mask\n");
  lines_of("member ecmpMemberActionProfile add setEcmpNextHop nextHop=1");
  lines_of("entry ecmpGroup add ecmpGroup=5 member=1");
  EXPECT_EQ(
      errors_of("entry ecmpGroup add ecmpGroup=1029 member=1 --force"),
      "; in the way is entry 1: ecmpGroup=5 member=1; ecmpGroup=1029 and ecmpGroup=5 both match 5, as the switch looks "
      "at 0x3ff\n");
  for (const char *handle :
       {"ipv4Host handle=1", "ipv4ShortMaskLpm handle=1", "l2SmacCheck handle=1", "ecmpGroup handle=1"})
    lines_of(std::string("delete ") + handle);
}

TEST(typed_lines, with_a_character_that_cannot_be_seen_are_refused)
{
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"dump ipv4Host | include 10\\.0 # f\xc3\xbcr heute", ""},
      {"save \"Z\xc3\xbcrich.json\"", ""},
      {"dump\tipv4Host", ""},
      {"show dip=10.0.0.1\xc2\xa0"
       "2",
       "\n  show dip=10.0.0.1<U+00A0>2\n                   ^"},
      {"count \xe2\x80\x8bipv4Host \xc2\xa0", "\n  count <U+200B>ipv4Host <U+00A0>\n        ^"},
      {"a\xa0"
       "b",
       "\n  a<0xA0>b\n   ^"},
      {"a\xf0\x9f\x98\x80", "\n  a<U+1F600>\n   ^"},
      {"a\xe2\x82", "\n  a<0xE2><0x82>\n   ^"},
      {"'\xef\xbf\xbd'", "\n  '<?>'\n   ^"},
      {"a\x1b[A", "\n  a<U+001B>[A\n   ^"},
  };
  for (const auto &[line, told] : cases) {
    const std::string fault = character_fault(line);
    EXPECT_EQ(fault.empty(), told.empty()) << fault;
    EXPECT_TRUE(fault.ends_with(told)) << fault;
  }
}

TEST_F(errors_test, every_command_has_a_mistake_here)
{
  for (const command &each : commands()) {
    const bool tried = std::ranges::any_of(
        mistakes, [&](const mistake &mistake) { return mistake.line.substr(0, mistake.line.find(' ')) == each.name; });
    EXPECT_TRUE(tried) << each.name;
  }
}

// Each driver call of a command is refused once: the command says so, and the next one works.
TEST_F(errors_test, every_refusal_of_the_driver_is_passed_on)
{
  lines_of("add ipv4Host vrfId=1 dip=10.0.0.1 onMiss");
  lines_of("member ecmpMemberActionProfile add setEcmpNextHop nextHop=1");
  for (const std::string_view line :
       {"dump ipv4Host", "show ipv4Host vrfId=1 dip=10.0.0.1", "count", "default ipv4Host",
        "add ipv4Host vrfId=2 dip=10.0.0.1 onMiss", "modify ipv4Host handle=1 onMiss", "set-default ipv4Host onMiss",
        "members ecmpMemberActionProfile", "groups ecmpMemberActionProfile", "meters pdpMeter 0",
        "registers ingVlanCheckData 0", "register ingVlanCheckData 0 1", "snapshot arm ingress vlanHdr_0__vlanId=1",
        "value-set add value=1", "digests timeout 4"}) {
    standin_refuse_call(1, 0x77);
    const answer got = run(line);
    standin_refuse_call(0, 0);
    EXPECT_EQ(got.code, refused) << line;
    EXPECT_NE(got.errors.find("status 119 of the driver"), std::string::npos) << line << "\n" << got.errors;
  }
}

}  // namespace
}  // namespace tarvex::shell
