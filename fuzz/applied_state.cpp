// Pairs of states built out of bytes: apply makes the wanted one, after it nothing is different, and a second apply
// changes nothing. Two states that differ only in the numbers of members and groups are equal.
//
// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <filesystem>
#include <string>

#include "require.h"
#include "session.h"
#include "state_generator.h"
#include "tarvex_pd/lifecycle.h"
#include "tarvex_standin/standin.h"

namespace tarvex::fuzz {

namespace {

class kept_output : public shell::output {
 public:
  void heading(std::string_view) override {}
  void line(std::string_view text) override { (lines += text) += '\n'; }
  void note(std::string_view) override {}
  void error(std::string_view) override {}
  void progress(std::string_view, std::uint64_t, std::uint64_t) override {}

  std::string lines;
};

class pair_tester {
 public:
  pair_tester() : folder_(std::filesystem::path("/dev/shm") / ("tarvex_fuzz_applied_" + std::to_string(getpid())))
  {
    std::filesystem::create_directories(folder_);
  }
  pair_tester(const pair_tester &) = delete;
  pair_tester &operator=(const pair_tester &) = delete;
  ~pair_tester() { std::filesystem::remove_all(folder_); }

  void test(std::span<const std::uint8_t> bytes)
  {
    shell::choice_source from(bytes);
    const auto kind = static_cast<shell::pair_kind>(from.below(3));
    const shell::profile_shape shape = shell::random_shape(from);
    const shell::profile_shape second = shell::second_shape(from, kind, shape);
    build(from, second);
    run("save wanted cells=8");
    build(from, shape);
    const std::string changes = run("apply wanted counts cells=8 --dry-run");
    require(kind != shell::pair_kind::renumbered || changes.find("ActionProfile") == std::string::npos,
            "new numbers make no difference");
    run("apply wanted counts cells=8");
    require(run("diff live wanted counts cells=8").empty(), "what was applied is there");
    require(run("apply wanted counts cells=8 --dry-run").empty(), "a second apply changes nothing");
  }

 private:
  void build(shell::choice_source &from, const shell::profile_shape &shape)
  {
    p4_pd_tarvex_switch_cleanup();
    standin_reset();
    require(standin_device_add(0) == 0 && p4_pd_tarvex_switch_init() == 0, "the library starts");
    session_.forget_device(0);
    session_.folder = folder_;
    const shell::state_command command = [this](const std::string &line) {
      kept_output out;
      session_.run(line, out);
      const std::size_t blank = out.lines.find(' ');
      return blank == std::string::npos ? 0 : static_cast<std::uint32_t>(std::stoul("0" + out.lines.substr(blank + 1)));
    };
    shell::build_random_state(from, command, shape);
  }

  std::string run(std::string_view line)
  {
    kept_output out;
    const shell::exit_code code = session_.run(line, out);
    require(code == shell::exit_code::ok || code == shell::exit_code::differences, "states are saved and applied");
    return out.lines;
  }

  std::filesystem::path folder_;
  shell::session session_;
};

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  static tarvex::fuzz::pair_tester tester;
  tester.test({data, size});
  return 0;
}
