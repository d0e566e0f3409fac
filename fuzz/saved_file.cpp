// Files that may be saved states: each is refused in words with nothing written, or loaded, and then what is saved and
// loaded again is saved as the same file.
//
// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "require.h"
#include "session.h"
#include "tarvex_pd/lifecycle.h"
#include "tarvex_standin/standin.h"

namespace tarvex::fuzz {

namespace {

class told_output : public shell::output {
 public:
  void heading(std::string_view) override {}
  void line(std::string_view) override { ++lines; }
  void note(std::string_view) override {}
  void error(std::string_view text) override { errors += text; }
  void progress(std::string_view, std::uint64_t, std::uint64_t) override {}

  unsigned lines = 0;
  std::string errors;
};

class file_tester {
 public:
  file_tester() : folder_(std::filesystem::path("/dev/shm") / ("tarvex_fuzz_saved_" + std::to_string(getpid())))
  {
    std::filesystem::create_directories(folder_);
  }
  file_tester(const file_tester &) = delete;
  file_tester &operator=(const file_tester &) = delete;
  ~file_tester() { std::filesystem::remove_all(folder_); }

  void test(std::string_view text)
  {
    standin_reset();
    require(standin_device_add(0) == 0 && p4_pd_tarvex_switch_init() == 0, "the library starts");
    shell::session session;
    session.folder = folder_;
    std::ofstream(folder_ / "given", std::ios::binary) << text;
    told_output out;
    const shell::exit_code code = session.run("load given cells=8", out);
    require((code == shell::exit_code::ok) == out.errors.empty(), "what goes wrong is told, and nothing else");
    if (code == shell::exit_code::ok) {
      run(session, "save first cells=8");
      run(session, "load first replace cells=8");
      run(session, "save second cells=8");
      require(text_of("first") == text_of("second"), "what is saved and loaded is saved as the same file");
      run(session, "diff live given counts cells=8");
    } else if (code == shell::exit_code::file) {
      told_output count;
      session.run("count", count);
      require(count.lines == 0, "of a bad file nothing is written");
    } else {
      require(code == shell::exit_code::refused, "a load is well, or the file is bad, or the driver refuses");
    }
    p4_pd_tarvex_switch_cleanup();
  }

 private:
  void run(shell::session &session, std::string_view line) const
  {
    told_output out;
    require(session.run(line, out) == shell::exit_code::ok, "what was loaded can be saved, loaded and compared");
  }
  std::string text_of(const char *name) const
  {
    std::ifstream in(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  std::filesystem::path folder_;
};

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  static tarvex::fuzz::file_tester tester;
  tester.test({reinterpret_cast<const char *>(data), size});
  return 0;
}
