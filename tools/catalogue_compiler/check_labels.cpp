// Checks of counter labels.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "checks.h"
#include "generated_file.h"

namespace catalogue {

namespace {

/// As many values as a piece has room for in the library.
constexpr std::size_t most_values = 3;
/// A number of 32 bits has no more digits.
constexpr unsigned widest = 10;

void check_text(const label_piece &p, const subject &s)
{
  if (!p.text.ends_with(' ')) s.error("text", "a piece ends in a blank, which sets it apart from the next");
  const auto plain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
  if (!std::all_of(p.text.begin(), p.text.end(), plain))
    s.error("text", "a label is printable ASCII but for '\"' and '\\'");
}

void check_address(const field &f, const label_piece &p, const subject &s)
{
  if (p.form != label_form::hex || p.cut != 0 || !p.values.empty())
    s.error(p.field_key(), "an address of 16 bytes is shown whole and always");
  if (f.match != match_kind::ternary)
    s.error(p.field_key(), "an address is shown with its mask, so it must be ternary");
}

void check_number(const field &f, const label_piece &p, const subject &s)
{
  const std::uint64_t whole = (std::uint64_t{1} << f.bits) - 1;
  const std::uint64_t cut = p.cut == 0 ? whole : p.cut;
  if ((cut & ~whole) != 0)
    s.error(p.form == label_form::flag ? "bit" : "cut",
            hex(p.cut) + " is wider than the field's " + std::to_string(f.bits) + " bits");
  if (p.form == label_form::flag && f.match != match_kind::ternary)
    s.error("flag", "a flag is shown where its mask has the bit, so the field must be ternary");
  const std::string_view key = p.form == label_form::words ? "is" : "unless";
  for (const std::uint32_t value : p.values)
    if ((value & ~cut) != 0) s.error(key, hex(value) + " has bits that are cut off");
  if (p.values.size() > most_values) s.error(key, "there is room for " + std::to_string(most_values) + " values");
  if (p.width > widest) s.error("width", "a number takes " + std::to_string(widest) + " columns at most");
}

}  // namespace

void check_labels(const model &m, diagnostics &diag)
{
  for (const table &t : m.tables) {
    if (!all_sound(t, t.fields) || !all_sound(t, t.label)) continue;
    const subject about(diag, "table", t);
    for (const label_piece &p : t.label) {
      const subject s(about, "piece", p);
      check_text(p, s);
      const field *f = t.find_field(p.field);
      if (f == nullptr) {
        s.error(p.field_key(), "the table has no field '" + p.field + "'");
      } else if (f->type == storage::bytes16) {
        check_address(*f, p, s);
      } else {
        check_number(*f, p, s);
      }
    }
  }
}

}  // namespace catalogue
