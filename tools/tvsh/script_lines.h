// The commands of a script.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvex::shell {

struct script_line {
  std::size_t number = 0;  // from 1 on, empty lines and comments included
  std::string_view text;
};

/// The lines of a text that hold a command; empty lines and comments do not.
class script_lines {
 public:
  explicit script_lines(std::string_view text) : rest_(text) {}

  std::optional<script_line> next();

 private:
  std::string_view rest_;
  std::size_t number_ = 0;
};

/// How far a script came: "FILE:3: stopped at: dump x; 2 of 5 commands done, 3 not". `why`: "stopped
/// at"; `rest`: the lines after that one.
std::string stop_text(std::string_view name, const script_line &at, std::string_view why, std::uint64_t done,
                      script_lines rest);

}  // namespace tarvex::shell
