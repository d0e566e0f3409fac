// The filters behind a command: `| include RE`, `| exclude RE`, `| count`.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output.h"
#include "text_pattern.h"

namespace tarvex::shell {

enum class filter_kind : std::uint8_t { include, exclude, count };

struct filter {
  filter_kind kind;
  text_pattern pattern;
};

/// Throws usage_error where the words are no filter.
filter make_filter(const std::vector<std::string> &words);

/// Lets lines through to the next output. Names of columns pass, but not through a count.
class filtered_output : public output {
 public:
  filtered_output(const filter &what, output &next) : filter_(what), next_(next) {}

  void heading(std::string_view text) override;
  void line(std::string_view text) override;
  void note(std::string_view text) override { next_.note(text); }
  void error(std::string_view text) override { next_.error(text); }
  void progress(std::string_view label, std::uint64_t done, std::uint64_t total) override
  {
    next_.progress(label, done, total);
  }
  void flush() override { next_.flush(); }
  /// The command is done.
  void finish();

 private:
  const filter &filter_;
  output &next_;
  std::uint64_t lines_ = 0;
};

}  // namespace tarvex::shell
