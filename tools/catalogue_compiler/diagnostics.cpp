// Collected errors, in the order a reader of the files meets them.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <tuple>

#include "diagnostics.h"

namespace catalogue {

namespace {

bool stands_before(const position &a, const position &b)
{
  return std::tie(a.file, a.line, a.column) < std::tie(b.file, b.line, b.column);
}

std::string place_text(const position &at)
{
  // What concerns a whole file or folder has no line.
  if (at.line == 0) return at.file;
  return at.file + ":" + std::to_string(at.line) + ":" + std::to_string(at.column);
}

}  // namespace

void diagnostics::error(const position &at, std::string message)
{
  const auto place = std::upper_bound(places_.begin(), places_.end(), at, stands_before);
  lines_.insert(lines_.begin() + (place - places_.begin()), place_text(at) + ": error: " + message);
  places_.insert(place, at);
}

}  // namespace catalogue
