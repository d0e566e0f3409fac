// The agent in a program: what starting and stopping answer, and what the program does not notice.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "remote_session.h"
#include "shell_fixture.h"
#include "tarvex_agent/tv_agent.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::shell {
namespace {

class agent_test : public shell_test {
 protected:
  agent_test() { path = std::filesystem::temp_directory_path() / ("tv_agent_" + std::to_string(getpid())); }
  ~agent_test() override { tv_agent_stop(); }

  answer ask(std::string_view line)
  {
    remote_session client(path, {{}, {}, "/"});
    caught_output out;
    const exit_code code = client.run(line, out);
    return {code, out.lines, out.headings, out.notes, out.errors};
  }
  bool socket_there() const { return std::filesystem::is_socket(path); }

  std::string path;
};

TEST_F(agent_test, starts_and_stops_again_and_again)
{
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(tv_agent_start(path.c_str()), TV_AGENT_OK) << tv_agent_error();
    EXPECT_EQ(tv_agent_running(), 1);
    EXPECT_STREQ(tv_agent_error(), "");
    EXPECT_EQ(ask("count ipv4Host").lines.substr(0, 8), "ipv4Host");
    EXPECT_EQ(tv_agent_start("/tmp/another"), TV_AGENT_RUNNING);
    EXPECT_NE(std::string(tv_agent_error()).find(path), std::string::npos);
    ASSERT_EQ(tv_agent_stop(), TV_AGENT_OK);
    EXPECT_FALSE(socket_there());
    EXPECT_EQ(tv_agent_running(), 0);
  }
  EXPECT_EQ(tv_agent_stop(), TV_AGENT_NOT_RUNNING);
  EXPECT_THROW(ask("count"), file_error);
}

TEST_F(agent_test, what_cannot_be_is_told)
{
  tv_agent_settings_t settings;
  tv_agent_default_settings(&settings);
  EXPECT_EQ(tv_agent_start_with(&settings), TV_AGENT_BAD_ARGUMENT);
  EXPECT_EQ(tv_agent_start_with(nullptr), TV_AGENT_BAD_ARGUMENT);
  EXPECT_EQ(tv_agent_start(""), TV_AGENT_BAD_ARGUMENT);
  settings.path = path.c_str();
  settings.dev_id = 256;
  EXPECT_EQ(tv_agent_start_with(&settings), TV_AGENT_BAD_ARGUMENT);
  EXPECT_EQ(tv_agent_start("/nowhere/socket"), TV_AGENT_SOCKET);
  EXPECT_NE(std::string(tv_agent_error()).find("/nowhere"), std::string::npos);
  EXPECT_EQ(tv_agent_start(std::string(200, 'x').c_str()), TV_AGENT_SOCKET);
  settings.dev_id = 3;
  ASSERT_EQ(tv_agent_start_with(&settings), TV_AGENT_OK);
  EXPECT_EQ(ask("count ipv4Host").code, exit_code::refused) << "device 3 is not there";
}

void on_signal(int) {}

TEST_F(agent_test, leaves_signals_and_umask_alone)
{
  const auto handlers = [] {
    std::vector<void (*)(int)> all;
    for (int each = 1; each < 32; ++each) {
      struct sigaction now {};
      sigaction(each, nullptr, &now);
      all.push_back(now.sa_handler);
    }
    return all;
  };
  signal(SIGUSR1, on_signal);
  const mode_t mask = umask(0);
  const auto before = handlers();
  ASSERT_EQ(tv_agent_start(path.c_str()), TV_AGENT_OK);
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
  EXPECT_EQ(handlers(), before);
  EXPECT_EQ(umask(mask), 0U);
  sigset_t blocked;
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  EXPECT_EQ(sigismember(&blocked, SIGTERM), 0);
  // A client that leaves while he is written to raises no SIGPIPE, which would end this program.
  for (int i = 0; i < 20; ++i) {
    struct leaver : caught_output {
      void heading(std::string_view) override { throw connection_ended(); }
      struct connection_ended {};
    } out;
    remote_session client(path, {{}, {}, "/"});
    EXPECT_THROW(client.run("tables", out), leaver::connection_ended);
  }
  EXPECT_EQ(ask("tables | count").lines, "120\n");
}

TEST_F(agent_test, a_child_of_the_program_has_no_agent)
{
  ASSERT_EQ(tv_agent_start(path.c_str()), TV_AGENT_OK);
  const pid_t child = fork();
  if (child == 0) {
    const bool well = tv_agent_running() == 0 && tv_agent_stop() == TV_AGENT_NOT_RUNNING;
    _exit(well ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(socket_there());
  EXPECT_EQ(ask("count ipv4Host").code, exit_code::ok);
}

/// The program writes while clients read and write, and the agent stops while they would go on.
TEST_F(agent_test, the_program_goes_on_meanwhile)
{
  ASSERT_EQ(tv_agent_start(path.c_str()), TV_AGENT_OK);
  std::atomic<bool> done = false;
  std::atomic<int> failures = 0;
  std::atomic<int> rounds = 0;
  std::vector<std::thread> clients;
  for (unsigned number = 0; number < 4; ++number) {
    clients.emplace_back([&, number] {
      const std::string host = "vrfId=9 dip=10.0.0." + std::to_string(number);
      try {
        for (;;) {  // until the agent is stopped
          if (ask("add ipv4Host " + host + " onMiss").code != exit_code::ok) ++failures;
          if (ask("delete ipv4Host " + host).code != exit_code::ok) ++failures;
          ask("dump ipv6Host");
          ++rounds;
        }
      } catch (const shell_error &) {
        // The connection or the socket is gone.
      }
    });
  }
  const pd_dev_tgt_t everywhere = pd_dev_tgt(0, PD_ALL_PIPES);
  for (std::uint32_t i = 0; !done; ++i) {
    const p4_pd_tarvex_switch_ipv4Host_match_spec_t key = {.l3Info_vrfId = 1, .ingIpv4_dip = i};
    pd_entry_hdl_t entry = 0;
    if (p4_pd_tarvex_switch_ipv4Host_table_add_with_onMiss(1, everywhere, &key, 0, &entry) != 0) ++failures;
    if (p4_pd_tarvex_switch_ipv4Host_table_delete(1, 0, entry) != 0) ++failures;
    done = rounds > 100;
  }
  EXPECT_EQ(tv_agent_stop(), TV_AGENT_OK);
  for (std::thread &each : clients) each.join();
  EXPECT_EQ(failures, 0);
}

}  // namespace
}  // namespace tarvex::shell
