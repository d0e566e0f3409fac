// Print text: its bytes, how it is cut into writes, and what becomes of writes that fail or are cut short.
//
// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <thread>

#include "capture.h"
#include "told_entry.h"

namespace tarvex::test {

namespace {

/// Each line as the pieces in which it must be written.
std::vector<std::string> pieces_of(const std::string &text)
{
  constexpr std::size_t most = 4096;
  std::vector<std::string> pieces;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at) + 1;
    const std::size_t size = std::min(end - at, most);
    pieces.push_back(text.substr(at, size));
    at += size;
  }
  return pieces;
}

std::size_t last_line(const std::string &text)
{
  const std::size_t end = text.size() > 1 ? text.rfind('\n', text.size() - 2) : std::string::npos;
  return end == std::string::npos ? text.size() : text.size() - end - 1;
}

const calls::table_info &wide = widest_key();
const std::string print_wide = std::string(wide.name) + "_match_spec_print";

void expect_print(const std::string &function, std::int32_t indent, const record &from, const std::string &text)
{
  std::int32_t result = 0;
  const auto writes = captured([&](int fd) { result = invoke<std::int32_t>(function, fd, indent, from.data()); });
  ASSERT_EQ(writes, pieces_of(text)) << function << ", indent " << indent;
  ASSERT_EQ(result, static_cast<std::int32_t>(last_line(text))) << function << ", indent " << indent;
}

TEST(print_text, keys_and_actions_byte_for_byte_one_write_a_line)
{
  for (const auto &table : calls::tables) {
    if (!keyed(table)) continue;
    for (const std::int32_t indent : {0, 1, 4, -3}) {
      const record key = random_record(table.record_size);
      expect_print(std::string(table.name) + "_match_spec_print", indent, key, key_print(table, indent, key));
    }
  }
  for (const auto &action : calls::actions) {
    if (action.params.empty()) continue;
    for (const record &from : {random_record(action.record_size), record(action.record_size, 0xff)})
      expect_print(std::string(action.name) + "_print", 2, from, action_print(action, 2, from));
  }
}

TEST(print_text, lines_at_and_beyond_the_longest_write)
{
  const record key = random_record(wide.record_size);
  // Heading lines of 4095, 4096 and 4097 characters, and what takes several writes.
  const auto heading = static_cast<std::int32_t>(key_print(wide, 0, key).find('\n') + 1);
  for (const std::int32_t indent : {4095 - heading, 4096 - heading, 4097 - heading, 5000, -5000})
    expect_print(print_wide, indent, key, key_print(wide, indent, key));
  const std::string far = key_print(wide, 0, key);
  std::string text;
  for (std::size_t at = 0, line = 0; at < far.size(); ++line) {
    const std::size_t end = far.find('\n', at) + 1;
    // A field's line at indent 0 has the one column that a character always takes.
    text += std::string(line == 0 ? 20000 : 19999, ' ') + far.substr(at, end - at);
    at = end;
  }
  expect_print(print_wide, 20000, key, text);
}

TEST(print_text, lines_of_a_gigabyte)
{
  const auto &table = narrowest_key();
  const record key = random_record(table.record_size);
  constexpr std::int32_t indent = 1 << 30;
  const int nowhere = open("/dev/null", O_WRONLY);
  // At indent 0 a field's line begins with a blank.
  EXPECT_EQ(invoke<std::int32_t>(std::string(table.name) + "_match_spec_print", nowhere, indent, key.data()),
            indent - 1 + static_cast<std::int32_t>(last_line(key_print(table, 0, key))));
  close(nowhere);
}

std::atomic<int> interrupts;

TEST(print_text, goes_on_after_short_and_interrupted_writes)
{
  struct sigaction old, action = {};
  action.sa_handler = [](int) { ++interrupts; };
  sigaction(SIGUSR1, &action, &old);
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  const int room = 1;  // the system's least
  setsockopt(ends[1], SOL_SOCKET, SO_SNDBUF, &room, sizeof room);

  const record key = random_record(wide.record_size);
  std::atomic<bool> done = false;
  std::thread printer([&] {
    invoke<std::int32_t>(print_wide, ends[1], 4500, key.data());
    close(ends[1]);
    done = true;
    // Stays until it is joined, so that a late signal still finds it.
  });
  std::thread interrupter([&] {
    for (; !done; std::this_thread::sleep_for(std::chrono::microseconds(20)))
      pthread_kill(printer.native_handle(), SIGUSR1);
  });
  std::string text;
  char some[700];
  for (ssize_t count; (count = read(ends[0], some, sizeof some)) > 0;
       text.append(some, static_cast<std::size_t>(count)))
    std::this_thread::sleep_for(std::chrono::microseconds(30));
  interrupter.join();
  printer.join();
  close(ends[0]);
  sigaction(SIGUSR1, &old, nullptr);
  EXPECT_GT(interrupts, 10);
  EXPECT_TRUE(text == key_print(wide, 4500, key)) << text.size() << " characters";
}

TEST(print_text, a_failed_write_shows_in_the_result_and_does_not_stop_the_lines)
{
  const record key = random_record(wide.record_size);
  EXPECT_LT(invoke<std::int32_t>(print_wide, -1, 0, key.data()), 0);
  const auto &told = *std::ranges::find_if(calls::actions, [](const auto &any) { return !any.params.empty(); });
  const record parameters(told.record_size);
  EXPECT_LT(invoke<std::int32_t>(std::string(told.name) + "_print", -1, 0, parameters.data()), 0);

  // Each write to a pipe that nobody reads raises a signal.
  static std::atomic<int> failures;
  struct sigaction old, action = {};
  action.sa_handler = [](int) { ++failures; };
  sigaction(SIGPIPE, &action, &old);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  EXPECT_LT(invoke<std::int32_t>(print_wide, ends[1], 0, key.data()), 0);
  close(ends[1]);
  sigaction(SIGPIPE, &old, nullptr);
  EXPECT_EQ(failures, static_cast<int>(rows_of(wide).size()) + 1);
}

}  // namespace

}  // namespace tarvex::test
