// Reads a routing table from a file of lines 'prefix, blank or tab, origin AS number'. `;` and `#` begin a comment.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "first_few.h"
#include "line_reader.h"
#include "progress.h"
#include "route.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarvex::route_load {

/// Why a line is no route.
struct bad_line {
  std::uint32_t line = 0;
  std::string reason;
};

struct route_list {
  std::vector<route> routes;  // sorted by destination, each destination once
  std::uint64_t lines = 0;
  std::uint64_t duplicates = 0;  // prefixes given again; the later line counts
  first_few<bad_line> bad_lines;
};

/// Nothing (a comment or an empty line), a route, or the reason why it is none.
using parsed_line = std::variant<std::monostate, route, std::string>;
parsed_line parse_line(std::string_view line);

/// Reports bytes read as its progress. Throws file_error if the file cannot be read to its end.
route_list read_route_file(const std::string &path, const progress_report &progress = {});

}  // namespace tarvex::route_load
