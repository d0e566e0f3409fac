// What a trace says of the calls that the library makes for the shell's commands, and what it makes of a fresh switch.
//
// SPDX-License-Identifier: Apache-2.0
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <re2/re2.h>
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <thread>

#include "call_table.h"
#include "shell_fixture.h"
#include "tarvex_pd/tarvex_pd.h"
#include "tarvex_platform/driver.h"
#include "tarvex_trace/tarvex_trace.h"

namespace tarvex::shell {
namespace {

/// Without what differs from run to run: times, threads, addresses.
std::string settled(std::string text)
{
  RE2::GlobalReplace(&text, R"(\d\d:\d\d:\d\d\.\d{6} \[\d+\] )", "");
  RE2::GlobalReplace(&text, R"(<[\d.]+[um]s>)", "<>");
  RE2::GlobalReplace(&text, "(cb|cookie|digest_msg)=0x[0-9a-f]+", R"(\1=@)");
  return text;
}

/// What the one has and the other does not from their first different line on; short, and empty where they are equal.
std::string difference(const std::string &one, const std::string &other)
{
  const auto [from, at] = std::ranges::mismatch(one, other);
  if (from == one.end() && at == other.end()) return {};
  const auto begin = one.rfind('\n', static_cast<std::size_t>(from - one.begin()));
  return "differs from: " + one.substr(begin == std::string::npos ? 0 : begin + 1, 200);
}

class trace_test : public shell_test {
 protected:
  trace_test() : file_(std::filesystem::temp_directory_path() / ("tarvex_trace_" + std::to_string(getpid()))) {}
  ~trace_test() override
  {
    tarvex_trace_stop();
    std::filesystem::remove(file_);
  }

  /// A switch without anything, and a session that has written nothing.
  void start_anew()
  {
    p4_pd_tarvex_switch_cleanup();
    standin_reset();
    standin_device_add(0);
    p4_pd_tarvex_switch_init();
    *shell.memory().written.lock() = {};
  }

  /// All that the reading commands show.
  std::string everything()
  {
    std::string all;
    const auto add = [&](const std::string &line) { all += line + ":\n" + run(line).lines; };
    for (const auto &table : calls::tables) {
      for (const std::string_view command : {"dump ", "default "}) add(std::string(command) + table.name);
      if (table.idle_time) add("idle " + std::string(table.name));
    }
    for (const auto &profile : calls::profiles) {
      for (const std::string_view command : {"members ", "groups "}) add(std::string(command) + profile.name);
    }
    for (const auto &resource : calls::resources) {
      const std::string_view command = resource.kind == calls::resource_kind::counter     ? "counters "
                                       : resource.kind == calls::resource_kind::register_ ? "registers "
                                                                                          : "meters ";
      add(std::string(command) + resource.name + (resource.direct ? "" : " 0-9"));
    }
    // Snapshots get a handle that no snapshot had before.
    for (const std::string_view line : {"hash", "value-set", "snapshot show | include egress | count"})
      add(std::string(line));
    return all;
  }

  /// The file of a save, which has what the library cannot read back, too.
  std::string all_saved()
  {
    const std::string name = file_ + ".state";
    lines_of("save " + name);
    std::ifstream in(name);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    std::filesystem::remove(name);
    return text;
  }

  std::string file_;
};

struct told {
  std::string_view line;
  std::string_view calls;
};

TEST_F(trace_test, calls_are_told_with_what_they_mean)
{
  static constexpr told steps[] = {
      {"add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5 ttl=9",
       "pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=ipv4Host, match={vrfId=1 dip=10.0.0.1}, act=setNextHop, "
       "action={nextHop=5}, ttl=9, entry=1) = 0 OK <>\n"},
      {"show ipv4Host handle=1",
       "pipe_mgr_get_entry(sess=1, tbl=ipv4Host, dev_id=0, entry=1, read_from_hw=0, match={vrfId=1 dip=10.0.0.1}, "
       "action={nextHop=5}, act=setNextHop) = 0 OK <>\n"},
      {"add ipv6ShortMaskLpm vrfId=1 dip=2001:c00::/22 setEcmp ecmpGroup=1",
       "pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=ipv6ShortMaskLpm, match={vrfId=1 dip=2001:c00::/22}, "
       "act=setEcmp, action={ecmpGroup=1}, ttl=0, entry=1) = 0 OK <>\n"},
      {"add ipv4FinalResolve fibPartitionIndex=7 dip=10.1.0.0/16 setNextHop nextHop=3 --force",
       "pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=ipv4FinalResolve, match={fibPartitionIndex=7 "
       "dip=10.1.0.0/16}, act=setNextHop, action={nextHop=3}, ttl=0, entry=1) = 0 OK <>\n"},
      {"add l2SmacCheck smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 priority=10 setIllegalSmac",
       "pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=l2SmacCheck, match={smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 "
       "priority=10}, act=setIllegalSmac, action={}, ttl=0, entry=1) = 0 OK <>\n"},
      {"add l2LookupMiss priority=1 l2LookupBcastHit cir=10 cburst=20 pir=30 pburst=40",
       "pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=l2LookupMiss, match={ingressPort=* dmac=* priority=1}, "
       "act=l2LookupBcastHit, action={resources=[{res=stormControlMeter index=0 tag=1 meter={color_mode=1 "
       "first_unit_kind=0 first_rate=10 first_burst=20 second_unit_kind=0 second_rate=30 second_burst=40}}]}, ttl=0, "
       "entry=1) = 0 OK <>\n"},
      {"delete ipv4Host vrfId=1 dip=10.0.0.9",
       "pipe_mgr_mat_ent_del_by_match_spec(sess=1, dev=0 pipe=ffff, tbl=ipv4Host, match={vrfId=1 dip=10.0.0.9}) = 68 "
       "NO_ENTRY <>\n"},
      {"member ecmpMemberActionProfile add setEcmpNextHop nextHop=7",
       "pipe_mgr_adt_ent_add(sess=1, dev=0 pipe=ffff, adt=ecmpMemberActionProfile, act=setEcmpNextHop, "
       "action={nextHop=7}, mbr=1) = 0 OK <>\n"
       "p4_pd_ms_new_mbr(sess=1, state=ecmpMemberActionProfile, dev_id=0, mbr=1) = 0 OK <>\n"
       "p4_pd_ms_set_mbr_act(state=ecmpMemberActionProfile, dev_id=0, mbr=1, act=setEcmpNextHop) = 0 OK <>\n"},
      {"wred wredBlock 2 time=0.5 min=1 max=2 probability=0.25",
       "pipe_mgr_wred_ent_set(sess=1, dev=0 pipe=ffff, wred=wredBlock, index=2, spec={time_constant=0.5 "
       "min_threshold=1 max_threshold=2 max_probability=0.25}) = 0 OK <>\n"},
      {"register ingVlanCheckData 3 1",
       "pipe_stful_ent_set(sess=1, dev=0 pipe=ffff, reg=ingVlanCheckData, index=3, spec=0100000000000000) = 0 OK <>\n"},
      {"digests on",
       "pipe_mgr_lrn_digest_notification_register(sess=1, dev_id=0, digest=0x21000084, cb=@, cookie=@) = 0 OK <>\n"},
      {"hash hashOuterIpv4Hdr seed 5",
       "pipe_mgr_hash_calc_seed_set(sess=1, dev_id=0, calc=hashOuterIpv4Hdr, seed=5) = 0 OK <>\n"},
  };
  lines_of("trace on");
  for (const told &each : steps) EXPECT_EQ(settled(run(each.line).notes), each.calls) << each.line;
  EXPECT_NE(run("snapshot arm ingress vlanHdr_0__vlanId=0x123").notes.find("value_rec={65:2301}"), std::string::npos);
  lines_of("trace off");
  EXPECT_EQ(run("show ipv4Host handle=1").notes, "");
}

extern "C" void count_within(std::uint32_t, std::uint32_t table, std::uint32_t, std::uint32_t, const void *, void *)
{
  std::uint32_t count = 0;
  pipe_mgr_get_entry_count(1, pd_dev_tgt(0, 0xffff), table, 0, &count);
}

TEST_F(trace_test, the_latest_calls_are_kept)
{
  lines_of("trace on");
  const std::string notes = run("load-routes " TARVEX_SOURCE_DIR "/data/routes_small.txt.gz").notes;
  EXPECT_TRUE(notes.starts_with("10800 earlier calls are not kept")) << notes.substr(0, 100);
  EXPECT_EQ(std::ranges::count(notes, '\n'), 10'001);
  EXPECT_EQ(lines_of("trace"), "on, " + std::to_string(tarvex_trace_calls()) + " calls traced so far\n");
}

// Calls of the whole program show as they are made, until the interrupt.
TEST_F(trace_test, a_session_follows_the_calls)
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
  std::atomic<bool> ended = false;
  std::thread program([&] {
    while (!ended) count_within(0, 0x100000a, 0, 0, nullptr, nullptr);
  });
  EXPECT_EQ(shell.run("trace follow", out), exit_code::interrupted);
  ended = true;
  program.join();
  EXPECT_EQ(settled(out.lines).find("pipe_mgr_get_entry_count("), 0u);
  EXPECT_EQ(tarvex_trace_runs(), 0);
}

// Others call meanwhile; a session's own calls show, and in one line each.
TEST_F(trace_test, a_session_shows_its_own_calls)
{
  for (const std::string_view form : {"", " -j"}) {
    lines_of("trace on" + std::string(form));
    std::atomic<bool> ended = false;
    std::atomic<unsigned> made = 0;
    std::thread program([&] {
      for (; !ended; ++made) count_within(0, 0x100000a, 0, 0, nullptr, nullptr);
    });
    std::string notes;
    for (unsigned i = 0; i < 200 || made < 1000; ++i) notes += run("default ipv4Host").notes;
    ended = true;
    program.join();
    lines_of("trace off");
    EXPECT_NE(notes.find("pipe_mgr_table_get_default_entry_handle"), std::string::npos);
    for (const std::string_view other : {"pipe_mgr_get_entry_count", "unfinished", "resumed"}) {
      EXPECT_EQ(notes.find(other), std::string::npos) << notes.substr(notes.find(other), 100);
    }
  }
}

extern "C" void die(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, const void *, void *)
{
  raise(SIGKILL);
}

// Whatever ends the process, and in whatever call: the calls that were made are in the file.
TEST_F(trace_test, a_process_that_dies_in_a_call_leaves_its_trace)
{
  for (const std::uint32_t flags : {0u, std::uint32_t{TARVEX_TRACE_AS_JSON}}) {
    const pid_t child = fork();
    if (child == 0) {
      tarvex_trace_to_file(file_.c_str(), flags);
      count_within(0, 0x100000a, 0, 0, nullptr, nullptr);
      pipe_register_mat_update_cb(1, 0, 0x100000a, reinterpret_cast<pd_callback_t>(&die), nullptr);
      run("add ipv4Host vrfId=1 dip=10.0.0.1 onMiss");
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    std::ifstream lines(file_);
    std::string counted, registered, died;
    std::getline(std::getline(std::getline(lines, counted), registered), died);
    EXPECT_NE(counted.find("pipe_mgr_get_entry_count"), std::string::npos) << counted;
    EXPECT_NE(registered.find("pipe_register_mat_update_cb"), std::string::npos) << registered;
    EXPECT_EQ(settled(died), flags != 0 ? ""
                                        : "pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=ipv4Host, match={vrfId=1 "
                                          "dip=10.0.0.1}, act=onMiss, action={}, ttl=0");
  }
}

// Neither waits for another process, and what could not be written is told with the file.
TEST_F(trace_test, files_that_cannot_be_are_refused)
{
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
  for (const std::string command : {"trace ", "trace replay "}) {
    const answer got = run(command + file_);
    EXPECT_EQ(got.code, exit_code::file) << command;
    EXPECT_NE(got.errors.find(file_ + ": is no plain file"), std::string::npos) << got.errors;
  }
  lines_of("trace /dev/full");
  lines_of("count ipv4Host");
  const answer got = run("trace off");
  EXPECT_EQ(got.code, exit_code::file);
  EXPECT_NE(got.errors.find("/dev/full: No space left on device"), std::string::npos) << got.errors;
}

TEST_F(trace_test, calls_within_calls_are_told_in_two_lines)
{
  pipe_register_mat_update_cb(1, 0, 0x100000a, reinterpret_cast<pd_callback_t>(&count_within), nullptr);
  lines_of("trace on");
  EXPECT_EQ(settled(run("add ipv4Host vrfId=1 dip=10.0.0.1 onMiss").notes),
            "pipe_mgr_mat_ent_add(sess=1, dev=0 pipe=ffff, tbl=ipv4Host, match={vrfId=1 dip=10.0.0.1}, act=onMiss, "
            "action={}, ttl=0 <unfinished ...>\n"
            "pipe_mgr_get_entry_count(sess=1, dev=0 pipe=ffff, tbl=ipv4Host, count=1) = 0 OK <>\n"
            "<... pipe_mgr_mat_ent_add resumed>, entry=1) = 0 OK <>\n");
  lines_of("trace off");
  lines_of("trace on -j");
  std::string depths;
  std::istringstream lines(run("delete ipv4Host handle=1").notes);
  for (std::string line; std::getline(lines, line);) depths += nlohmann::json::parse(line)["depth"].dump();
  EXPECT_EQ(depths, "10");
}

// Lines stay whole and calls complete while threads call, and while the trace goes off and on.
TEST_F(trace_test, threads_call_at_once)
{
  constexpr int threads = 8;
  constexpr int calls_each = 100;
  const auto call_from_all = [&](const std::function<void()> &meanwhile) {
    std::vector<std::thread> all;
    for (int t = 0; t < threads; ++t) {
      all.emplace_back([] {
        for (int i = 0; i < calls_each; ++i) {
          std::uint32_t count = 0;
          p4_pd_tarvex_switch_ipv4Host_get_entry_count(1, pd_dev_tgt(0, 0xffff), &count);
        }
      });
    }
    meanwhile();
    for (std::thread &each : all) each.join();
  };
  ASSERT_EQ(tarvex_trace_to_file(file_.c_str(), 0), 0);
  call_from_all([] {});
  ASSERT_EQ(tarvex_trace_stop(), 0);
  std::ifstream lines(file_);
  const RE2 shape(R"(pipe_mgr_get_entry_count\(.*count=0\) = 0 OK <>|pipe_mgr_get_entry_count\(.* <unfinished ...>|)"
                  R"(<... pipe_mgr_get_entry_count resumed>, count=0\) = 0 OK <>)");
  int ended = 0, begun = 0;
  for (std::string line; std::getline(lines, line);) {
    const std::string text = settled(line);
    ASSERT_TRUE(RE2::FullMatch(text, shape)) << line;
    ended += text.ends_with("<>") ? 1 : 0;
    begun += text.starts_with("pipe_mgr") ? 1 : 0;
  }
  EXPECT_EQ(ended, threads * calls_each);
  EXPECT_EQ(begun, threads * calls_each);
  call_from_all([] {
    for (int i = 0; i < 50; ++i) {
      tarvex_trace_to_function([](const char *, std::size_t, void *) {}, nullptr,
                               i % 2 == 0 ? 0 : TARVEX_TRACE_AS_JSON);
      std::this_thread::yield();
      tarvex_trace_stop();
    }
  });
}

constexpr std::string_view writes[] = {
    "add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5",
    "add ipv4Host vrfId=1 dip=10.0.0.2 setNextHop nextHop=6",
    "modify ipv4Host vrfId=1 dip=10.0.0.1 setNextHop2 nextHop=7",
    "modify ipv4Host handle=2 onMiss",
    "add ipv4Host vrfId=1 dip=10.0.0.3 onMiss ttl=700",
    "delete ipv4Host handle=2",
    "add ipv6ShortMaskLpm vrfId=1 dip=2001:c00::/22 setEcmp ecmpGroup=1",
    "add ipv4FinalResolve fibPartitionIndex=7 dip=10.1.0.0/16 setNextHop nextHop=3 --force",
    "add l2SmacCheck smac=00:1c:73:00:00:00/ff:ff:ff:00:00:00 priority=10 setIllegalSmac",
    "add l2LookupMiss priority=1 l2LookupBcastHit cir=10 cburst=20 pir=30 pburst=40",
    "meter stormControlMeter handle=1 cir=1 cburst=2 pir=3 pburst=4",
    "set-default ipv4Host onMiss",
    "set-default ipv6Host onMiss",
    "reset-default ipv6Host",
    "member ecmpMemberActionProfile add setEcmpNextHop nextHop=7",
    "member ecmpMemberActionProfile add setEcmpNextHop nextHop=8",
    "member ecmpMemberActionProfile modify 2 setEcmpNextHop nextHop=9",
    "group ecmpMemberActionProfile create 4",
    "group ecmpMemberActionProfile add 1 1",
    "group ecmpMemberActionProfile add 1 2",
    "group ecmpMemberActionProfile disable 1 2",
    "group ecmpMemberActionProfile fallback 2",
    "group ecmpMemberActionProfile create 2",
    "group ecmpMemberActionProfile delete 2",
    "entry ecmpGroup add ecmpGroup=5 group=1",
    "entry ecmpGroup add ecmpGroup=6 member=1",
    "entry ecmpGroup modify ecmpGroup=6 member=2",
    "member lagPortActionProfile add setPhysicalPort",
    "entry lagGroup add priority=4 member=1",
    "counter pdpClassCount 3 packets=7 bytes=18446744073709551615",
    "counter pdpClassCount 300000 packets=1 bytes=2",  // beyond the cells that are looked at
    "add ingL2DomainCount decapType=1 ingL3Aintf=9 onMiss",
    "counter ingL2DomainCounters handle=1 packets=2 bytes=3",
    "meter pdpMeter 1 cir=1 cburst=2 pir=3 pburst=4",
    "wred wredBlock 2 time=0.1 min=1 max=2 probability=0.3",
    "register ingVlanCheckData all 1",
    "register ingVlanCheckData 0-2 reset",
    "register egrStpCheckData 3 1",
    "hash hashOuterIpv4Hdr seed 0xfeedface12345678",
    "hash hashOuterIpv4Hdr fields 0 2",
    "value-set add value=0x8100 mask=0xff00 scope=1",
    "value-set modify 1 value=0x88a8",
    "digests timeout 100",
    "idle ipv6Host enable mode=notify",
    "idle ipv6Host disable",
    "idle ipv4Host enable mode=notify interval=10 max-ttl=9000",
    "idle ipv4Host ttl vrfId=1 dip=10.0.0.1 ttl=900",
    "snapshot arm egress vlanHdr_0__vlanId=0x123",
};

TEST_F(trace_test, a_replay_makes_an_equal_switch)
{
  lines_of("trace " + file_ + ".json -j");
  for (const std::string_view line : writes) EXPECT_EQ(run(line).code, exit_code::ok) << line << run(line).errors;
  EXPECT_EQ(run("delete ipv4Host handle=99").code, exit_code::refused);  // was refused, and is left out
  lines_of("trace off");
  EXPECT_EQ(std::filesystem::status(file_ + ".json").permissions(), std::filesystem::perms(0600));
  const std::string before = everything();
  const std::string saved = all_saved();
  const std::string replay = "trace replay " + file_ + ".json";

  start_anew();
  const std::string empty = everything();
  EXPECT_NE(difference(before, empty), "");
  const std::string checked = lines_of(replay + " --dry-run");
  EXPECT_EQ(difference(everything(), empty), "");
  caught_output out;  // what is remembered is of the device that was written, not of the session's own
  EXPECT_EQ(session({1, 7, 0xffff}, shell.shared_memory()).run(replay, out), exit_code::ok) << out.errors;
  EXPECT_EQ(difference(everything(), before), "");
  EXPECT_EQ(difference(all_saved(), saved), "");
  EXPECT_GE(std::stoul(checked), std::size(writes));
  std::uint32_t timeout = 0;
  standin_learning_timeout(0, &timeout);
  EXPECT_EQ(timeout, 100u);
  EXPECT_EQ(run(replay).code, exit_code::differences);  // everything is there already

  // Where handles are taken already, what the trace means goes to the new ones.
  start_anew();
  lines_of("member ecmpMemberActionProfile add setEcmpNextHop nextHop=1");
  lines_of("group ecmpMemberActionProfile create 8");
  lines_of("add ipv4Host vrfId=9 dip=10.0.0.9 onMiss");
  lines_of(replay);
  EXPECT_EQ(lines_of("members ecmpMemberActionProfile | exclude ^1"),
            "2           setEcmpNextHop  nextHop=7\n3           setEcmpNextHop  nextHop=9\n");
  EXPECT_EQ(lines_of("groups ecmpMemberActionProfile | include ^2"), "2           2=active 3=inactive\n");
  EXPECT_NE(lines_of("show ecmpGroup ecmpGroup=5 -j").find("\"group\":2"), std::string::npos);
  EXPECT_NE(lines_of("show ecmpGroup ecmpGroup=6 -j").find("\"member\":3"), std::string::npos);
  EXPECT_EQ(run("show ipv4Host vrfId=1 dip=10.0.0.2").code, exit_code::refused);
  std::filesystem::remove(file_ + ".json");
}

TEST_F(trace_test, a_line_that_is_none_is_named)
{
  static constexpr told lines[] = {
      {"[]", "is no call"},
      {"12:00:01.1 [1] pipe_mgr_mat_ent_add(", "is no call"},
      {R"({"schema_version":2})", "written with -j"},
      {R"({"schema_version":1,"call":"system","depth":0})", "no function of the driver"},
      {R"({"schema_version":1,"call":"bf_snapshot_delete","depth":0,"status":0,"arguments":{}})", "is missing"},
      {R"({"schema_version":1,"call":"bf_snapshot_delete","depth":0,"status":0,"arguments":{"hdl":4294967296}})",
       "too wide"},
      {R"({"schema_version":1,"call":"p4_pd_ms_del_grp","depth":0,"status":0,"arguments":{"sess_hdl":1,"state":"x",)"
       R"("dev_id":0,"grp_hdl":1}})",
       "state of 'x'"},
      {R"({"schema_version":1,"call":"pipe_stful_ent_set","depth":0,"status":0,"arguments":{"sess_hdl":1,"dev_tgt":0,)"
       R"("reg_hdl":1,"index":0,"spec":"0x00000000000000","flags":0}})",
       "no hexadecimal digit"},
  };
  for (const told &each : lines) {
    std::ofstream(file_) << each.line << '\n';
    const answer got = run("trace replay " + file_);
    EXPECT_EQ(got.code, exit_code::file) << each.line;
    EXPECT_NE(got.errors.find(file_ + ":1: "), std::string::npos) << got.errors;
    EXPECT_NE(got.errors.find(each.calls), std::string::npos) << each.line << got.errors;
  }
}

struct spoilt {
  std::string_view argument;
  std::string_view patch;  // as a JSON patch has it, without "op"
};

// What a recorded call lacks is not made up: nothing of the line goes to the driver.
TEST_F(trace_test, a_spoilt_argument_is_named_and_its_call_not_made)
{
  static constexpr spoilt all[] = {
      {"match_spec", R"({"path":"/arguments/match_spec/value","value":"0a"})"},
      {"match_spec", R"({"path":"/arguments/match_spec/value","value":"00010a0000010"})"},
      {"match_spec", R"({"path":"/arguments/match_spec/value","value":"00010a00000100"})"},
      {"match_spec", R"({"path":"/arguments/match_spec/value","value":"00010a00000g"})"},
      {"match_spec", R"({"path":"/arguments/match_spec/mask","value":""})"},
      {"match_spec", R"({"path":"/arguments/match_spec","value":"null"})"},
      {"match_spec", R"({"path":"/arguments/match_spec","value":{"partition_index":0,"key_bits":8,"key_bytes":1,)"
                     R"("priority":0,"value":"0a","mask":"ff"}})"},
      {"match_spec", R"({"path":"/arguments/match_spec","value":{"partition_index":0,"key_bits":48,"key_bytes":6,)"
                     R"("priority":0}})"},
      {"action_spec", R"({"path":"/arguments/action_spec/data","value":"05"})"},
      {"action_spec", R"({"path":"/arguments/action_spec/resources","value":[{"res_hdl":1,"index":0,"tag":0,)"
                      R"("value":"00"}]})"},
      {"ttl", R"({"path":"/arguments/ttl","value":-1})"},
      {"ttl", R"({"path":"/arguments/ttl","value":1.5})"},
      {"ttl", R"({"path":"/arguments/ttl","value":4294967296})"},
      {"tbl_hdl", R"({"path":"/arguments/tbl_hdl","value":"ipv4Host"})"},
      {"dev_tgt", R"({"path":"/arguments/dev_tgt","value":null})"},
      {"entry_hdl", R"({"path":"/results","value":{}})"},
      {"4294967296", R"({"path":"/status","value":4294967296})"},
  };
  lines_of("trace " + file_ + " -j");
  lines_of("add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5");
  lines_of("trace off");
  std::ifstream in(file_);
  const nlohmann::json call = nlohmann::json::parse(in);
  lines_of("delete ipv4Host handle=1");
  const std::uint64_t calls = tarvex_trace_calls();
  lines_of("trace /dev/null");
  for (const spoilt &each : all) {
    nlohmann::json patch = nlohmann::json::parse(each.patch);
    patch["op"] = "replace";
    std::ofstream(file_) << call.patch(nlohmann::json::array({patch})) << '\n';
    const answer got = run("trace replay " + file_);
    EXPECT_EQ(got.code, exit_code::file) << each.patch;
    EXPECT_NE(got.errors.find(file_ + ":1: "), std::string::npos) << got.errors;
    EXPECT_NE(got.errors.find(each.argument), std::string::npos) << each.patch << got.errors;
  }
  EXPECT_EQ(tarvex_trace_calls(), calls);
  std::ofstream(file_) << call << '\n';
  lines_of("trace replay " + file_);
  EXPECT_EQ(tarvex_trace_calls(), calls + 1);
}

}  // namespace
}  // namespace tarvex::shell
