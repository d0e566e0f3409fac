// What a reading command shows: a list of rows, streamed as lines of columns or as JSON. The widths of the columns are
// known before the first row, so that no row waits for another.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "command_line.h"
#include "output.h"

namespace tarvex::shell {

/// Version of the JSON that reading commands write.
inline constexpr int schema_version = 1;

struct column {
  std::string name;
  std::size_t width = 0;  // of its longest text; the name's own length counts too
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
  /// A cell without content; JSON leaves it out.
  report &nothing();
  /// A cell of name=value pairs, an object in JSON.
  report &begin_pairs();
  report &pair(std::string_view name, std::string_view value, bool is_number = false);
  report &end_pairs();
  void end_row();

  /// Behind the last row.
  void finish();

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
