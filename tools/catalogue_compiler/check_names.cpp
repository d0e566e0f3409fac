// Checks of names.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>
#include <string>

#include "checks.h"

namespace catalogue {

namespace {

/// Keywords of C11 and C++20; generated headers serve both languages. Each has a blank on both sides.
constexpr std::string_view keywords =
    " alignas alignof and and_eq asm auto bitand bitor bool break case catch char char16_t char32_t "
    "char8_t class co_await co_return co_yield compl concept const const_cast consteval constexpr "
    "constinit continue decltype default delete do double dynamic_cast else enum explicit export extern "
    "false float for friend goto if inline int long mutable namespace new noexcept not not_eq nullptr "
    "operator or or_eq private protected public register reinterpret_cast requires restrict return short "
    "signed sizeof static static_assert static_cast struct switch template this thread_local throw true "
    "try typedef typeid typename union unsigned using virtual void volatile wchar_t while xor xor_eq ";

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter_or_digit(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || is_digit(c); }

bool is_identifier(std::string_view name)
{
  return !name.empty() && !is_digit(name.front()) &&
         std::all_of(name.begin(), name.end(), [](char c) { return is_letter_or_digit(c) || c == '_'; });
}

bool check_characters(const subject &s, std::string_view key, const std::string &name)
{
  // A missing or empty name was told when it was read.
  if (name.empty() || is_identifier(name)) return true;
  s.error(key, "'" + name + "' is not a C identifier; use letters, digits and '_', and no digit first");
  return false;
}

void check_file_name(const subject &s, std::string_view key, const std::string &name)
{
  constexpr std::string_view others = "_+.-";
  const auto fits = [&](char c) { return is_letter_or_digit(c) || others.find(c) != std::string_view::npos; };
  if (!std::all_of(name.begin(), name.end(), fits))
    s.error(key, "'" + name + "' becomes a part of file names; use letters, digits, '_', '+', '.' and '-'");
}

void check_c_string(const subject &s, std::string_view key, const std::string &text)
{
  const auto fits = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
  if (!std::all_of(text.begin(), text.end(), fits))
    s.error(key, "'" + text + "' becomes a string of C; use printable ASCII but for '\"' and '\\'");
}

void check_sentence(const subject &s, const std::string &about)
{
  if (about.empty()) return;
  check_c_string(s, "about", about);
  if (about.find("*/") != std::string::npos) s.error("about", "'*/' would end the comment that the sentence becomes");
  if (!about.ends_with('.')) s.error("about", "'" + about + "' is not a sentence; end it with a full stop");
}

void check_identifier(const subject &s, const std::string &name)
{
  const bool is_keyword = keywords.find(" " + name + " ") != std::string_view::npos;
  if (check_characters(s, "name", name) && is_keyword) {
    s.error("name", "'" + name + "' is a keyword of C or C++; choose another name");
  }
}

/// Names that must all differ, with what has them.
class name_space {
 public:
  void add(const subject &s, const std::string &name, std::string_view kind)
  {
    if (name.empty()) return;
    const auto [taken, is_new] = kinds_.emplace(name, kind);
    if (!is_new) s.error("name", "there is " + taken->second + " '" + name + "' already");
  }

 private:
  std::map<std::string, std::string> kinds_;
};

void check_name(const subject &s, const std::string &name, std::string_view kind, name_space &among)
{
  check_identifier(s, name);
  among.add(s, name, kind);
}

void check_members(const table &t, const subject &about)
{
  name_space members;
  for (const field &f : t.fields) {
    const subject s(about, "field", f);
    check_identifier(s, f.name);
    check_characters(s, "short", f.short_name);
    check_characters(s, "header", f.header);
    members.add(s, f.name, "a member");
    if (f.match == match_kind::ternary) members.add(s, f.name + "_mask", "a member");
    if (f.match == match_kind::lpm) members.add(s, f.name + "_prefix_length", "a member");
  }
}

}  // namespace

void check_names(const model &m, diagnostics &diag)
{
  if (m.pipeline.sound) {
    const subject s(diag, "pipeline", m.pipeline);
    check_characters(s, "name", m.pipeline.name);
    check_file_name(s, "library", m.pipeline.library);
    check_file_name(s, "profile", m.pipeline.profile);
    check_c_string(s, "client", m.pipeline.client);
    check_c_string(s, "sources", m.pipeline.sources);
  }
  // Tables, actions and profiles have functions of the same families, so no two of them share a name.
  name_space owners, resources, calculations, layouts;
  for (const table &t : m.tables) {
    const subject s(diag, "table", t);
    check_name(s, t.name, "a table", owners);
    check_sentence(s, t.about);
    check_members(t, s);
  }
  for (const action &a : m.actions) {
    const subject s(diag, "action", a);
    check_name(s, a.name, "an action", owners);
    check_sentence(s, a.about);
    name_space params;
    for (const parameter &p : a.params) check_name(subject(s, "parameter", p), p.name, "a parameter", params);
  }
  for (const profile &p : m.profiles) check_name(subject(diag, "profile", p), p.name, "a profile", owners);
  for (const resource &r : m.resources) {
    check_name(subject(diag, word_of(r.kind), r), r.name, "a " + std::string(word_of(r.kind)), resources);
  }
  for (const hash_calculation &h : m.hashes) {
    check_name(subject(diag, "hash_calculation", h), h.name, "a hash_calculation", calculations);
  }
  for (const digest &d : m.digests) {
    const subject s(diag, "digest", d);
    check_name(s, d.name, "a digest", owners);
    name_space fields;
    for (const digest_field &f : d.fields) {
      const subject about(s, "field", f);
      check_name(about, f.name, "a field", fields);
      check_characters(about, "short", f.short_name);
      if (f.word != f.short_name) check_characters(about, "word", f.word);
    }
  }
  for (const value_set &v : m.value_sets) check_identifier(subject(diag, "value_set", v), v.name);
  for (const snapshot_layout &layout : m.snapshot_layouts) {
    const subject s(diag, "snapshot_layout", layout);
    // One of an unknown direction stands in for none.
    if (layout.sound) layouts.add(s, layout.name, "a snapshot_layout");
    name_space fields;
    for (const snapshot_field &f : layout.fields) check_name(subject(s, "field", f), f.name, "a field", fields);
  }
}

}  // namespace catalogue
