// SPDX-License-Identifier: Apache-2.0
#include "schema_texts.h"

#include <algorithm>
#include <string_view>

#include "generated_file.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

constexpr unsigned prefix_length_bits = 16;

/// Live mask as the schema shows it: no leading zeros, an L after 128 bits.
std::string live_text(const field &f) { return live_mask_text(f) + (f.bits == 128 ? "L" : ""); }

std::string display_text(const std::string &display) { return display.empty() ? "None" : "'" + display + "'"; }

std::string key_row_text(const std::string &short_name, const std::string &name, unsigned bits, const std::string &live,
                         const std::string &display)
{
  return "( '" + short_name + "','" + name + "'," + to_string(bits) + "," + live + "," + display + ",None,None),";
}

std::size_t length(const std::vector<std::string> &pieces)
{
  std::size_t sum = 0;
  for (const std::string &piece : pieces) sum += piece.size();
  return sum;
}

constexpr std::size_t length(std::string_view text) { return text.size(); }

/// A value in hexadecimal digits: "0x01,".
std::size_t value_length(unsigned bits) { return length("0x,") + (bits + 3) / 4; }

std::size_t key_length(const table &t)
{
  std::size_t sum = length("( ),");
  for (const field &f : t.fields) {
    sum += value_length(f.bits);
    if (f.match == match_kind::ternary) sum += value_length(f.bits);
    if (f.match == match_kind::lpm) sum += value_length(prefix_length_bits);
  }
  return sum;
}

std::size_t action_length(const action &a)
{
  std::size_t sum = length("('',()),") + a.name.size();
  for (const parameter &p : a.params) sum += value_length(p.bits);
  return sum;
}

std::size_t piece_length(const table &t, const label_piece &p)
{
  if (t.find_field(p.field)->type == storage::bytes16) return p.text.size() + length(" ") + 2 * 16;
  switch (p.form) {
    case label_form::hex: return p.text.size() + length(" ") + hex(t.cut_of(p)).size();
    case label_form::decimal:
      return p.text.size() + length(" ") + std::max<std::size_t>(p.width, to_string(t.cut_of(p)).size());
    default: return p.text.size();
  }
}

/// What the pieces of a field take if it holds a value that has words of its own; without one, if it has none.
std::size_t pieces_length(const table &t, const std::string &field, const std::uint32_t *value)
{
  std::size_t sum = 0;
  for (const label_piece &p : t.label) {
    if (p.field != field) continue;
    const bool named = value != nullptr && std::find(p.values.begin(), p.values.end(), *value) != p.values.end();
    if (named == (p.form == label_form::words)) sum += piece_length(t, p);
  }
  return sum;
}

std::size_t label_length(const table &t)
{
  std::size_t sum = 0;
  for (const field &f : t.fields) {
    std::size_t most = pieces_length(t, f.name, nullptr);
    for (const label_piece &p : t.label)
      if (p.field == f.name && p.form == label_form::words)
        most = std::max(most, pieces_length(t, f.name, &p.values.front()));
    sum += most;
  }
  return sum;
}

/// The longest of some rows' texts.
template <class Rows, class Length>
std::size_t longest(const Rows &rows, Length length_of)
{
  std::size_t most = 0;
  for (const auto &row : rows) most = std::max<std::size_t>(most, length_of(row));
  return most;
}

struct lengths {
  const model &m;

  const action &of(const action_use &u) const { return *m.find_action(u.name); }

  std::size_t entry(const table &t) const
  {
    const std::size_t action = t.indirect() ? length("('setMbrHdl',(0xffffffff,))")
                                            : longest(t.actions, [&](const auto &u) { return action_length(of(u)); });
    const std::size_t key = t.keyed() ? key_length(t) : length("(),");
    return length("((") + key + action + length("),(") + length(t.priority() ? "-2147483648" : "0") + length(",True))");
  }

  std::size_t action_list(const std::vector<action_use> &uses) const
  {
    std::size_t sum = length("()");
    for (const action_use &u : uses) sum += length(action_schema(of(u))) + length(",");
    return sum;
  }

  std::size_t schema(const table &t) const
  {
    constexpr std::string_view member_or_group =
        "( ('setMbrHdl',(('mbrHdl',None,32,None),)),( 'setGrpHdl', ( ( 'grpHdl', None, 32, None ), ) ) )";
    return length("( ('','mat',(,)),,)") + t.name.size() + length(t.indirect() ? "True" : "False") +
           length(key_schema(t)) + (t.indirect() ? length(member_or_group) : action_list(t.actions));
  }
};

}  // namespace

std::vector<std::string> key_schema(const table &t)
{
  std::vector<std::string> pieces = {"("};
  for (const field &f : t.fields) {
    pieces.push_back(key_row_text(f.short_name, f.name, f.bits, live_text(f), display_text(f.display)));
    if (f.match == match_kind::ternary)
      pieces.push_back(key_row_text(f.short_name + "Mask", companion_name(f), f.bits, live_text(f), "None"));
    if (f.match == match_kind::lpm)
      pieces.push_back(
          key_row_text(f.short_name + "PrefixLength", companion_name(f), prefix_length_bits, "0xffff", "None"));
  }
  pieces.emplace_back(")");
  return pieces;
}

std::vector<std::string> action_schema(const action &a)
{
  std::vector<std::string> pieces = {"( ('" + a.name + "'),("};
  for (const parameter &p : a.params)
    pieces.push_back("('" + p.name + "'," + display_text(p.display) + "," + to_string(p.bits) + ",None),");
  pieces.emplace_back("))");
  return pieces;
}

text_sizes longest_texts(const model &m)
{
  const lengths of{m};
  const std::size_t tables = longest(m.tables, [&](const table &t) { return of.schema(t); });
  const std::size_t profiles = longest(m.profiles, [&](const profile &p) { return of.action_list(p.actions); });
  text_sizes sizes;
  sizes.schema = std::max(tables, profiles) + 1;
  sizes.entry = longest(m.tables, [&](const table &t) { return of.entry(t); }) + 1;
  sizes.key = longest(m.tables, [](const table &t) { return t.keyed() ? key_length(t) : 0; }) + 1;
  sizes.action = longest(m.actions, action_length) + 1;
  sizes.label = longest(m.tables, label_length) + 1;
  return sizes;
}

}  // namespace catalogue
