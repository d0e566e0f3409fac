// Random pairs of states: what apply makes is the wanted state, and nothing is different then.
//
// SPDX-License-Identifier: Apache-2.0
#include <random>
#include <sstream>

#include "state_fixture.h"
#include "state_generator.h"

namespace tarvex::shell {
namespace {

class random_state_test : public state_test {
 protected:
  const state_command run_command = [this](const std::string &line) {
    const answer got = run(line);
    const std::size_t blank = got.lines.find(' ');
    return blank == std::string::npos ? 0 : static_cast<std::uint32_t>(std::stoul("0" + got.lines.substr(blank + 1)));
  };

  /// Of the profile and what refers to it, in a script.
  static std::ptrdiff_t count_of_changes(const std::string &script)
  {
    std::istringstream lines(script);
    std::ptrdiff_t count = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.find("ecmp") != std::string::npos) ++count;
    }
    return count;
  }

  void expect_equal(unsigned seed)
  {
    EXPECT_EQ(run("diff live wanted.json counts cells=8").lines, "") << seed;
    EXPECT_EQ(run("diff wanted.json live counts cells=8").lines, "") << seed;
    EXPECT_EQ(lines_of("apply wanted.json counts cells=8"), "0 changes\n") << seed;
  }
};

TEST_F(random_state_test, what_is_applied_is_reached)
{
  std::ptrdiff_t most_changes = 0;
  std::ptrdiff_t changes = 0;
  for (unsigned seed = 0; seed < 600; ++seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(400);
    for (std::uint8_t &each : bytes) each = static_cast<std::uint8_t>(random() >> 8);
    choice_source from(bytes);
    const auto kind = static_cast<pair_kind>(seed % 3);
    const profile_shape shape = random_shape(from);
    const profile_shape second = second_shape(from, kind, shape);
    start_anew();
    build_random_state(from, run_command, second);
    lines_of("save wanted.json cells=8");
    start_anew();
    build_random_state(from, run_command, shape);
    lines_of("save there.json cells=8");
    const std::string script = run("diff there.json wanted.json counts").lines;
    if (kind != pair_kind::unrelated) {
      most_changes += second.changes;
      const std::ptrdiff_t made = count_of_changes(run("apply wanted.json counts cells=8 --dry-run").lines);
      changes += made;
      EXPECT_TRUE(made == 0 || kind == pair_kind::changed) << seed << "\n" << script;
    }
    const answer applied = run("apply wanted.json counts cells=8");
    EXPECT_EQ(applied.code, exit_code::ok) << seed << applied.errors;
    expect_equal(seed);

    start_anew();  // members and groups get their places in the order of the file
    lines_of("load there.json cells=8");
    caught_output out;
    EXPECT_EQ(shell.run_script(script, "diff", out), exit_code::ok) << seed << out.errors << script;
    expect_equal(seed);
  }
  EXPECT_LE(10 * changes, 11 * most_changes);  // few contents, so that it is often open what was changed
  RecordProperty("changes", std::to_string(changes) + " of " + std::to_string(most_changes));
}

}  // namespace
}  // namespace tarvex::shell
