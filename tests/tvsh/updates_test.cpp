// Updates as they come, what they said was meant, and the restart of the library.
//
// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "state_fixture.h"
#include "tarvex_pd/tarvex_pd.h"

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
    EXPECT_EQ(document["schema_version"], 2);
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

// Writes at each place of an audit, and of its beginning, are no differences.
TEST_F(updates_test, writes_during_an_audit_are_no_differences)
{
  const std::vector<std::string_view> writes = {
      "add ipv4Host vrfId=3 dip=10.0.0.3 onMiss",
      "delete ipv4Host vrfId=1 dip=10.0.0.1",
      "modify ipv4Host vrfId=2 dip=10.0.0.2 onMiss",
      "reset-default ipv4Host",
      "member ecmpMemberActionProfile modify 3 setEcmpNextHop nextHop=80",
      "member ecmpMemberActionProfile add setEcmpNextHop nextHop=81",
      "group ecmpMemberActionProfile enable 1 3",
      "group ecmpMemberActionProfile remove 1 2",
      "group ecmpMemberActionProfile create 3",
      "entry ecmpGroup modify ecmpGroup=5 member=3",
  };
  for (const std::string_view command : {"audit", "audit on"}) {
    for (unsigned at = 1;; ++at) {
      start_anew();
      build();
      if (command == "audit") lines_of("audit on");
      const other_session other(shell, at, writes);
      EXPECT_EQ(run(command).lines, "") << command << at;
      if (!other.done()) break;
      EXPECT_EQ(run("audit").lines, "") << command << at;
      lines_of("delete ipv4Host vrfId=3 dip=10.0.0.3");
      lines_of("group ecmpMemberActionProfile delete 1");
      EXPECT_EQ(run("audit").lines, "") << command << at;
    }
  }
}

// The program's own callbacks are called beside the shell's, have their place back, and keep a place that they took.
TEST_F(updates_test, the_callbacks_of_the_program_stay)
{
  struct {
    int entries = 0, members = 0, groups = 0, reports = 0;
  } seen;
  const standin_update_cb_t entry = [](auto, auto, auto, auto, auto, void *count) { ++*static_cast<int *>(count); };
  const standin_selector_cb_t group = [](auto, auto, auto, auto, auto, void *count) { ++*static_cast<int *>(count); };
  const standin_digest_cb_t report = [](pd_sess_hdl_t sess_hdl, standin_digest_msg_t *message, void *count) {
    ++*static_cast<int *>(count);
    EXPECT_EQ(sess_hdl, 9u);
    EXPECT_EQ(p4_pd_tarvex_switch_macLearningDigest_notify_ack(sess_hdl, message), 0u);
  };
  const auto of = [](auto function) { return reinterpret_cast<pd_callback_t>(function); };
  p4_pd_tarvex_switch_ipv4Host_register_mat_update_cb(9, 0, of(entry), &seen.entries);
  p4_pd_tarvex_switch_ecmpMemberActionProfile_register_adt_update_cb(9, 0, of(entry), &seen.members);
  p4_pd_tarvex_switch_ecmpMemberActionProfile_register_sel_update_cb(9, 0, of(group), &seen.groups);
  p4_pd_tarvex_switch_macLearningDigest_register(9, 0, of(report), &seen.reports);
  int times = 0;
  for (const std::string_view line :
       {"audit on", "digests on", "monitor seconds=0", "digests on", "audit off", "digests off"}) {
    lines_of(line);
    lines_of("set-default ipv4Host onMiss");
    handle_of_new("member ecmpMemberActionProfile add setEcmpNextHop nextHop=7");
    handle_of_new("group ecmpMemberActionProfile create 4");
    lines_of("sim learn 02:00:00:00:00:01");
    ++times;
    EXPECT_EQ(seen.entries, times) << line;
    EXPECT_EQ(seen.members, times) << line;
    EXPECT_EQ(seen.groups, times) << line;
    EXPECT_EQ(seen.reports, times) << line;
    EXPECT_EQ(standin_digest_unacknowledged(0), 0u);
  }
  EXPECT_NE(lines_of("digests").find("02:00:00:00:00:01"), std::string::npos);

  lines_of("audit on");
  int later = 0;
  p4_pd_tarvex_switch_ipv4Host_register_mat_update_cb(9, 0, of(entry), &later);
  EXPECT_NE(run("audit").notes.find("callbacks of its own in the place of 1 since"), std::string::npos);
  lines_of("audit off");
  lines_of("reset-default ipv4Host");
  EXPECT_EQ(later, 1);
}

TEST_F(updates_test, members_and_groups_come_back_after_a_restart)
{
  build();
  for (const std::string_view road : {"log", "replay"}) {
    const std::string lines = lines_of("restart " + std::string(road));
    EXPECT_NE(lines.find("ecmpMemberActionProfile        2           1           2            came back"),
              std::string::npos)
        << lines;
    // what only a library that knows the member's action can do
    lines_of("group ecmpMemberActionProfile remove 1 3");
    lines_of("group ecmpMemberActionProfile add 1 3");
  }
  lines_of("sim refuse 12 7");
  const answer got = run("restart replay");
  EXPECT_EQ(got.code, exit_code::refused);
  EXPECT_NE(got.errors.find("replaying what the switch holds: the driver refused: status 7"), std::string::npos)
      << got.errors;
  EXPECT_EQ(run("restart replay").code, exit_code::differences);  // what was forgotten stays so: the log is behind
}

}  // namespace
}  // namespace tarvex::shell
