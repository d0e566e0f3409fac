// What a system keeps beside the program: its manual page and the completions of the shells that it is started from.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvex::shell {

/// An option of the program.
struct program_option {
  std::vector<std::string> names;    // "-c", "--command"
  std::string argument;              // what it takes, empty for nothing
  std::vector<std::string> choices;  // the words that it takes, where they are few
  std::string description;
};

/// Where the page leaves the date and version of the release to who installs it: names between at-signs.
std::string manual_page(const std::vector<program_option> &options);
std::string bash_completion(const std::vector<program_option> &options);
std::string zsh_completion(const std::vector<program_option> &options);

}  // namespace tarvex::shell
