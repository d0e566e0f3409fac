// What the commands show and write, line by line.
//
// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command.h"
#include "shell_fixture.h"

namespace tarvex::shell {
namespace {

struct step {
  std::string_view line;
  std::string_view output;  // whole, with one blank between columns
};

class commands_test : public shell_test {
 protected:
  static std::string squeezed(std::string_view text)
  {
    std::string result;
    for (const char letter : text) {
      if (letter != ' ' || (!result.empty() && result.back() != ' ')) result += letter;
    }
    return result;
  }

  void follow(std::span<const step> steps)
  {
    for (const step &each : steps) EXPECT_EQ(squeezed(lines_of(each.line)), each.output) << each.line;
  }
};

TEST_F(commands_test, entries_are_written_and_shown_by_name)
{
  static constexpr step steps[] = {
      {"count ipv4Host", "ipv4Host 0\n"},
      {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5 ttl=0", "entry 1\n"},
      {"add ipv4Host l3Info_vrfId=0x2 dip=0x0a000002 setEcmp ecmpGroup=0xffff", "entry 2\n"},
      {"add ipv4Host vrfId=3 dip=10.0.0.3 onMiss --dry-run", ""},
      {"dump ipv4Host", "1 1 10.0.0.1 setNextHop nextHop=5\n2 2 10.0.0.2 setEcmp ecmpGroup=65535\n"},
      {"dump ipv4Host --raw | include 0xffff", "2 0x2 0xa000002 setEcmp ecmpGroup=0xffff\n"},
      {"dump ipv4Host | exclude setEcmp | count", "1\n"},
      {"dump ipv4Host | count", "2\n"},
      {"modify ipv4Host vrfId=1 dip=10.0.0.1 setNextHop2 nextHop=7", ""},
      {"modify ipv4Host handle=2 onMiss", ""},
      {"show ipv4Host vrfId=1 dip=10.0.0.1", "1 1 10.0.0.1 setNextHop2 nextHop=7\n"},
      {"show ipv4Host handle=2 --hw", "2 2 10.0.0.2 onMiss\n"},
      {"count", "ipv4Host 2\n"},
      {"delete ipv4Host vrfId=1 dip=10.0.0.1", ""},
      {"delete ipv4Host handle=2", ""},
      {"count", ""},
      {"default ipv4Host", ""},
      {"set-default ipv4Host onMiss", "entry 2147483649\n"},
      {"default ipv4Host", "2147483649 onMiss\n"},
      {"reset-default ipv4Host", ""},
      {"default ipv4Host", ""},
      // masks, addresses of both kinds, a prefix, a partition, a meter, parameters that are an address
      {"add l2SmacCheck smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 priority=10 setIllegalSmac", "entry 1\n"},
      {"add l2SmacCheck smac=* priority=11 setIllegalSmac", "entry 2\n"},
      {"add l2SmacCheck smac=02:00:00:00:00:0f priority=3 setIllegalSmac", "entry 3\n"},
      {"dump l2SmacCheck",
       "1 10 00:1c:73:00:00:00/ff:ff:ff:00:00:00 setIllegalSmac\n2 11 * setIllegalSmac\n"
       "3 3 02:00:00:00:00:0f setIllegalSmac\n"},
      {"delete l2SmacCheck smac=* priority=11", ""},
      {"count l2SmacCheck", "l2SmacCheck 2\n"},
      {"add ipv6ShortMaskLpm vrfId=1 dip=2001:c00::/22 setEcmp ecmpGroup=1", "entry 1\n"},
      {"dump ipv6ShortMaskLpm", "1 1 2001:c00::/22 setEcmp ecmpGroup=1\n"},
      {"add ipv4FinalResolve fibPartitionIndex=7 dip=10.1.0.0/16 setNextHop nextHop=3 --force", "entry 1\n"},
      {"dump ipv4FinalResolve", "1 7 10.1.0.0/16 setNextHop nextHop=3\n"},
      {"sim lookup ipv4FinalResolve fibPartitionIndex=7 dip=10.1.2.3", "1 7 10.1.0.0/16 setNextHop nextHop=3\n"},
      {"sim lookup ipv4FinalResolve fibPartitionIndex=8 dip=10.1.2.3", "a miss, and there is no default entry\n"},
      {"add l2LookupMiss priority=1 l2LookupBcastHit cir=10 cburst=20 pir=30 pburst=40", "entry 1\n"},
      {"meters stormControlMeter", "1 10 20 30 40 unaware\n"},
      {"meter stormControlMeter handle=1 cir=1 cburst=2 pir=3 pburst=4", ""},
      {"meters stormControlMeter", "1 1 2 3 4 unaware\n"},
  };
  follow(steps);
}

TEST_F(commands_test, profiles_are_written_and_shown)
{
  static constexpr step steps[] = {
      {"member ecmpMemberActionProfile add setEcmpNextHop nextHop=7", "member 1\n"},
      {"member ecmpMemberActionProfile add setEcmpNextHop nextHop=8", "member 2\n"},
      {"member ecmpMemberActionProfile modify 2 setEcmpNextHop nextHop=9", ""},
      {"members ecmpMemberActionProfile", "1 setEcmpNextHop nextHop=7\n2 setEcmpNextHop nextHop=9\n"},
      {"group ecmpMemberActionProfile create 4", "group 1\n"},
      {"group ecmpMemberActionProfile add 1 1", ""},
      {"group ecmpMemberActionProfile add 1 2", ""},
      {"group ecmpMemberActionProfile disable 1 2", ""},
      {"groups ecmpMemberActionProfile", "1 1=active 2=inactive\n"},
      {"group ecmpMemberActionProfile enable 1 2", ""},
      {"group ecmpMemberActionProfile remove 1 1", ""},
      {"groups ecmpMemberActionProfile", "1 2=active\n"},
      {"group ecmpMemberActionProfile fallback 1", ""},
      {"group ecmpMemberActionProfile fallback none", ""},
      {"entry ecmpGroup add ecmpGroup=5 group=1", "entry 1\n"},
      {"entry ecmpGroup add ecmpGroup=6 member=1", "entry 2\n"},
      {"dump ecmpGroup", "1 5 1\n2 6 1\n"},
      {"entry ecmpGroup modify ecmpGroup=5 member=2", ""},
      {"show ecmpGroup ecmpGroup=5 -j",
       "{\"schema_version\":2,\"table\":\"ecmpGroup\",\"entries\":[\n{\"handle\":1,\"ecmpGroup\":5,\"member\":2}\n]}"
       "\n"},
      {"delete ecmpGroup ecmpGroup=5", ""},
      {"entry ecmpGroup modify handle=2 group=1", ""},
      {"entry ecmpGroup set-default member=1", "entry 2147483649\n"},
      {"delete ecmpGroup handle=2", ""},
      {"reset-default ecmpGroup", ""},
      {"group ecmpMemberActionProfile delete 1", ""},
      {"member ecmpMemberActionProfile delete 1", ""},
      {"members ecmpMemberActionProfile | count", "1\n"},
      {"member lagPortActionProfile add setPhysicalPort", "member 1\n"},
      {"entry lagGroup add priority=4 member=1", "entry 1\n"},
  };
  follow(steps);
}

TEST_F(commands_test, resources_and_services_are_written_and_shown)
{
  static constexpr step steps[] = {
      {"counter pdpClassCount 3 packets=7 bytes=18446744073709551615", ""},
      {"sim count pdpClassCount 2 packets=5 bytes=50", ""},
      {"counters pdpClassCount 2-3", "2 5 50\n3 7 18446744073709551615\n"},
      {"add ingL2DomainCount decapType=1 ingL3Aintf=9 onMiss", "entry 1\n"},
      {"sim count ingL2DomainCount decapType=1 ingL3Aintf=9 packets=2", ""},
      {"counters ingL2DomainCounters", "1 2 128 decapType=1 ingL3Aintf=9 decap 1 l3Intf 9\n"},
      {"meter pdpMeter 1 cir=1 cburst=2 pir=3 pburst=4", ""},
      {"meters pdpMeter 1", "1 1 2 3 4 unaware\n"},
      {"wred wredBlock 2 time=0.5 min=1 max=2 probability=0.25", ""},
      {"meters wredBlock 2", "2 0.5 1 2 0.25\n"},
      {"register ingVlanCheckData 3 1", ""},
      {"registers ingVlanCheckData 2-4", "2 0\n3 1\n4 0\n"},
      {"register ingVlanCheckData all 1", ""},
      {"register ingVlanCheckData 0-2 reset", ""},
      {"registers ingVlanCheckData 2-3", "2 0\n3 1\n"},
      {"hash hashOuterIpv4Hdr seed 0xfeedface12345678", ""},
      {"hash hashOuterIpv4Hdr fields 0 2", ""},
      {"hash hashOuterIpv4Hdr", "hashOuterIpv4Hdr 0x22000007 0xfeedface12345678 3 0 2\n"},
      {"hash hashOuterIpv4Hdr fields all", ""},
      {"hash | include OuterIpv4", "hashOuterIpv4Hdr 0x22000007 0xfeedface12345678 3 0 1 2\n"},
      {"value-set add value=0x8100 mask=0xff00 scope=1", "entry 1\n"},
      {"value-set modify 1 value=0x88a8", ""},
      {"value-set", "1 0x88a8 0xffffffff 1 0 0\n"},
      {"value-set delete 1 --dry-run", ""},
      {"value-set | count", "1\n"},
      {"value-set delete 1", ""},
      {"value-set show", ""},
      {"digests on", ""},
      {"sim learn 00:1c:73:00:00:01 domain=5 interface=77", ""},
      {"digests", "0 00:1c:73:00:00:01 5 77\n"},
      {"digests timeout 100", ""},
      {"digests off", ""},
      {"add ipv4Host vrfId=1 dip=10.0.0.1 onMiss ttl=500", "entry 1\n"},
      {"idle ipv4Host enable mode=notify", ""},
      {"sim count ipv4Host handle=1", ""},
      {"idle ipv4Host update", ""},
      {"idle ipv4Host", "1 500 active\n"},
      {"sim age 100", ""},
      {"idle ipv4Host ttl vrfId=1 dip=10.0.0.1 ttl=900", ""},
      {"idle ipv4Host update", ""},
      {"idle ipv4Host show", "1 900 idle\n"},
      {"idle ipv4Host disable", ""},
  };
  follow(steps);
}

// From the typed value to the bytes that a switch compares and captures, and back to what is shown.
TEST_F(commands_test, a_snapshot_has_the_values_of_every_width)
{
  struct width {
    std::string_view direction, field, typed;
    std::size_t at;                   // in the field data
    std::vector<std::uint8_t> bytes;  // there
    std::string_view shown;
  };
  const width widths[] = {
      {"ingress", "outerIpv4Hdr_ttl", "64", 95, {0x40}, "0x40"},
      {"ingress", "vlanHdr_0__vlanId", "100", 65, {0x64, 0x00}, "0x0064"},
      {"egress", "vlanHdr_0__vlanId", "0x6401", 53, {0x01, 0x64}, "0x6401"},
      {"ingress", "outerEthHdr_dmacOui", "0x001c73", 27, {0x73, 0x1c, 0x00, 0x00}, "0x001c73"},
      {"ingress", "outerIpv4Hdr_sip", "10.1.2.3", 99, {0x0a, 0x01, 0x02, 0x03}, "0x0a010203"},
      {"ingress",
       "innerIpv6Hdr_sip",
       "2001:db8::17",
       143,
       {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x17},
       "0x20010db8000000000000000000000017"},
  };
  for (const width &each : widths) {
    const std::string field(each.field);
    const std::string value = field + '=' + std::string(each.typed);
    const std::uint32_t snapshot = handle_of_new("snapshot arm " + std::string(each.direction) + ' ' + value);
    const std::string handle = std::to_string(snapshot);
    std::array<std::uint8_t, STANDIN_SNAPSHOT_FIELD_BYTES> packet{};
    std::ranges::copy(each.bytes, packet.begin() + static_cast<std::ptrdiff_t>(each.at));
    for (std::size_t byte = 0; byte < each.bytes.size() && byte < (each.bytes.size() == 4 ? 3 : 16); ++byte) {
      packet[each.at + byte] ^= 0x80;
      EXPECT_EQ(standin_snapshot_packet(snapshot, 0, packet.data()), STANDIN_NOT_TRIGGERED) << value << ' ' << byte;
      packet[each.at + byte] ^= 0x80;
    }
    EXPECT_EQ(standin_snapshot_packet(snapshot, 0, packet.data()), BF_SUCCESS) << value;
    EXPECT_EQ(lines_of("sim capture " + handle + ' ' + value), "captured\n");
    const std::string row = field + ' ' + std::string(each.shown) + '\n';
    EXPECT_EQ(squeezed(lines_of("snapshot show " + handle)), "0 " + row + "1 " + row);
    const auto document = nlohmann::json::parse(lines_of("snapshot show " + handle + " -j"));
    for (const auto &capture : document["captures"]) EXPECT_EQ(capture["value"], each.shown) << field;
    EXPECT_EQ(lines_of("sim capture " + handle + ' ' + field + '=' + std::string(each.shown)), "captured\n");
  }
}

TEST_F(commands_test, a_snapshot_catches_the_packet_that_meets_its_trigger)
{
  const std::string handle = std::to_string(handle_of_new("snapshot arm ingress vlanHdr_0__vlanId=0x123"));
  EXPECT_EQ(lines_of("sim capture " + handle + " vlanHdr_0__vlanId=0x124"), "not captured\n");
  EXPECT_EQ(lines_of("snapshot show " + handle), "");
  EXPECT_EQ(lines_of("sim capture " + handle + " vlanHdr_0__vlanId=0x123 vlanHdr_0__priority=5"), "captured\n");
  EXPECT_EQ(squeezed(lines_of("snapshot show " + handle)), "0 vlanHdr_0__priority 0x05\n0 vlanHdr_0__vlanId 0x0123\n");
  EXPECT_EQ(squeezed(lines_of("snapshot show")), handle + " ingress\n");
  lines_of("snapshot delete " + handle + " --dry-run");
  EXPECT_NE(lines_of("snapshot show"), "");
  lines_of("snapshot delete " + handle);
  EXPECT_EQ(lines_of("snapshot show"), "");
}

TEST_F(commands_test, routes_are_loaded_and_found)
{
  const std::string file = TARVEX_SOURCE_DIR "/data/routes_small.txt.gz";
  EXPECT_NE(lines_of("load-routes " + file + " --dry-run").find("checked only"), std::string::npos);
  EXPECT_EQ(lines_of("count"), "");
  EXPECT_EQ(lines_of("load-routes " + file), "19867 routes in 20790 changed entries: 19867 added, 0 replaced, 0 unchanged\n");
  EXPECT_EQ(lines_of("dump ipv4FinalResolve | count"), "18097\n");
}

TEST_F(commands_test, every_example_of_the_help_works)
{
  const std::string folder = TARVEX_SOURCE_DIR "/data/";
  const std::string saved = ::testing::TempDir() + "tvsh-state." + std::to_string(getpid());
  for (const command &each : commands()) {
    for (const std::string_view example : each.examples) {
      std::string line(example);
      run("sim device remove 0");
      run("sim device add 0");
      for (const std::string &prepare :
           {std::string("add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5"),
            std::string("set-default ipv4Host onMiss"), std::string("idle ipv4Host enable"),
            std::string("member ecmpMemberActionProfile add setEcmpNextHop nextHop=1"), std::string("audit on"),
            "save " + saved}) {
        if (run(prepare).code != exit_code::ok) ADD_FAILURE() << prepare << run(prepare).errors;
      }
      constexpr std::string_view file = "/tmp/tvsh-state.json";
      for (auto at = line.find(file); at != std::string::npos; at = line.find(file)) {
        line.replace(at, file.size(), saved);
      }
      if (const auto data = line.find("data/"); data != std::string::npos) line.replace(data, 5, folder);
      if (line == "monitor") continue;  // until Ctrl-C
      lines_of(line);
    }
  }
  std::filesystem::remove(saved);
}

TEST_F(commands_test, help_fits_a_terminal_and_shows_what_a_command_can_name)
{
  const auto fits = [](std::string_view text) {
    for (std::size_t end = 0; !text.empty(); text.remove_prefix(end + 1)) {
      end = text.find('\n');
      EXPECT_LE(end, 80u) << text.substr(0, end);
    }
  };
  fits(lines_of("help"));
  for (const command &each : commands()) {
    fits(lines_of("help " + std::string(each.name)));
    EXPECT_TRUE(lines_of(std::string(each.name) + " ?").starts_with("usage: " + std::string(each.name)));
  }
  const std::string schema = lines_of("schema ipv4Host");
  for (const std::string_view line : {"add ipv4Host ?", "help modify ipv4Host", "idle ipv4Host ttl vrfId=1 ?"}) {
    const std::string shown = lines_of(line);
    EXPECT_TRUE(shown.starts_with("usage: ") && shown.ends_with(schema)) << shown;
  }
  EXPECT_TRUE(lines_of("member ecmpMemberActionProfile add ?").ends_with("setEcmpNextHop  nextHop=16\n"));
  EXPECT_EQ(lines_of("sim refuse ?"), lines_of("help sim"));
}

TEST_F(commands_test, headings_have_units_and_json_names_have_none)
{
  EXPECT_EQ(squeezed(run("meters pdpMeter 0").headings),
            "index cir (bytes) cburst (bytes) pir (bytes) pburst (bytes) type\n");
  EXPECT_EQ(squeezed(run("idle ipv4Host").headings), "handle ttl (ms) state\n");
  EXPECT_NE(lines_of("meters pdpMeter 0 -j").find("\"cir\":0"), std::string::npos);
}

// Every column begins where its heading does, whatever stands ahead of it.
TEST_F(commands_test, wide_tables_stay_aligned)
{
  lines_of("add trapToCpu priority=4294967295 etherType=0x806 ingIpv4Dip=255.255.255.255 trapPacket cpuReasonCode=1");
  lines_of("add trapToCpu priority=1 srcPort=7 noOp");
  lines_of("add trapToCpu priority=2 dstPort=65535 copyPacket cpuReasonCode=255 llm=1");
  for (const std::string_view line : {"dump trapToCpu", "counters trapToCpuCount", "tables", "count", "counters"}) {
    const answer got = run(line);
    const std::string heading = got.headings.substr(0, got.headings.find('\n'));
    for (std::size_t at = heading.find("  "); at != std::string::npos; at = heading.find("  ", at)) {
      at = heading.find_first_not_of(' ', at);
      if (heading.substr(at) == "label") break;  // behind a key that is longer than a line
      std::string_view rows = got.lines;
      for (; !rows.empty(); rows.remove_prefix(rows.find('\n') + 1)) {
        const std::string_view row = rows.substr(0, rows.find('\n'));
        EXPECT_TRUE(row.size() <= at || row[at - 1] == ' ') << line << '\n' << heading << '\n' << row;
      }
    }
  }
}

TEST_F(commands_test, a_script_stops_at_the_first_error_and_names_its_line)
{
  caught_output out;
  EXPECT_EQ(shell.run_script("# a comment\n\ncount ipv4Host\r\ndelete ipv4Host handle=9\ntables\n", "setup.tvsh", out),
            exit_code::refused);
  EXPECT_EQ(squeezed(out.lines), "ipv4Host 0\n");
  EXPECT_NE(out.errors.find("setup.tvsh:4: stopped at: delete ipv4Host handle=9"), std::string::npos) << out.errors;
  EXPECT_EQ(shell.run_script("exit\nno such command\n", "-", out), exit_code::ok);
}

// An interrupt from within the output: the command ends, the session goes on.
TEST_F(commands_test, an_interrupt_ends_the_command_alone)
{
  struct impatient : caught_output {
    explicit impatient(session &of) : shell(of) {}
    void line(std::string_view text) override
    {
      caught_output::line(text);
      shell.interrupt();
    }
    session &shell;
  } out(shell);
  for (const char last : {'1', '2', '3'}) lines_of(std::string("add ipv4Host vrfId=1 dip=10.0.0.") + last + " onMiss");
  EXPECT_EQ(shell.run("dump ipv4Host", out), exit_code::interrupted);
  EXPECT_EQ(std::ranges::count(out.lines, '\n'), 1);
  EXPECT_EQ(lines_of("dump ipv4Host | count"), "3\n");
}

// As a program does to a switch that a shell is attached to: the place where the walk stands goes away.
TEST_F(commands_test, a_dump_goes_on_while_others_delete)
{
  struct deleter : caught_output {
    void line(std::string_view text) override
    {
      caught_output::line(text);
      ++rows;
      if (rows == 1) other.run("delete ipv4Host handle=1", rest);
      if (rows != 3) return;
      for (int handle = 1020; handle < 1030; ++handle) {
        other.run("delete ipv4Host handle=" + std::to_string(handle), rest);
      }
    }
    int rows = 0;
    session other;
    caught_output rest;
  } out;
  for (int i = 0; i < 1500; ++i) lines_of("add ipv4Host vrfId=1 dip=" + std::to_string(i) + " onMiss");
  EXPECT_EQ(shell.run("dump ipv4Host", out), exit_code::ok) << out.errors;
  EXPECT_EQ(out.rows, 1490) << "ten were deleted ahead of the walk, one behind it";
  EXPECT_EQ(out.rest.errors, "");
}

}  // namespace
}  // namespace tarvex::shell
