// Lines of any text to the shell, over the stand-in switch: each is done or refused in words.
//
// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <atomic>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>

#include "require.h"
#include "session.h"
#include "tarvex_pd/lifecycle.h"
#include "tarvex_standin/standin.h"

namespace tarvex::fuzz {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t most_lines = 24;

/// Interrupts lines that take long, as a person would: tables can be filled with a single line.
class impatient_person {
 public:
  explicit impatient_person(shell::session &at)
      : thread_([this, &at](const std::stop_token &leave) { watch(at, leave); })
  {
  }
  void next_line() { ++lines_; }

 private:
  void watch(shell::session &at, const std::stop_token &leave)
  {
    std::unique_lock lock(mutex_);
    for (unsigned last = 0, same = 0; !leave.stop_requested();) {
      wake_.wait_for(lock, leave, 50ms, [] { return false; });
      same = lines_ == last ? same + 1 : 0;
      last = lines_;
      if (same >= 10) at.interrupt();
    }
  }

  std::atomic<unsigned> lines_ = 0;
  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::jthread thread_;
};

class counted_output : public shell::output {
 public:
  void heading(std::string_view) override {}
  void line(std::string_view text) override
  {
    require(text.find('\n') == text.npos, "a line is one line");
    if (text.find("\"error\":{") != text.npos) ++errors;  // under -j an error is part of the document
  }
  void note(std::string_view) override {}
  void error(std::string_view text) override
  {
    require(!text.empty(), "an error has words");
    ++errors;
  }
  void progress(std::string_view, std::uint64_t, std::uint64_t) override {}

  unsigned errors = 0;
};

// A file of its own, for lines that name one.
const std::filesystem::path &work_folder()
{
  static const struct folder {
    folder() { std::filesystem::create_directories(path); }
    folder(const folder &) = delete;
    folder &operator=(const folder &) = delete;
    ~folder() { std::filesystem::remove_all(path); }
    const std::filesystem::path path = "/dev/shm/tarvex_fuzz_shell_" + std::to_string(getpid());
  } made;
  return made.path;
}

// Whether a word may name a file elsewhere; an address with its prefix length may not.
bool leaves_the_folder(std::string_view line)
{
  for (auto at = line.find('/'); at != line.npos; at = line.find('/', at + 1))
    if (at == 0 || std::isxdigit(static_cast<unsigned char>(line[at - 1])) == 0) return true;
  return line.find("..") != line.npos || line.find('~') != line.npos;
}

void run_lines(std::string_view text)
{
  [[maybe_unused]] static const pd_status_t started = p4_pd_tarvex_switch_init();
  standin_reset();
  require(standin_device_add(0) == 0, "a device is added");
  shell::session session;
  session.folder = work_folder();
  impatient_person person(session);
  for (std::size_t count = 0; count < most_lines && !text.empty(); ++count) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    if (leaves_the_folder(line)) continue;
    counted_output out;
    session.clear_interrupt();
    person.next_line();
    const shell::exit_code code = session.run(line, out);
    require((code == shell::exit_code::ok || code == shell::exit_code::differences) == (out.errors == 0),
            "what goes wrong is reported, and nothing else");
    shell::session::complete(line.substr(0, line.size() / 2));
  }
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  tarvex::fuzz::run_lines({reinterpret_cast<const char *>(data), size});
  return 0;
}
