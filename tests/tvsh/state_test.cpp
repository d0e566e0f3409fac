// Saving, loading, comparing and applying whole states.
//
// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "made_up_words.h"
#include "state_fixture.h"
#include "tarvex_pd/next_hops.h"

namespace tarvex::shell {
namespace {

TEST_F(state_test, what_is_saved_and_loaded_is_saved_as_the_same_file)
{
  build();
  // The freed handle is the next one to be given.
  for (const char *value : {"0x9100", "0x88a8", "0x7000"}) lines_of(std::string("value-set add value=") + value);
  lines_of("value-set delete value=0x9100");
  lines_of("value-set add value=0x9101");
  const answer saved = run("save a.json");
  EXPECT_NE(saved.notes.find("4 value-set entries, 1 fallback member, 1 group size, 1 idle-time setting, 1 whole "
                             "register, 1 learning timeout"),
            std::string::npos)
      << saved.notes;
  const std::string text = text_of("a.json");
  const auto document = nlohmann::json::parse(text, nullptr, false);
  EXPECT_EQ(document.size(), 14u);  // the version and every section
  EXPECT_EQ(document["groups"]["ecmpMemberActionProfile"][0].dump(),
            R"({"id":1,"members":{"1":"active","2":"inactive"},"size":2})");
  EXPECT_EQ(document["entries"]["ipv4Host"][0].dump(),
            R"({"action":"setNextHop","key":{"dip":"10.0.0.1","vrfId":1},"parameters":{"nextHop":5},"ttl":500})");

  EXPECT_EQ(run("load a.json").code, exit_code::usage);  // there is something already
  start_anew();
  lines_of("add ipv4Host vrfId=9 dip=10.0.0.9 onMiss");
  lines_of("counter pdpClassCount 4 packets=7 bytes=1");
  for (const std::string_view load : {"load a.json replace", "load a.json replace"}) {
    lines_of(load);
    lines_of("save b.json");
    EXPECT_EQ(text_of("b.json"), text) << load;
    EXPECT_EQ(lines_of("diff live a.json counts"), "");
  }
}

// A group that had a member may be referred to; one that never had any is all that a replay brings back.
TEST_F(state_test, groups_without_members_come_back)
{
  const auto run_all = [&](std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines) EXPECT_EQ(run(line).code, exit_code::ok) << line;
  };
  run_all({"member ecmpMemberActionProfile add setEcmpNextHop nextHop=8", "group ecmpMemberActionProfile create 8",
           "save a.json", "load a.json replace", "restart replay"});
  start_anew();
  run_all({"member ecmpMemberActionProfile add setEcmpNextHop nextHop=8 as=m",
           "group ecmpMemberActionProfile create 4 as=g", "group ecmpMemberActionProfile add $g $m",
           "entry ecmpGroup add ecmpGroup=5 group=$g", "group ecmpMemberActionProfile remove $g $m", "save a.json",
           "load a.json replace", "save b.json"});
  EXPECT_EQ(text_of("b.json"), text_of("a.json"));
}

TEST_F(state_test, entries_of_every_table_and_action_are_saved_and_loaded)
{
  for (const profile_info &profile : calls::profiles) {
    for (const use_info &use : profile.actions) {
      lines_of(std::string("member ") + profile.name + " add " + use.action->name +
               words_of(parameter_fields(*use.action), 3));
    }
    lines_of(std::string("group ") + profile.name + " create 4");
    lines_of(std::string("group ") + profile.name + " add 1 1");
  }
  unsigned number = 0;
  for (const table_info &table : calls::tables) {
    const std::string name(table.name);
    for (const use_info &use : table.actions) {
      const std::string body =
          ' ' + std::string(use.action->name) + words_of(parameter_fields(*use.action), number) + meter_words_of(use);
      if (table.profile != nullptr) break;
      if (!table.fields.empty()) lines_of("add " + name + key_words_of(table, ++number) + body);
      if (use.is_default) lines_of("set-default " + name + body);
    }
    if (table.profile != nullptr) lines_of("entry " + name + " add" + key_words_of(table, ++number) + " group=1");
  }
  lines_of("save a.json");
  start_anew();
  lines_of("load a.json");
  lines_of("save b.json");
  EXPECT_EQ(text_of("b.json"), text_of("a.json"));
  EXPECT_EQ(lines_of("diff live a.json counts"), "");
  EXPECT_GT(std::ranges::count(text_of("a.json"), '\n'), 350);
}

struct change {
  std::vector<std::string_view> commands;  // on the state that was built
  std::string_view operations;             // from what was built to what they made; "\n" behind each
};

// Each change alone: no more is to be done than what was, and doing it makes the other state.
TEST_F(state_test, a_difference_is_the_fewest_commands)
{
  const change changes[] = {
      {{}, ""},
      {{"modify ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=6"},
       "modify ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=6\n"},
      {{"delete ipv4Host vrfId=1 dip=10.0.0.1", "add l2SmacCheck smac=02:00:00:00:00:01 priority=1 setIllegalSmac"},
       "delete ipv4Host vrfId=1 dip=10.0.0.1\nadd l2SmacCheck smac=02:00:00:00:00:01 priority=1 setIllegalSmac\n"},
      {{"reset-default ipv4Host", "set-default ingVlanCheck ingVlanAction"},
       "reset-default ipv4Host\nset-default ingVlanCheck ingVlanAction\n"},
      {{"meter stormControlMeter priority=1 cir=10 cburst=20 pir=30 pburst=41"},
       "modify l2LookupMiss priority=1 l2LookupBcastHit cir=10 cburst=20 pir=30 pburst=41 type=unaware\n"},
      {{"member ecmpMemberActionProfile modify 2 setEcmpNextHop nextHop=70"},
       "member ecmpMemberActionProfile modify 2 setEcmpNextHop nextHop=70\n"},
      // a full group: one goes before the other comes; entries stay
      {{"member ecmpMemberActionProfile add setEcmpNextHop nextHop=70 as=new",
        "group ecmpMemberActionProfile remove 1 2", "group ecmpMemberActionProfile add 1 $new",
        "group ecmpMemberActionProfile enable 1 3"},
       "member ecmpMemberActionProfile add setEcmpNextHop nextHop=70 as=newmember1.ecmpMemberActionProfile\n"
       "group ecmpMemberActionProfile enable 1 3\ngroup ecmpMemberActionProfile remove 1 2\n"
       "group ecmpMemberActionProfile add 1 $newmember1.ecmpMemberActionProfile\n"},
      // a group of another size is another group
      {{"group ecmpMemberActionProfile create 9 as=big", "group ecmpMemberActionProfile add $big 2",
        "group ecmpMemberActionProfile remove $big 2", "entry ecmpGroup modify ecmpGroup=5 group=$big",
        "group ecmpMemberActionProfile delete 1"},
       "group ecmpMemberActionProfile create 9 as=newgroup1.ecmpMemberActionProfile\n"
       "group ecmpMemberActionProfile add $newgroup1.ecmpMemberActionProfile 2\n"
       "group ecmpMemberActionProfile remove $newgroup1.ecmpMemberActionProfile 2\n"
       "entry ecmpGroup modify ecmpGroup=5 group=$newgroup1.ecmpMemberActionProfile\n"
       "group ecmpMemberActionProfile delete 16777217\n"},  // whose place was taken before
      {{"idle ipv4Host disable", "group ecmpMemberActionProfile fallback none", "hash hashOuterIpv4Hdr fields all",
        "digests timeout 5"},
       "group ecmpMemberActionProfile fallback none\nidle ipv4Host disable\nhash hashOuterIpv4Hdr fields 0 1 2\n"
       "digests timeout 5\n"},
      {{"counter pdpClassCount 3 packets=8 bytes=1", "meter pdpMeter 1 cir=0 cburst=0 pir=0 pburst=0",
        "wred wredBlock 3 time=2 min=1 max=2 probability=1", "register ingVlanCheckData all reset"},
       "counter pdpClassCount 3 packets=8 bytes=1\n"
       "wred wredBlock 3 time=2 min=1 max=2 probability=1\n"
       "meter pdpMeter 1 cir=0 cburst=0 pir=0 pburst=0 type=unaware\nregister ingVlanCheckData all 0\n"},
      {{"value-set delete value=0x8100 mask=0xff00 scope=1", "value-set add value=1"},
       "value-set delete value=0x8100 mask=0xff00 scope=1 index=0 sub=0\n"
       "value-set add value=0x1 mask=0xffffffff scope=0 index=0 sub=0\n"},
      // what a person is asked to confirm: a script does so by itself
      {{"delete ipv4FinalResolve fibPartitionIndex=7 dip=10.1.0.0/16 --force",
        "add ipv4Partition vrfId=1 dipAndVrf=10.0.0.1/8 onMiss --force",
        "add mplsLabelResolution label=0xfabcde mplsLabelResolutionMiss --force",
        "counter pdpClassCount 1048576 packets=1 bytes=2 --force",
        "meter pdpMeter 1 cir=9 cburst=2 pir=3 pburst=4 --force", "value-set add value=0x806 mask=0xf --force"},
       "delete ipv4FinalResolve fibPartitionIndex=7 dip=10.1.0.0/16 --force\n"
       "add mplsLabelResolution label=16432350 --force mplsLabelResolutionMiss\n"
       "add ipv4Partition vrfId=1 dipAndVrf=10.0.0.0/8 onMiss\n"
       "counter pdpClassCount 1048576 --force packets=1 bytes=2\n"
       "meter pdpMeter 1 cir=9 cburst=2 pir=3 pburst=4 type=unaware --force\n"
       "value-set add value=0x806 mask=0xf scope=0 index=0 sub=0 --force\n"},
  };
  for (const change &each : changes) {
    SCOPED_TRACE(each.commands.empty() ? "nothing" : each.commands.front());
    start_anew();
    build();
    lines_of("save a.json");
    for (const std::string_view command : each.commands) lines_of(command);
    lines_of("save b.json");
    EXPECT_EQ(lines_of("diff b.json b.json counts"), "");
    // back to what was built, by handles of the live switch
    EXPECT_EQ(run("diff live a.json counts").code, each.operations.empty() ? exit_code::ok : exit_code::differences);
    lines_of("apply a.json counts");
    EXPECT_EQ(lines_of("diff live a.json counts"), "");
    EXPECT_EQ(run("diff live b.json counts").lines, each.operations);
    EXPECT_EQ(lines_of("apply b.json counts --dry-run"), each.operations);
    // and by a script between two files, on a new switch with other handles
    const std::string script = run("diff a.json b.json counts").lines;
    start_anew();
    lines_of("load a.json");
    caught_output out;
    EXPECT_EQ(shell.run_script(script, "diff", out), exit_code::ok) << out.errors << script;
    EXPECT_EQ(lines_of("diff live b.json counts"), "");
  }
}

TEST_F(state_test, traffic_and_time_are_compared_when_asked)
{
  build();
  lines_of("save a.json");
  lines_of("sim count ingL2DomainCount decapType=1 ingL3Aintf=9");
  lines_of("sim age 100");
  EXPECT_EQ(lines_of("diff live a.json"), "");
  EXPECT_EQ(run("diff live a.json counts").lines,
            "idle ipv4Host ttl vrfId=1 dip=10.0.0.1 ttl=500\n"
            "counter ingL2DomainCounters decapType=1 ingL3Aintf=9 packets=2 bytes=128\n");
  lines_of("apply a.json counts");
  EXPECT_EQ(lines_of("diff live a.json counts -j"), "{\"schema_version\":2,\"operations\":[\n]}\n");
}

TEST_F(state_test, a_bad_file_is_refused_before_anything_is_written)
{
  constexpr std::string_view good_entry =
      R"({"key":{"vrfId":1,"dip":"10.0.0.1"},"action":"setNextHop","parameters":{"nextHop":5}})";
  const auto entries = [&](std::string_view table, std::string_view list) {
    return std::string("{\"schema_version\":1,\n\"entries\":{\"") + std::string(table) + "\":[\n" + std::string(list) +
           "]}}";
  };
  const std::pair<std::string, std::string_view> files[] = {
      {"", "1: no JSON"},
      {"[]", "a list was not expected"},
      {"7", "no saved state"},
      {"{}", "\"schema_version\" must stand"},
      {R"({"entries":{}})", "\"schema_version\" must stand"},
      {R"({"schema_version":2})", "a file of version 2; this tvsh reads files up to version 1: a newer one is needed"},
      {R"({"schema_version":"1"})", "the version is a number"},
      {R"({"schema_version":0})", "the version is a number"},
      {R"({"schema_version":1,"entires":{}})", "did you mean entries?"},
      {R"({"schema_version":1,"entries":[]})", "a list was not expected here"},
      {R"({"schema_version":1,"entries":{"ipv4Host":{}}})", "a list of elements is wanted"},
      {R"({"schema_version":1,"entries":{"ipv4Host":[5]}})", "an element in braces is wanted"},
      {R"({"schema_version":1,"entries":{},"members":{}})", "members: the section stands behind 'entries'"},
      {R"({"schema_version":1,"entries":{},"entries":{}})", "the section stands behind"},
      {entries("ipv4Hots", ""),
       "bad.json:2: entries of ipv4Hots: there is no table 'ipv4Hots'; did you mean ipv4Host?"},
      {entries("ipv4Host", std::string(good_entry) + ",\n{\"key\":{\"vrfId\":1}}"), "bad.json:4: entries of ipv4Host"},
      {entries("ipv4Host", R"({"key":{"vrfId":1},"action":"onMiss"})"), "missing dip (32 bits, IPv4 address)"},
      {entries("ipv4Host", R"({"key":{"vrfId":99999,"dip":1},"action":"onMiss"})"), "is too wide"},
      {entries("ipv4Host", R"({"key":{"vrfId":-1,"dip":1},"action":"onMiss"})"), "must be a number or a text"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"vrfId":1,"dip":1},"action":"onMiss"})"), "stands there twice"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"dip":"10.0.0"},"action":"onMiss"})"), "is no value of it"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"dip":1},"action":"onMis"})"), "did you mean onMiss?"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"dip":1},"action":"setEcmp","parameters":{"ecmpGroup":65536}})"),
       "is too wide"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"dip":1},"action":"onMiss","priority":1})"), "have no priority"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"dip":1},"action":"onMiss","member":1})"), "is not indirect"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"dip":1},"action":"onMiss","counter":{"packets":1,"bytes":1}})"),
       "no counter hangs"},
      {entries("ipv4Host", R"({"key":[],"action":"onMiss"})"), "'key' must be in braces"},
      {entries("ipv4Host", R"({"key":{"vrfId":1,"dip":1},"action":"onMiss","colour":1})"), "no name 'colour'"},
      {entries("l2SmacCheck", R"({"key":{},"action":"setIllegalSmac"})"), "'priority' is missing"},
      {entries("ipv4FinalResolve", R"({"key":{"fibPartitionIndex":7,"dip":"10.0.0.0/33"},"action":"setNextHop"})"),
       "no prefix length"},
      {entries("l2LookupMiss", R"({"key":{},"priority":1,"action":"l2LookupBcastHit"})"), "'meter' is missing"},
      {entries("ecmpGroup", R"({"key":{"ecmpGroup":5},"group":1})"), "has no group 1 in this file"},
      {R"({"schema_version":1,"members":{"ecmpMemberActionProfile":[{"id":1,"action":"setEcmpNextHop",
          "parameters":{"nextHop":1}},{"id":1,"action":"setEcmpNextHop","parameters":{"nextHop":1}}]}})",
       "member 1 stands there twice"},
      {R"({"schema_version":1,"groups":{"tunnelMember":[{"id":1,"members":{"1":"active"}}]}})", "no member 1 in this"},
      {R"({"schema_version":1,"groups":{"tunnelMember":[{"id":1,"members":{"x":"active"}}]}})", "is no member"},
      {R"({"schema_version":1,"fallbacks":{"tunnelMember":[{"member":1}]}})", "has no member 1 in this file"},
      {R"({"schema_version":1,"idle":{"nextHop":[{"mode":"poll","interval":0,"max-ttl":0}]}})", "no idle time"},
      {R"({"schema_version":1,"defaults":{"ipv4Host":[{"action":"setEcmp","parameters":{"ecmpGroup":1}}]}})",
       "cannot be the default"},
      {R"({"schema_version":1,"counters":{"l2DmacClassifyCount":[]}})", "hangs on the entries of l2DmacClassify"},
      {R"({"schema_version":1,"wred":{"wredBlock":[{"index":1,"time":1,"min":2,"max":1,"probability":1}]}})",
       "'max' is below 'min'"},
      {R"({"schema_version":1,"registers":{"ingVlanCheckData":[{"index":1,"value":2}]}})", "too wide for 1 bit"},
      {R"({"schema_version":1,"hashes":{"hashOuterIpv4Hdr":[{"seed":1,"fields":[9]}]}})",
       "there are the fields 0 to 2"},
      {R"({"schema_version":1,"value_sets":{"other":[]}})", "called 'fabric_port'"},
      {entries("ipv4Host", good_entry).substr(0, 120), "no JSON"},
      {entries("ipv4Host", "{\"key\":" + std::string(100000, '{')), "no JSON"},
      {entries("ipv4Host", "{\"key\":" + std::string(100000, '[')), "too many values"},
      {entries("ipv4Host", "{\"key\":\"" + std::string(2000000, 'x') + "\"}"), "too much text"},
      {std::string("{\"schema_version\":1,\"learning\":{\"macLearningDigest\":[{\"timeout\":\"\xff\"}]}}"), "no JSON"},
  };
  for (const auto &[text, error] : files) {
    // What is good ahead of the mistake is not written either.
    write("bad.json", text);
    const answer got = run("load bad.json");
    EXPECT_EQ(got.code, exit_code::file) << text.substr(0, 200);
    EXPECT_NE(got.errors.find(error), std::string::npos) << text.substr(0, 200) << "\n" << got.errors;
    EXPECT_NE(run("diff live bad.json").code, exit_code::ok);
  }
  EXPECT_EQ(lines_of("count"), "");
  EXPECT_EQ(run("load nothing.json").code, exit_code::file);
  EXPECT_EQ(run("save nowhere/a.json").code, exit_code::file);
}

TEST_F(state_test, a_refusal_half_way_tells_how_much_was_written)
{
  build();
  lines_of("save a.json");
  start_anew();
  write("twice.json", R"({"schema_version":1,
"entries":{"ipv4Host":[
{"key":{"vrfId":1,"dip":"10.0.0.1"},"action":"onMiss"},
{"key":{"vrfId":1,"dip":"10.0.0.1"},"action":"onMiss"}]}})");
  const answer got = run("load twice.json");
  EXPECT_EQ(got.code, exit_code::refused);
  EXPECT_NE(got.errors.find("twice.json:4: entries of ipv4Host: adding an entry"), std::string::npos) << got.errors;
  EXPECT_NE(got.errors.find("1 of 2 changes made, 1 not; the switch holds 1 entry of the file"), std::string::npos);

  const answer applied = run("apply twice.json");
  EXPECT_EQ(applied.code, exit_code::refused);
  EXPECT_NE(applied.errors.find("twice.json:4: stopped at: add ipv4Host vrfId=1 dip=10.0.0.1 onMiss; 0 of 1 change "
                                "made, 1 not"),
            std::string::npos)
      << applied.errors;
}

constexpr std::string_view five_hosts = R"({"schema_version":1,
"entries":{"ipv4Host":[
{"key":{"vrfId":1,"dip":"10.0.0.1"},"action":"onMiss"},
{"key":{"vrfId":1,"dip":"10.0.0.2"},"action":"onMiss"},
{"key":{"vrfId":1,"dip":"10.0.0.3"},"action":"onMiss"},
{"key":{"vrfId":1,"dip":"10.0.0.4"},"action":"onMiss"},
{"key":{"vrfId":1,"dip":"10.0.0.5"},"action":"onMiss"}]}})";

TEST_F(state_test, an_interrupt_half_way_tells_how_much_was_written)
{
  struct interrupter {
    session &shell;
    unsigned left;
  };
  write("five.json", five_hosts);
  write("five.routes", "10.0.0.1/32 1\n10.0.0.2/32 1\n# no route\n10.0.0.3/32 1\n10.0.0.4/32 1\n10.0.0.5/32 1\n");
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"apply five.json",
       "five.json:5: stopped at: add ipv4Host vrfId=1 dip=10.0.0.3 onMiss; 2 of 5 changes made, 3 not"},
      {"load five.json", "five.json:5: entries of ipv4Host: interrupted; 2 of 5 changes made, 3 not"},
      {"load five.json replace", "five.json:5: entries of ipv4Host: interrupted; 2 of 5 changes made, 3 not"},
      {"load-routes five.routes", "five.routes:4: interrupted; 2 of 5 changes made, 3 not"},
  };
  for (const auto &[command, error] : cases) {
    start_anew();
    interrupter at{shell, 2};
    standin_set_listener(
        [](const char *function, std::uint32_t, void *cookie) {
          auto *const self = static_cast<interrupter *>(cookie);
          const bool adds = std::string_view(function) == "pipe_mgr_mat_ent_add";
          if (adds && self->left != 0 && --self->left == 0) self->shell.interrupt();
        },
        &at);
    const answer got = run(command);
    standin_set_listener(nullptr, nullptr);
    EXPECT_EQ(got.code, exit_code::interrupted) << command;
    EXPECT_NE(got.errors.find(error), std::string::npos) << command << '\n' << got.errors;
    EXPECT_NE(lines_of("count ipv4Host").find(" 2\n"), std::string::npos) << command;
  }
  // While it clears, too.
  lines_of("load five.json replace");
  lines_of("sim refuse 0 0");
  interrupter at{shell, 2};
  standin_set_listener(
      [](const char *function, std::uint32_t, void *cookie) {
        auto *const self = static_cast<interrupter *>(cookie);
        const bool deletes = std::string_view(function) == "pipe_mgr_mat_ent_del";
        if (deletes && self->left != 0 && --self->left == 0) self->shell.interrupt();
      },
      &at);
  const answer got = run("load five.json replace");
  standin_set_listener(nullptr, nullptr);
  EXPECT_NE(got.errors.find("interrupted; 2 of 5 entries, groups and members deleted, 3 not; nothing of"),
            std::string::npos)
      << got.errors;
}

// Routes that come in several files, in any order, make the tables that one file makes: what a packet gets does not
// depend on it, and no index is given to two blocks.
TEST_F(state_test, routes_are_loaded_beside_those_that_are_there)
{
  write("all.routes",
        "10.0.0.0/8 1\n10.16.0.0/12 2\n10.17.1.0/24 3\n10.77.1.0/24 4\n10.77.1.5/32 5\n172.16.1.0/24 6\n"
        "2001::/20 7\n2001:db8:1::/48 8\n2001:db8:1:2:3::/80 9\n2001:db8::1/128 10\n3001:db8:1::/48 12\n");
  write("long.routes", "10.77.1.0/24 4\n172.16.1.0/24 6\n2001:db8:1:2:3::/80 9\n");
  write("short.routes", "10.0.0.0/8 1\n2001::/20 7\n10.77.1.5/32 5\n2001:db8::1/128 10\n");
  write("rest.routes", "# comment\n3001:db8:1::/48 12\n10.16.0.0/12 2\n10.17.1.0/24 3\n2001:db8:1::/48 8\n");
  lines_of("load-routes all.routes");
  EXPECT_EQ(lines_of("load-routes all.routes"), "11 routes in 0 changed entries: 0 added, 0 replaced, 11 unchanged\n");
  std::vector<std::string_view> order = {"long.routes", "rest.routes", "short.routes"};
  do {
    start_anew();
    for (const std::string_view file : order) lines_of(std::string("load-routes ") + std::string(file));
    EXPECT_EQ(lines_of("load-routes all.routes"), "11 routes in 0 changed entries: 0 added, 0 replaced, 11 unchanged\n")
        << order[0] << order[1];
  } while (std::ranges::next_permutation(order).found);

  write("other.routes", "172.16.1.0/24 6\n\n10.77.1.0/24 44\n10.0.0.0/8 11\n");
  const answer refused = run("load-routes other.routes");
  EXPECT_EQ(refused.code, exit_code::usage);
  EXPECT_NE(refused.errors.find("other.routes:4: the switch has another next hop for 10.0.0.0/8; 2 routes differ, and "
                                "nothing was written"),
            std::string::npos)
      << refused.errors;
  EXPECT_EQ(lines_of("load-routes all.routes").substr(0, 31), "11 routes in 0 changed entries:");
  // The block of 10.77 has what the shorter prefix gives: three entries change with two routes.
  EXPECT_EQ(lines_of("load-routes other.routes --replace"),
            "3 routes in 3 changed entries: 0 added, 2 replaced, 1 unchanged\n");

  write("bad.routes", "10.1.1.0/24 1\nnonsense\n10.1.2.0/24 1\n");
  EXPECT_EQ(run("load-routes bad.routes --strict").code, exit_code::bad_input);
  EXPECT_EQ(run("load-routes bad.routes --dry-run").code, exit_code::incomplete);
  const answer bad = run("load-routes bad.routes");
  EXPECT_EQ(bad.code, exit_code::incomplete);
  EXPECT_EQ(bad.lines, "2 routes in 3 changed entries: 2 added, 0 replaced, 0 unchanged\n");
}

// An interrupted load is ended by another one, and an entry under another name for the same prefix is the route's own.
TEST_F(state_test, routes_meet_entries_that_no_load_left_whole)
{
  write("block.routes", "11.1.2.0/24 5\n");
  lines_of("sim refuse 12 9");
  const answer half = run("load-routes block.routes");
  EXPECT_NE(half.errors.find("; 1 of 2 changes made, 1 not"), std::string::npos) << half.errors;
  EXPECT_EQ(lines_of("load-routes block.routes"), "1 route in 1 changed entry: 1 added, 0 replaced, 0 unchanged\n");

  lines_of("add ipv4ShortMaskLpm vrfId=1 dip=12.1.2.3/32 setNextHop nextHop=9 --force");
  write("short.routes", "12.0.0.0/12 5\n");
  EXPECT_EQ(run("load-routes short.routes").code, exit_code::usage);
  EXPECT_EQ(lines_of("load-routes short.routes --replace"),
            "1 route in 1 changed entry: 0 added, 1 replaced, 0 unchanged\n");
  EXPECT_EQ(lines_of("load-routes short.routes"), "1 route in 0 changed entries: 0 added, 0 replaced, 1 unchanged\n");

  // An index is one for all VRFs: that of another one's block is not given to a second.
  start_anew();
  lines_of("add ipv4Partition vrfId=2 dipAndVrf=11.0.0.0/12 setIpv4PrtIdxNextHop partitionIndex=1 nextHop=5");
  lines_of("load-routes block.routes");
  EXPECT_NE(lines_of("dump ipv4FinalResolve").find("2                  11.1.2.0/24"), std::string::npos);

  // A final table looks at the bits below the block alone.
  lines_of("add ipv4FinalResolve fibPartitionIndex=3 dip=0.1.2.0/24 setNextHop nextHop=9");
  write("next.routes", "13.1.2.0/24 5\n");
  const answer refused = run("load-routes next.routes");
  EXPECT_EQ(refused.code, exit_code::refused);
  EXPECT_NE(refused.errors.find("in the way is entry 2: fibPartitionIndex=3 dip=0.1.2.0/24 setNextHop nextHop=9; "
                                "dip=13.1.2.0/24 and dip=0.1.2.0/24 both match"),
            std::string::npos)
      << refused.errors;
}

// What changes or saves the state as a whole waits for another that does; who waits is told for whom, and may leave.
TEST_F(state_test, changes_of_the_whole_state_take_turns)
{
  write("five.json", five_hosts);
  write("five.routes", "10.0.0.1/32 1\n");
  {
    const change_queue::turn other(
        shell.memory().changes, "process 7 ('load x')", [](const auto &) {}, [] {});
    for (const std::string_view command :
         {"apply five.json", "load five.json", "load five.json replace", "load-routes five.routes", "save a.json"}) {
      caught_output out;
      shell.interrupt();
      EXPECT_EQ(shell.run(command, out), exit_code::interrupted) << command;
      EXPECT_NE(out.notes.find("waiting for process 7 ('load x')"), std::string::npos) << command << out.notes;
    }
    EXPECT_EQ(lines_of("count"), "");
  }
  lines_of("apply five.json");
}

// What a file does not hold stays as it is.
TEST_F(state_test, a_load_adds_to_what_is_there)
{
  const auto nothing_more_of = [&](const char *switch_file) {
    return run(std::string("diff live ") + switch_file + " counts").lines;
  };
  for (const std::string_view line :
       {"counter pdpClassCount 3 packets=7 bytes=8", "meter pdpMeter 1 cir=1 cburst=2 pir=3 pburst=4",
        "register ingVlanCheckData all 1", "idle ipv6Host enable", "hash hashOuterIpv4Hdr seed 5",
        "value-set add value=1 mask=1", "digests timeout 100"}) {
    lines_of(line);
  }
  lines_of("save before.json");
  write("entry.json", R"({"schema_version":1,"entries":{"ipv4Host":[
{"key":{"vrfId":1,"dip":"10.0.0.1"},"action":"onMiss"}]},
"counters":{"pdpClassCount":[{"index":4,"packets":1,"bytes":1}]},
"value_sets":{"fabric_port":[{"value":1,"mask":1,"scope":0,"index":0,"sub":0}]}})");
  EXPECT_EQ(lines_of("load entry.json"), "loaded 1 entry, 1 cell, 1 setting\n");
  EXPECT_EQ(nothing_more_of("before.json"),
            "delete ipv4Host vrfId=1 dip=10.0.0.1\ncounter pdpClassCount 4 packets=0 bytes=0\n");
  EXPECT_EQ(lines_of("save after.json"),
            "1 entry, 4 cells, 11 settings saved to " + (shell.folder / "after.json").string() + "\n");
}

// What goes between the walk that met it and the reading is passed over, and no more than that.
TEST_F(state_test, others_may_delete_while_it_is_read)
{
  for (const std::string_view command :
       {"save b.json cells=0", "diff live a.json cells=0", "members ecmpMemberActionProfile",
        "groups ecmpMemberActionProfile", "dump ipv4Host"}) {
    for (unsigned at = 1;; ++at) {
      start_anew();
      build();
      lines_of("save a.json cells=0");
      const other_session other(
          shell, at,
          {"delete ipv4Host vrfId=2 dip=10.0.0.2", "delete ingL2DomainCount decapType=1 ingL3Aintf=9",
           "reset-default ipv4Host", "delete ecmpGroup ecmpGroup=5", "reset-default ecmpGroup",
           "group ecmpMemberActionProfile delete 16777217", "group ecmpMemberActionProfile delete 1",
           "member ecmpMemberActionProfile delete 3"});
      const answer got = run(command);
      EXPECT_TRUE(got.code == exit_code::ok || got.code == exit_code::differences) << command << at << got.errors;
      if (!other.done()) break;
    }
  }
}

// What refers to a member that came behind the reading of the members is read with it, in another reading.
TEST_F(state_test, others_may_add_while_it_is_read)
{
  for (unsigned at = 1;; ++at) {
    start_anew();
    build();
    const other_session other(
        shell, at,
        {"member ecmpMemberActionProfile add setEcmpNextHop nextHop=123",
         "group ecmpMemberActionProfile add 1 16777217", "entry ecmpGroup add ecmpGroup=77 member=16777217"});
    const answer got = run("save b.json cells=0");
    EXPECT_EQ(got.code, exit_code::ok) << at << got.errors;
    if (!other.done()) break;
    lines_of("load b.json replace");
  }
}

// The shell remembers a fallback member; whoever else writes may have deleted it.
TEST_F(state_test, a_fallback_member_that_is_gone_is_left_out)
{
  lines_of("member ecmpMemberActionProfile add setEcmpNextHop nextHop=1");
  lines_of("group ecmpMemberActionProfile fallback 1");
  ASSERT_EQ(p4_pd_tarvex_switch_ecmpMemberActionProfile_reset_dynamic_action_selection_fallback_member(
                shell.where.session, pd_dev_tgt(0, PD_ALL_PIPES)),
            BF_SUCCESS);
  ASSERT_EQ(p4_pd_tarvex_switch_ecmpMemberActionProfile_del_member(shell.where.session, 0, 1), BF_SUCCESS);
  const answer got = run("save gone.json cells=0");
  EXPECT_EQ(got.code, exit_code::ok) << got.errors;
  EXPECT_NE(got.notes.find("member 1 is gone"), std::string::npos) << got.notes;
}

// A save that fails leaves what was there.
TEST_F(state_test, a_file_is_there_whole_or_as_it_was)
{
  build();
  lines_of("save whole.json");
  write("a.json", "something else");
  // Whichever call it is: of entries, of cells amid a resource, and of those far behind, which this shell wrote.
  unsigned amid_cells = 0;
  for (unsigned call = 1; call < 100000; call += 1 + call / 4) {
    lines_of("sim refuse " + std::to_string(call) + " 5");
    const answer got = run("save a.json");
    EXPECT_EQ(text_of("a.json"), got.code == exit_code::ok ? text_of("whole.json") : "something else") << call;
    if (got.errors.find(", cell ") != std::string::npos) ++amid_cells;
    write("a.json", "something else");
  }
  EXPECT_GT(amid_cells, 5u);
  lines_of("sim refuse 0 0");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(shell.folder), {}), 2);
  lines_of("save a.json --dry-run");
  EXPECT_EQ(text_of("a.json"), "something else");
}

TEST_F(state_test, a_saved_file_keeps_its_link_and_mode)
{
  namespace fs = std::filesystem;
  lines_of("save new.json");
  EXPECT_EQ(fs::status(shell.folder / "new.json").permissions(), fs::perms(0600));
  fs::permissions(shell.folder / "new.json", fs::perms(0640));
  fs::create_directory(shell.folder / "links");
  fs::create_symlink("../new.json", shell.folder / "links/one");
  fs::create_symlink("links/one", shell.folder / "two");
  fs::create_symlink("not_there.json", shell.folder / "dangling");
  fs::create_symlink("loop", shell.folder / "loop");
  lines_of("add ipv4Host vrfId=1 dip=10.0.0.1 onMiss");
  for (const char *const link : {"two", "dangling"}) {
    lines_of(std::string("save ") + link);
    EXPECT_TRUE(fs::is_symlink(shell.folder / link));
    EXPECT_NE(text_of(link).find("10.0.0.1"), std::string::npos);
  }
  EXPECT_EQ(fs::status(shell.folder / "new.json").permissions(), fs::perms(0640));
  EXPECT_EQ(fs::status(shell.folder / "not_there.json").permissions(), fs::perms(0600));
  EXPECT_EQ(run("save loop").code, exit_code::file);
  EXPECT_EQ(run("save /dev/full").code, exit_code::file);
}

TEST_F(state_test, a_full_disk_leaves_the_file_as_it_was)
{
  write("a.json", "something else");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{100, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const answer got = run("save a.json");
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(got.code, exit_code::file);
  EXPECT_NE(got.errors.find("a.json: cannot be written: File too large"), std::string::npos) << got.errors;
  EXPECT_EQ(text_of("a.json"), "something else");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(shell.folder), {}), 1);
}

TEST_F(state_test, pipes_and_folders_are_not_read)
{
  const std::string pipe = shell.folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int writer = open(pipe.c_str(), O_RDWR | O_CLOEXEC);  // and what is written is no JSON, so that nobody waits
  ASSERT_EQ(::write(writer, "xxxx", 4), 4);
  for (const std::string_view line : {"load pipe", "diff pipe live", "apply pipe", "load .", "load-routes pipe"}) {
    const answer got = run(line);
    EXPECT_EQ(got.code, exit_code::file) << line;
    ASSERT_NE(got.errors.find(": is no plain file"), std::string::npos) << line << got.errors;
  }
  close(writer);
}

}  // namespace
}  // namespace tarvex::shell
