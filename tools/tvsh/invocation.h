// A command as it runs: its words, its options, and what it works on.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "change_queue.h"
#include "command_line.h"
#include "function_call.h"
#include "output.h"

namespace tarvex::shell {

class session;

/// A member of the JSON that tells what a command did.
class result_member {
 public:
  template <std::integral Value>
  result_member(std::string_view name, Value value) : name_(name)
  {
    if constexpr (std::same_as<Value, bool>) {
      json_ = value ? "true" : "false";
    } else {
      json_ = std::to_string(value);
    }
  }
  result_member(std::string_view name, std::string_view text);
  result_member(std::string_view name, const char *text) : result_member(name, std::string_view(text)) {}
  result_member(std::string_view name, const std::string &text) : result_member(name, std::string_view(text)) {}

  result_member(std::string_view name, std::span<const std::string_view> texts);

  std::string_view name() const { return name_; }
  std::string_view json() const { return json_; }

 private:
  std::string_view name_;
  std::string json_;
};

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

  /// For a command that changes or saves the state as a whole: `what` it is, for those who wait meanwhile. Sessions
  /// take turns at a device, so that no such command meets the half-done work of another.
  change_queue::turn take_turn(const std::string &what) const;

  /// Whether --dry-run keeps a write from being made; says so.
  bool only_checked(const std::string &what) const;
  /// Makes a call that writes, or with --dry-run only says so. False where it was not made.
  bool carry_out(function_call &call, const std::string &what) const;

  /// Shows what was done: a line of text, or with -j a document with these members. Commands that write and have
  /// nothing to show need not call it: the session answers for them.
  void result(std::string_view text, std::initializer_list<result_member> members) const;
  /// Shows the handle of what was made: "entry 5".
  void made(std::string_view kind, std::uint32_t handle) const;
};

}  // namespace tarvex::shell
