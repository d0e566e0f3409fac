// A command line taken apart: words, options and filters.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filters.h"

namespace tarvex::shell {

/// Options that every command takes.
struct options {
  bool json = false;      // -j, --json
  bool raw = false;       // --raw: numbers in hexadecimal
  bool hardware = false;  // --hw: read the hardware, not the driver's copy
  bool dry_run = false;   // --dry-run: check, and write nothing
  bool force = false;     // --force: write also what the switch takes for something else
};

/// As they are typed.
std::span<const std::string_view> option_names();

struct command_line {
  std::vector<std::string> words;
  options chosen;
  std::vector<filter> filters;
};

/// A word as it was typed: quotes keep blanks and bars in it.
struct typed_word {
  std::string text;
  bool bar = false;  // an unquoted |
};

/// Throws usage_error for a quote without its end. `#` at the start of a word begins a comment.
std::vector<typed_word> split_words(std::string_view text);

/// Whether the line asks for JSON, which is known of a line with a mistake, too.
bool asks_for_json(std::string_view text, const options &defaults);

/// `defaults` are the options of the session. Throws usage_error.
command_line parse_command_line(std::string_view text, const options &defaults);

}  // namespace tarvex::shell
