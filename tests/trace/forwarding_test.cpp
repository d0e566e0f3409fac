// Every driver function through the interposer, traced and not, over a driver that keeps what it was called with.
//
// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <set>
#include <utility>

#include "call_row.h"
#include "echo_driver.h"
#include "tarvex_trace/tarvex_trace.h"

namespace tarvex::trace::test {
namespace {

/// Zeroed records, far apart: whatever is read of them is there.
constexpr std::size_t record_room = 4096;
alignas(64) std::array<std::array<char, record_room>, driver::most_arguments> records;

void callback() {}

/// Each argument has a value of its own, in all its bits or, where lengths are believed, a small one.
template <typename T>
T argument(std::size_t place, bool small)
{
  T value{};
  if constexpr (std::is_function_v<std::remove_pointer_t<T>>) {
    value = reinterpret_cast<T>(&callback);
  } else if constexpr (std::is_pointer_v<T>) {
    value = reinterpret_cast<T>(records[place].data());
  } else {
    std::memset(&value, static_cast<int>(small ? 0 : 0x91 + place), sizeof value);
    *reinterpret_cast<char *>(&value) = static_cast<char>(place + 1);
  }
  return value;
}

template <typename Result>
constexpr std::size_t size_of()
{
  if constexpr (std::is_void_v<Result>) {
    return 0;
  } else {
    return sizeof(Result);
  }
}

template <auto Function, typename Result, typename... Arguments>
void expect_forwarded(Result (*function)(Arguments...), std::uint64_t result, bool small)
{
  const std::string name(row_of<Function>.name);
  last_call() = {"", {}, result};
  const auto arguments = [&]<std::size_t... I>(std::index_sequence<I...>)
  {
    return std::tuple<Arguments...>{argument<Arguments>(I, small)...};
  }
  (std::index_sequence_for<Arguments...>{});
  std::uint64_t got = result;
  errno = 77;
  if constexpr (std::is_void_v<Result>) {
    std::apply(function, arguments);
  } else {
    got = (std::uint64_t)std::apply(function, arguments);
  }
  const echo expected{name, std::apply([](const auto &...each) { return bytes_of(each...); }, arguments), result};
  EXPECT_EQ(last_call(), expected) << name;
  EXPECT_EQ(got, sizeof(pd_status_t) == size_of<Result>() ? result & 0xffffffff : result) << name;
  EXPECT_EQ(errno, 77) << name;
}

template <auto... Functions>
void expect_all_forwarded(std::uint64_t result, bool small, function_list<Functions...>)
{
  (expect_forwarded<Functions>(Functions, result, small), ...);
}

std::string library_of(const void *code)
{
  Dl_info found{};
  return dladdr(code, &found) != 0 ? found.dli_fname : "";
}

template <auto... Functions>
void expect_order(function_list<Functions...>)
{
  for (const auto &[name, code] : {std::pair(row_of<Functions>.name, reinterpret_cast<const void *>(Functions))...}) {
    EXPECT_NE(library_of(code).find("libtarvex_trace.so"), std::string::npos) << name;
    EXPECT_NE(library_of(tarvex_trace_next(name.data())).find("echo_driver"), std::string::npos) << name;
  }
}

void count_line(const char *line, std::size_t length, void *cookie)
{
  auto &names = *static_cast<std::multiset<std::string> *>(cookie);
  const std::string_view text(line, length);
  const std::size_t from = text.find("] ") + 2;
  names.emplace(text.substr(from, text.find('(') - from));
}

std::multiset<std::string> all_names()
{
  constexpr auto names = driver::names_of(driver_functions{});
  return {names.begin(), names.end()};
}

TEST(forwarding, the_interposer_stands_ahead_of_the_driver) { expect_order(driver_functions{}); }

TEST(forwarding, arguments_results_and_errno_stay_as_they_are)
{
  expect_all_forwarded(0x8765432112345678, false, driver_functions{});
  expect_all_forwarded(0, false, driver_functions{});
}

TEST(forwarding, a_traced_call_is_the_same_call_and_told_once)
{
  for (const std::uint32_t flags : {0u, std::uint32_t{TARVEX_TRACE_AS_JSON}}) {
    std::multiset<std::string> names;
    ASSERT_EQ(tarvex_trace_to_function(count_line, &names, flags), 0);
    EXPECT_EQ(tarvex_trace_to_function(count_line, &names, flags), EBUSY);
    expect_all_forwarded(0x8765432112345678, true, driver_functions{});
    EXPECT_EQ(tarvex_trace_stop(), 0);
    if (flags == 0) {
      EXPECT_EQ(names, all_names());
    }
    EXPECT_EQ(names.size(), all_names().size());
    ASSERT_EQ(tarvex_trace_to_function(count_line, &names, flags), 0);
    expect_all_forwarded(0, true, driver_functions{});  // what comes out is told too
    EXPECT_EQ(tarvex_trace_stop(), 0);
  }
  EXPECT_EQ(tarvex_trace_runs(), 0);
}

TEST(forwarding, a_file_that_cannot_be_written_is_told)
{
  EXPECT_EQ(tarvex_trace_to_file("/no/such/folder/trace", 0), ENOENT);
  EXPECT_EQ(tarvex_trace_to_file("/", 0), EISDIR);
  const std::string pipe = testing::TempDir() + "trace_pipe_" + std::to_string(getpid());
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(tarvex_trace_to_file(pipe.c_str(), 0), ENXIO);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(tarvex_trace_to_file(pipe.c_str(), 0), ENXIO);
  close(reader);
  unlink(pipe.c_str());
  EXPECT_EQ(tarvex_trace_runs(), 0);
  for (const auto &[device, error] : {std::pair("/dev/null", 0), {"/dev/full", ENOSPC}}) {
    ASSERT_EQ(tarvex_trace_to_file(device, 0), 0);
    std::array<char, 6> name;
    EXPECT_EQ(tarvex_trace_file(name.data(), name.size()), 9u);
    EXPECT_STREQ(name.data(), "/dev/");
    p4_pd_ms_init();
    EXPECT_EQ(tarvex_trace_stop(), error);
  }
  EXPECT_EQ(tarvex_trace_file(nullptr, 0), 0u);
}

}  // namespace
}  // namespace tarvex::trace::test
