// What commands answer with -j: one complete document each, however they end.
//
// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command.h"
#include "shell_fixture.h"

namespace tarvex::shell {
namespace {

using nlohmann::json;

/// Lines that work one after the other on a fresh switch: each command and each of its verbs. %D is a folder, %S that
/// of the sources, %N the snapshot.
constexpr std::string_view lines_in_order[] = {
    "add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5",
    "add ipv4Host vrfId=1 dip=10.0.0.2 setNextHop nextHop=6",
    "add ipv4Host vrfId=1 dip=10.0.0.3 onMiss --dry-run",
    "modify ipv4Host handle=2 setEcmp ecmpGroup=7",
    "set-default ipv4Host onMiss",
    "add l2SmacCheck smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 priority=10 setIllegalSmac",
    "add ingL2DomainCount decapType=1 ingL3Aintf=9 onMiss",
    "member ecmpMemberActionProfile add setEcmpNextHop nextHop=1 as=first",
    "member ecmpMemberActionProfile add setEcmpNextHop nextHop=2",
    "member ecmpMemberActionProfile modify 2 setEcmpNextHop nextHop=3",
    "group ecmpMemberActionProfile create 4",
    "group ecmpMemberActionProfile add 1 1",
    "group ecmpMemberActionProfile add 1 2",
    "group ecmpMemberActionProfile disable 1 2",
    "group ecmpMemberActionProfile fallback 1",
    "let second member ecmpMemberActionProfile 2",
    "entry ecmpGroup add ecmpGroup=5 group=1",
    "entry ecmpGroup modify ecmpGroup=5 member=1",
    "entry ecmpGroup set-default member=1",
    "counter pdpClassCount 3 packets=18446744073709551615 bytes=9007199254740993",
    "sim count ingL2DomainCount decapType=1 ingL3Aintf=9 packets=2",
    "meter pdpMeter 1 cir=1 cburst=2 pir=3 pburst=4",
    "wred wredBlock 2 time=0.5 min=1 max=2 probability=0.25",
    "register ingVlanCheckData 3 1",
    "value-set add value=0x8100 mask=0xff00",
    "value-set modify 1 value=0x8101",
    "hash hashOuterIpv4Hdr seed 0xfeedface12345678",
    "hash hashOuterIpv4Hdr fields 0 2",
    "digests on",
    "digests timeout 100",
    "sim learn 00:1c:73:00:00:01",
    "idle ipv4Host enable mode=notify",
    "idle ipv4Host ttl vrfId=1 dip=10.0.0.1 ttl=5000",
    "idle ipv4Host update",
    "sim age 10",
    "snapshot arm ingress vlanHdr_0__vlanId=100",
    "sim capture %N vlanHdr_0__vlanId=100",
    "sim lookup ipv4Host vrfId=1 dip=10.0.0.1",
    "sim lookup ipv4Host vrfId=1 dip=10.0.0.9",
    "sim lookup routedMartian",
    "tables",
    "tables ipv4Ho",
    "schema trapToCpu",
    "schema ipv4Host",
    "dump ipv4Host",
    "dump ipv4Host --raw",
    "dump l2SmacCheck",
    "dump ecmpGroup",
    "show ipv4Host handle=1",
    "count",
    "count ipv4Host",
    "default ipv4Host",
    "default nextHop",
    "members ecmpMemberActionProfile",
    "groups ecmpMemberActionProfile",
    "counters",
    "counters pdpClassCount 0-9",
    "counters ingL2DomainCounters",
    "meters",
    "meters pdpMeter 0-9",
    "meters wredBlock 2",
    "registers",
    "registers ingVlanCheckData 0-3",
    "hash",
    "value-set",
    "digests",
    "idle",
    "idle ipv4Host",
    "snapshot fields egress",
    "snapshot show",
    "snapshot show %N",
    "audit on",
    "audit",
    "audit off",
    "monitor seconds=0",
    "trace on",
    "count ipv4Host",
    "trace off",
    "trace",
    "trace %D/trace",
    "add ipv4Host vrfId=1 dip=10.0.0.4 onMiss",
    "trace off",
    "delete ipv4Host vrfId=1 dip=10.0.0.4",
    "trace replay %D/trace --dry-run",
    "value-set delete 1",
    "save %D/state",
    "diff live %D/state",
    "delete ipv4Host handle=1",
    "apply %D/state --dry-run",
    "apply %D/state",
    "load %D/state replace --dry-run",
    "load %D/state replace",
    "restart replay",
    "load-routes %S/data/routes_small.txt.gz --dry-run",
    "snapshot delete %N",
    "digests off",
    "idle ipv4Host disable",
    "reset-default ipv4Host",
    "sim corrupt ipv4Host vrfId=1 dip=10.0.0.2",
    "sim lose ipv4Host vrfId=1 dip=10.0.0.2",
    "sim refuse 0 0",
    "sim device add 7",
    "sim device remove 7",
    "help",
    "help dump",
    "exit",
    "quit",
};

class json_test : public shell_test {
 protected:
  json_test() : folder_(::testing::TempDir() + "tvsh-json." + std::to_string(getpid()))
  {
    std::filesystem::create_directory(folder_);
  }
  ~json_test() override { std::filesystem::remove_all(folder_); }

  std::string filled_in(std::string_view line) const
  {
    std::string text(line);
    for (const auto &[place, put] :
         {std::pair("%D", folder_), std::pair("%S", std::string(TARVEX_SOURCE_DIR)), std::pair("%N", snapshot_)}) {
      if (const auto at = text.find(place); at != std::string::npos) text.replace(at, 2, put);
    }
    return text;
  }

  /// The one document of a command; notes and traced calls are a document each.
  static json document_of(std::string_view line, const answer &got)
  {
    std::istringstream notes(got.notes);
    for (std::string note; std::getline(notes, note);) {
      EXPECT_TRUE(json::accept(note)) << line << "\n" << note;
    }
    EXPECT_EQ(got.errors + got.headings, "") << line;
    json document = json::parse(got.lines, nullptr, false);
    EXPECT_TRUE(document.is_object() && document.value("schema_version", 0) == 2) << line << "\n" << got.lines;
    return document;
  }

  /// Handles are numbers, what is true or false is a boolean, and a counter keeps all of its digits.
  static void check_spelling(std::string_view line, const json &value, const std::string &name = {})
  {
    static constexpr std::string_view handles[] = {"handle", "entry", "member", "group", "snapshot"};
    static constexpr std::string_view booleans[] = {"idle", "default", "active", "done", "hit", "captured", "restored"};
    const auto one_of = [&](const auto &names) { return std::ranges::count(names, name) != 0; };
    EXPECT_TRUE(value.is_number_unsigned() || !one_of(handles)) << line << ": " << name;
    EXPECT_TRUE(value.is_boolean() || !one_of(booleans)) << line << ": " << name;
    EXPECT_TRUE(value.is_string() || name != "packets") << line;
    EXPECT_TRUE(value != "yes" && value != "no") << line << ": " << name;
    EXPECT_FALSE(value.is_number_unsigned() && value.get<std::uint64_t>() >> 53 != 0) << line << ": " << name;
    if (!value.is_structured()) return;
    for (const auto &[key, inner] : value.items()) check_spelling(line, inner, value.is_object() ? key : std::string());
  }

  std::string folder_;
  std::string snapshot_;
};

TEST_F(json_test, every_command_answers_with_one_document)
{
  for (const command &each : commands()) {
    EXPECT_TRUE(std::ranges::any_of(lines_in_order, [&](std::string_view line) {
      return line.substr(0, line.find(' ')) == each.name;
    })) << each.name;
  }
  for (const std::string_view raw : lines_in_order) {
    const std::string line = filled_in(raw);
    const answer got = run(line + " -j");
    EXPECT_EQ(got.code, exit_code::ok) << line << "\n" << got.lines;
    const json document = document_of(line, got);
    EXPECT_FALSE(document.contains("error")) << got.lines;
    if (document.contains("snapshot")) snapshot_ = document["snapshot"].dump();
    if (!line.starts_with("schema") && !line.starts_with("trace")) check_spelling(line, document);
  }
}

TEST_F(json_test, rows_and_results_have_what_the_text_has)
{
  for (const std::string_view raw : lines_in_order) {
    const std::string line = filled_in(raw);
    if (line == "exit" || line == "quit" || line.starts_with("help")) continue;
    const answer text = run(line);
    if (line.starts_with("snapshot arm")) snapshot_ = text.lines.substr(9, text.lines.size() - 10);
    const bool reads = !text.headings.empty();  // and so changes nothing
    if (!reads || text.code != exit_code::ok) continue;
    const json document = document_of(line, run(line + " -j"));
    const auto rows = std::ranges::count(text.lines, '\n');
    EXPECT_TRUE(
        std::ranges::any_of(document, [&](const json &item) { return item.is_array() && std::ssize(item) == rows; }))
        << line << " has " << rows << " rows as text";
  }
}

TEST_F(json_test, documents_as_they_are_written)
{
  static constexpr std::pair<std::string_view, std::string_view> steps[] = {
      {"add ipv4Host vrfId=9 dip=10.0.0.1 onMiss", R"("done":true,"entry":1})"},
      {"modify ipv4Host handle=1 onMiss", R"("done":true})"},
      {"delete ipv4Host handle=1 --dry-run", R"("done":false,"checked":"deleting entry 1 of ipv4Host"})"},
      {"delete ipv4Host handle=2", R"j("error":{"message":"delete: deleting entry 2 of ipv4Host: the driver refused: )j"
                                   R"j(no entry (STANDIN_NO_ENTRY, status 68)","exit_code":2,"status":68}})j"},
      {"counter pdpClassCount 3 packets=18446744073709551615 bytes=9007199254740993", R"("done":true})"},
      {"counters pdpClassCount 3", R"("counter":"pdpClassCount","cells":[)"
                                   "\n"
                                   R"({"index":3,"packets":"18446744073709551615","bytes":"9007199254740993"})"
                                   "\n]}"},
      {"member ecmpMemberActionProfile add setEcmpNextHop nextHop=1", R"("done":true,"member":1})"},
      {"group ecmpMemberActionProfile create 4", R"("done":true,"group":1})"},
      {"group ecmpMemberActionProfile add 1 1", R"("done":true})"},
      {"group ecmpMemberActionProfile disable 1 1", R"("done":true})"},
      {"groups ecmpMemberActionProfile", R"("profile":"ecmpMemberActionProfile","groups":[)"
                                         "\n"
                                         R"({"group":1,"members":[{"member":1,"active":false}]})"
                                         "\n]}"},
      {"tables ipv4Host", R"("tables":[)"
                          "\n"
                          R"({"table":"ipv4Host","handle":16777226,"kind":"exact","fields":2,"actions":5,"idle":true})"
                          "\n]}"},
  };
  for (const auto &[line, document] : steps) {
    EXPECT_EQ(run(std::string(line) + " -j").lines, R"({"schema_version":2,)" + std::string(document) + '\n');
  }
}

// Whichever call of a command the driver refuses, and wherever an interrupt comes.
TEST_F(json_test, a_document_that_breaks_off_is_completed_with_the_error)
{
  for (int i = 1; i < 5; ++i) lines_of("add ipv4Host vrfId=1 dip=" + std::to_string(i) + " onMiss");
  for (int i = 1; i < 5; ++i) lines_of("member ecmpMemberActionProfile add setEcmpNextHop nextHop=1");
  lines_of("group ecmpMemberActionProfile create 4");
  std::size_t broken_off = 0;
  for (const std::string_view line :
       {"dump ipv4Host", "count", "members ecmpMemberActionProfile", "groups ecmpMemberActionProfile",
        "counters pdpClassCount 0-4", "meters pdpMeter 0-4", "meters wredBlock 0-4", "registers ingVlanCheckData 0-4",
        "hash", "default ipv4Host", "idle ipv4Host", "diff live live", "add ipv4Host vrfId=2 dip=1 onMiss",
        "restart replay"}) {
    for (unsigned nth = 1; nth < 8; ++nth) {
      standin_refuse_call(nth, 0x77);
      const answer got = run(std::string(line) + " -j");
      standin_refuse_call(0, 0);
      const json document = document_of(line, got);
      const bool failed = got.code != exit_code::ok && got.code != exit_code::differences;
      EXPECT_EQ(document.contains("error"), failed) << got.lines;
      if (!failed) continue;
      EXPECT_GT(document["error"].value("status", 0), 0) << got.lines;
      broken_off += static_cast<std::size_t>(std::ranges::count(got.lines, '\n') > 1);
    }
  }
  EXPECT_GT(broken_off, 20U) << "a refusal amid the rows is what this is about";

  struct impatient : caught_output {
    explicit impatient(session &of) : shell(of) {}
    void line(std::string_view text) override
    {
      caught_output::line(text);
      if (text.starts_with(",{")) shell.interrupt();
    }
    session &shell;
  } out(shell);
  shell.clear_interrupt();
  EXPECT_EQ(shell.run("dump ipv4Host -j", out), exit_code::interrupted);
  const json document = document_of("dump", {exit_code::interrupted, out.lines, {}, {}, out.errors});
  EXPECT_EQ(document["entries"].size(), 2U);
  EXPECT_EQ(document["error"], (json{{"message", "interrupted"}, {"exit_code", 130}}));
}

TEST_F(json_test, a_script_and_text_that_is_no_utf8)
{
  shell.defaults.json = true;
  caught_output out;
  shell.run_script("count ipv4Host\n\ndump \xc3\xa4\xff\xed\xa0\x80\x01\n", "a.tvsh", out);
  std::istringstream lines(out.lines);
  std::string line;
  std::string last;
  while (std::getline(lines, line)) last = std::exchange(line, {});
  EXPECT_EQ(out.errors, "");
  EXPECT_TRUE(json::accept(last)) << last;
  EXPECT_NE(last.find("\xc3\xa4\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\\u0001"), std::string::npos) << last;
  EXPECT_NE(last.find("\"file\":\"a.tvsh\",\"line\":3"), std::string::npos) << last;
}

}  // namespace
}  // namespace tarvex::shell
