// Every function of the library but those of its life (start and end are not for several threads, and the log of a
// device is in threads.profiles) from eight threads at once, each over a driver of its own: what the drivers were
// handed, what came back and what was printed is byte for byte what one thread alone has.
//
// SPDX-License-Identifier: Apache-2.0
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

#include "library_call.h"
#include "pd_calls.h"

namespace {

using namespace tarvex;

constexpr unsigned thread_count = 8;
constexpr std::size_t bytes_a_call = 600;

// What the thread prints, until the next call.
class printed_text {
 public:
  printed_text() : descriptor_(memfd_create("printed", MFD_CLOEXEC)) { fuzz::print_descriptor() = descriptor_; }
  printed_text(const printed_text &) = delete;
  printed_text &operator=(const printed_text &) = delete;
  ~printed_text() { close(descriptor_); }

  fuzz::bytes taken()
  {
    fuzz::bytes text(static_cast<std::size_t>(lseek(descriptor_, 0, SEEK_CUR)));
    if (text.empty()) return text;
    if (pread(descriptor_, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) std::abort();
    lseek(descriptor_, 0, SEEK_SET);
    return text;
  }

 private:
  int descriptor_;
};

// A thread's calls of all functions: a fingerprint of each.
std::vector<std::uint64_t> call_all(unsigned thread)
{
  printed_text printed;
  std::vector<std::uint64_t> fingerprints;
  std::mt19937_64 random(thread);
  fuzz::bytes content(bytes_a_call);
  for (const calls::exported_function &function : calls::functions) {
    if (function.family == calls::family_id::lifecycle) continue;
    std::generate(content.begin(), content.end(), [&] { return static_cast<std::uint8_t>(random()); });
    fuzz::byte_source input(content);
    fuzz::driver().seen = {};
    const auto answers = input.take(bytes_a_call / 2);
    fuzz::library_call(function, input).make(answers);
    fuzz::driver().seen.add(printed.taken());
    fingerprints.push_back(fuzz::driver().seen.value());
  }
  return fingerprints;
}

}  // namespace

int main(int argc, char **argv)
{
  const std::chrono::duration<double> time(argc > 1 ? std::atof(argv[1]) : 2);
  if (calls::pd::init() != BF_SUCCESS) return 1;
  std::vector<std::vector<std::uint64_t>> alone;
  for (unsigned i = 0; i < thread_count; ++i) alone.push_back(call_all(i));

  std::atomic<unsigned> rounds = 0, wrong = 0;
  const auto end = std::chrono::steady_clock::now() + time;
  const auto work = [&](unsigned number) {
    do {
      if (call_all(number) != alone[number]) ++wrong;
      ++rounds;
    } while (std::chrono::steady_clock::now() < end);
  };
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < thread_count; ++i) threads.emplace_back(work, i);
  for (std::thread &each : threads) each.join();
  std::printf("%u rounds of %zu functions from %u threads, %u with other records than one thread alone\n",
              rounds.load(), alone[0].size(), thread_count, wrong.load());
  return wrong == 0 ? 0 : 1;
}
