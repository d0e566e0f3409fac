// Updates as they come, what they said was meant, and the restart of the library.
//
// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "state_fixture.h"

namespace tarvex::shell {
namespace {

/// A reader that stands still at its first line.
class slow_output : public caught_output {
 public:
  void line(std::string_view) override
  {
    reached = true;
    reached.notify_all();
    go_on.wait(false);
  }

  std::atomic<bool> reached = false;
  std::atomic<bool> go_on = false;
};

class updates_test : public state_test {
 protected:
  /// Monitors in a thread while this one writes: `write` is done again and again until the first line has come, so
  /// that it is seen by whoever listens by then.
  template <typename Write>
  caught_output &monitor(const std::string &line, Write write)
  {
    std::atomic<bool> ended = false;
    session reader(shell.where, shell.shared_memory());
    std::thread thread([&] {
      EXPECT_EQ(reader.run(line, shown_), exit_code::ok) << shown_.errors;
      ended = true;
    });
    while (!ended) write();
    thread.join();
    return shown_;
  }

  caught_output shown_;
};

TEST_F(updates_test, updates_are_shown_as_text_and_json)
{
  const auto write = [&] {
    run("add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5");
    run("modify ipv4Host vrfId=1 dip=10.0.0.1 setEcmp ecmpGroup=6");
    run("delete ipv4Host vrfId=1 dip=10.0.0.1");
    run("add ipv6Host vrfId=1 dip=::1 onMiss");
  };
  const std::string text = monitor("monitor ipv4Host count=6", write).lines;
  EXPECT_NE(text.find("Z ipv4Host added entry "), std::string::npos) << text;
  EXPECT_NE(text.find(": vrfId=1 dip=10.0.0.1 setNextHop nextHop=5\n"), std::string::npos) << text;
  EXPECT_NE(text.find("Z ipv4Host deleted entry "), std::string::npos) << text;
  EXPECT_EQ(text.find("ipv6Host added"), std::string::npos) << text;

  shown_.lines.clear();
  std::istringstream lines(monitor("monitor count=6 -j", [&] {
                             run("member ecmpMemberActionProfile add setEcmpNextHop nextHop=7 as=m");
                             run("group ecmpMemberActionProfile create 4 as=g");
                             run("group ecmpMemberActionProfile add $g $m");
                             run("group ecmpMemberActionProfile disable $g $m");
                             run("group ecmpMemberActionProfile delete $g");
                             run("member ecmpMemberActionProfile delete $m");
                           }).lines);
  std::string seen;
  for (std::string line; std::getline(lines, line);) {
    const auto document = nlohmann::json::parse(line, nullptr, false);
    ASSERT_TRUE(document.is_object()) << line;
    EXPECT_EQ(document["schema_version"], 1);
    EXPECT_EQ(document["profile"], "ecmpMemberActionProfile");
    seen += document["event"].get<std::string>() + (document.contains("group") ? " group\n" : " member\n");
  }
  for (const std::string_view part : {"added member\n", "added group\n", "disabled group\n", "deleted group\n"}) {
    EXPECT_NE(seen.find(part), std::string::npos) << seen;
  }
  EXPECT_EQ(run("monitor ipv4Hots").code, exit_code::usage);
  EXPECT_EQ(lines_of("monitor seconds=0"), "");
}

// A reader that stands still: what finds no room is counted, and nobody waits for it.
TEST_F(updates_test, a_slow_reader_loses_updates_and_is_told)
{
  session reader(shell.where, shell.shared_memory());
  slow_output out;
  std::thread thread([&] { reader.run("monitor ipv4Host count=8193", out); });
  while (!out.reached) lines_of("set-default ipv4Host onMiss");
  for (unsigned i = 0; i < 9000; ++i) lines_of("set-default ipv4Host onMiss");
  out.go_on = true;
  out.go_on.notify_all();
  thread.join();
  EXPECT_NE(out.notes.find("updates came faster than they could be shown"), std::string::npos) << out.notes;
}

struct audit_step {
  std::string_view line;
  exit_code code;
  std::string_view lines;  // a part of them
};

TEST_F(updates_test, an_audit_finds_what_nobody_told_of)
{
  lines_of("add ipv6Host vrfId=1 dip=::1 onMiss");  // there before anybody listens
  lines_of("add ipv6Host vrfId=1 dip=::2 onMiss");
  EXPECT_EQ(run("audit").code, exit_code::usage);
  lines_of("audit on");
  for (const std::string_view line : every_kind_of_state) lines_of(line);
  const answer good = run("audit");
  EXPECT_EQ(good.code, exit_code::ok) << good.lines;
  EXPECT_NE(good.notes.find("0 different\n2 were there by then"), std::string::npos) << good.notes;

  static constexpr audit_step steps[] = {
      {"sim corrupt ipv4Host vrfId=1 dip=10.0.0.1 bit=1", exit_code::ok, ""},
      {"audit", exit_code::differences, "different  vrfId=1 dip=10.0.0.1 setNextHop nextHop=5"},
      {"audit", exit_code::differences, "setNextHop nextHop=7\n"},
      {"sim corrupt ipv4Host vrfId=1 dip=10.0.0.1 bit=1", exit_code::ok, ""},
      {"audit", exit_code::ok, ""},
      {"sim lose l2SmacCheck priority=11", exit_code::ok, ""},
      {"audit", exit_code::differences, "lost       priority=11"},
      {"sim lose ipv6Host vrfId=1 dip=::2", exit_code::ok, ""},
      {"audit", exit_code::differences, "lost       (unknown)"},
      {"audit off", exit_code::ok, ""},
      {"audit", exit_code::usage, ""},
  };
  for (const audit_step &each : steps) {
    const answer got = run(each.line);
    EXPECT_EQ(got.code, each.code) << each.line << got.lines << got.errors;
    EXPECT_NE(got.lines.find(each.lines), std::string::npos) << each.line << "\n" << got.lines;
  }
}

TEST_F(updates_test, members_and_groups_come_back_after_a_restart)
{
  build();
  for (const std::string_view road : {"log", "replay"}) {
    const std::string lines = lines_of("restart " + std::string(road));
    EXPECT_NE(lines.find("ecmpMemberActionProfile         2           1           2            came back"),
              std::string::npos)
        << lines;
    // what only a library that knows the member's action can do
    lines_of("group ecmpMemberActionProfile remove 1 3");
    lines_of("group ecmpMemberActionProfile add 1 3");
  }
  lines_of("sim refuse 12 7");
  EXPECT_EQ(run("restart replay").code, exit_code::refused);
  EXPECT_EQ(run("restart replay").code, exit_code::differences);  // what was forgotten stays so: the log is behind
}

}  // namespace
}  // namespace tarvex::shell
