// SPDX-License-Identifier: Apache-2.0
#include "row_constants.h"

#include <algorithm>

#include "spelling.h"

namespace catalogue {

row_constants::row_constants(const model &m)
{
  for (const table &t : m.tables) {
    for (const field &f : t.fields) {
      names_[f.name];
      if (f.match == match_kind::ternary || f.match == match_kind::lpm) names_[companion_name(f)];
      if (f.type == storage::bytes16 && place_of_live_bits(f) == live_bits_.size()) live_bits_.push_back(f.live);
    }
  }
  for (const action &a : m.actions)
    for (const parameter &p : a.params) names_[member_name(p)];
  std::size_t place = 0;
  for (auto &[name, at] : names_) {
    at = place;
    place += name.size();
  }
}

std::size_t row_constants::place_of_live_bits(const field &f) const
{
  return static_cast<std::size_t>(std::find(live_bits_.begin(), live_bits_.end(), f.live) - live_bits_.begin());
}

void row_constants::define(generated_file &to) const
{
  to.line("constinit const char member_names[] =").line("    \"\"");
  for (const auto &[name, at] : names_) to.line("    \"", name, "\"");
  to.line("    ;").line();
  to.line("constinit const std::uint8_t wide_live_bits[][16] = {");
  if (live_bits_.empty()) to.line("    {},  // no row has a place in it");
  for (const auto &live : live_bits_) {
    std::vector<std::string> bytes;
    for (const std::uint8_t b : live) bytes.push_back(hex(b));
    to.arguments("    {", bytes, "},");
  }
  to.line("};").line();
}

}  // namespace catalogue
