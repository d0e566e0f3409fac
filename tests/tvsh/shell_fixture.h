// A session on a fresh device of the stand-in switch, its output caught.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "pd_calls.h"
#include "session.h"
#include "tarvex_standin/standin.h"

namespace tarvex::shell {

class caught_output : public output {
 public:
  void heading(std::string_view text) override { add(headings, text); }
  void line(std::string_view text) override { add(lines, text); }
  void note(std::string_view text) override { add(notes, text); }
  void error(std::string_view text) override { add(errors, text); }
  void progress(std::string_view, std::uint64_t, std::uint64_t) override {}

  std::string headings, lines, notes, errors;

 private:
  static void add(std::string &all, std::string_view text) { (all += text) += '\n'; }
};

struct answer {
  exit_code code;
  std::string lines, headings, notes, errors;
};

class shell_test : public ::testing::Test {
 protected:
  shell_test()
  {
    standin_device_add(0);
    calls::pd::init();
  }
  ~shell_test() override
  {
    calls::pd::cleanup();
    standin_reset();
  }

  answer run(std::string_view line)
  {
    caught_output out;
    shell.clear_interrupt();
    const exit_code code = shell.run(line, out);
    return {code, out.lines, out.headings, out.notes, out.errors};
  }
  /// The lines of a command that must go well.
  std::string lines_of(std::string_view line)
  {
    const answer got = run(line);
    EXPECT_EQ(got.code, exit_code::ok) << line << "\n" << got.errors;
    return got.lines;
  }
  /// The number at the end of the command's line, as of "entry 5".
  std::uint32_t handle_of_new(std::string_view line)
  {
    const std::string text = lines_of(line);
    return static_cast<std::uint32_t>(std::stoul("0" + text.substr(text.find_last_of(' ') + 1)));
  }

  session shell;
};

}  // namespace tarvex::shell
