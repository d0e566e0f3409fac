// A command as it runs: its words, its options, and what it works on.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "command_line.h"
#include "function_call.h"
#include "output.h"

namespace tarvex::shell {

class session;

struct invocation {
  session &shell;
  output &out;
  const options &chosen;
  std::span<const std::string> words;  // behind the command's name

  const target &where() const;

  /// The word at a place; throws argument_error with the name that the usage has for it.
  const std::string &word(std::size_t at, std::string_view name) const;
  bool has(std::size_t at) const { return at < words.size(); }
  /// The file that a word names.
  std::string path(const std::string &name) const;
  /// Throws argument_error where there are more words.
  void expect_at_most(std::size_t count) const;

  /// Whether --dry-run keeps a write from being made; says so.
  bool only_checked(const std::string &what) const;
  /// Makes a call that writes, or with --dry-run only says so. False where it was not made.
  bool carry_out(function_call &call, const std::string &what) const;
};

}  // namespace tarvex::shell
