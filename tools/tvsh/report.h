// What a reading command shows: a list of rows, streamed as lines of columns or as JSON. The widths of the columns are
// known before the first row, so that no row waits for another.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "command_line.h"
#include "json_output.h"
#include "output.h"

namespace tarvex::shell {

struct column {
  std::string name;
  std::size_t width = 0;  // of its longest text; the heading's own length counts too
  std::string unit = {};  // of its numbers, for the heading

  std::string heading() const { return unit.empty() ? name : name + " (" + unit + ')'; }
};

class report {
 public:
  using attributes = std::vector<std::pair<std::string_view, std::string_view>>;

  /// `list` names the rows in JSON, `head` what they are of.
  report(output &out, const options &chosen, std::string_view list, std::vector<column> columns,
         const attributes &head = {});

  /// The cells of a row, from the left. `is_number`: no quotes in JSON.
  report &cell(std::string_view text, bool is_number = false);
  report &number(std::uint64_t value);
  report &hexadecimal(std::uint64_t value);
  /// A table's or resource's handle: hexadecimal as text, while JSON has numbers for handles of every kind.
  report &handle(std::uint32_t value);
  /// A counter of 64 bits: text in JSON, as many readers of JSON keep only 53 bits of a number.
  report &counter(std::uint64_t value);
  /// "yes" or "no" as text.
  report &boolean(bool value);
  /// A cell whose JSON is another than its text.
  report &cell_as(std::string_view text, std::string_view json);
  /// A cell without content; JSON leaves it out.
  report &nothing();
  /// A cell of name=value pairs, an object in JSON.
  report &begin_pairs();
  report &pair(std::string_view name, std::string_view value, bool is_number = false);
  report &end_pairs();
  void end_row();

  /// After the last row. `tail`: a member of the JSON document that is known only now.
  struct flag {
    std::string_view name;
    bool value;
  };
  void finish(const std::optional<flag> &tail = {});

 private:
  void begin_cell();
  void member(std::string_view name, std::string_view value, bool is_number);

  output &out_;
  bool json_;
  std::vector<column> columns_;
  std::string line_;
  std::size_t at_ = 0;  // column of the next cell
  std::size_t cell_start_ = 0;
  bool first_row_ = true;
  bool first_member_ = true;
};

}  // namespace tarvex::shell
