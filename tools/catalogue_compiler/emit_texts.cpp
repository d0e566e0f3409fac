// SPDX-License-Identifier: Apache-2.0
#include "emit_texts.h"

#include <algorithm>

#include "families.h"
#include "schema_texts.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

std::string live_word(const field &f)
{
  std::uint32_t live = 0;
  for (unsigned i = 12; i < 16; ++i) live = live << 8 | f.live[i];
  return hex(live);
}

/// String literals, one a piece.
void literals(generated_file &to, const std::vector<std::string> &pieces)
{
  for (std::size_t i = 0; i < pieces.size(); ++i) to.line("    \"", pieces[i], "\"", i + 1 == pieces.size() ? "," : "");
}

void text_row_line(generated_file &to, const row_constants &constants, const std::string &name, const std::string &live,
                   const std::string &offset, unsigned size, unsigned bits, bool partial)
{
  to.line("    {", live, ", ", to_string(constants.place_of_name(name)), ", ", offset, ", ", to_string(name.size()),
          ", ", to_string(size), ", ", to_string((bits + 3) / 4), ", ", partial ? "true" : "false", "},");
}

void key_rows(generated_file &to, const row_constants &constants, const table &t)
{
  const std::string type = match_spec_type(t);
  to.line("constexpr text_row ", t.name, "_rows[] = {");
  for (const field &f : t.fields) {
    const std::string live = f.type == storage::bytes16 ? to_string(constants.place_of_live_bits(f)) : live_word(f);
    const auto row = [&](const std::string &name) {
      text_row_line(to, constants, name, live, offset_of(type, name), storage_size(f.type), f.bits, !f.live_all);
    };
    row(f.name);
    if (f.match == match_kind::ternary) row(companion_name(f));
    if (f.match == match_kind::lpm)
      text_row_line(to, constants, companion_name(f), "0xffff", offset_of(type, companion_name(f)), 2, 16, false);
  }
  to.line("};");
}

/// How the text face reads and decodes an entry of the table: by its exported functions.
void access_functions(generated_file &to, const table &t)
{
  const std::string key = t.keyed() ? ", key_in<" + match_spec_type(t) + ">(to)" : "";
  const std::string priority = t.priority() ? ", &to.priority" : "";
  const std::string no_key = t.keyed() ? ", &to.no_key" : "";
  to.line("pd_status_t read_", t.name,
          "(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl, pd_flag8_t read_from_hw, "
          "entry_contents &to)");
  to.line("{").line("  return ", export_prefix, t.name, "_get_entry(sess_hdl, dev_id, entry_hdl, read_from_hw", key,
                    priority,
                    t.indirect() ? ", &to.is_member, &to.is_group, &to.grp_hdl, &to.mbr_hdl"
                                 : ", nullptr, to.action.parameters, &to.action.action",
                    no_key, ");");
  to.line("}").line("pd_status_t decode_", t.name, "(const void *plcmt_data, entry_contents &to)");
  to.line("{").line("  return ", export_prefix, t.name, "_get_entry_from_plcmt_data(plcmt_data", key, priority,
                    t.indirect() ? ", &to.mbr_hdl, &to.grp_hdl, &to.is_member, &to.is_group" : ", &to.action",
                    ", &to.no_key);");
  to.line("}");
}

/// Actions in the order of their names.
void action_list(generated_file &to, const std::string &owner, const std::vector<action_use> &uses)
{
  std::vector<std::string> names;
  for (const action_use &u : uses) names.push_back(u.name);
  std::sort(names.begin(), names.end());
  to.line("constexpr const action_text *", owner, "_actions[] = {");
  for (const std::string &name : names) to.line("    &texts::action_", name, ",");
  to.line("};");
}

}  // namespace

void table_texts(generated_file &to, const row_constants &constants, const table &t)
{
  to.line("namespace texts {").line("namespace {");
  if (t.keyed()) key_rows(to, constants, t);
  if (!t.actions.empty()) action_list(to, t.name, t.actions);
  access_functions(to, t);
  to.line("}  // namespace");
  const auto flag = [](bool set) { return set ? "true, " : "false, "; };
  to.line("constinit const table_text table_", t.name, " = {");
  to.line("    \"", t.name, "\", ", hex(t.handle), ", ", flag(t.keyed()), flag(t.indirect()), flag(t.priority()));
  if (t.keyed())
    literals(to, key_schema(t));
  else
    to.line("    {},");
  const std::string rows = to_string(
      std::count_if(t.fields.begin(), t.fields.end(), [](const field &f) { return f.match != match_kind::exact; }) +
      static_cast<std::ptrdiff_t>(t.fields.size()));
  to.line("    ", t.keyed() ? t.name + "_rows, " + rows : "nullptr, 0", ", ",
          t.actions.empty() ? "nullptr, 0" : t.name + "_actions, " + to_string(t.actions.size()), ",");
  to.line("    &read_", t.name, ", &decode_", t.name, "};");
  to.line("}  // namespace texts").line();
}

void label_texts(generated_file &to, const table &t)
{
  if (!t.labelled()) return;
  static constexpr std::string_view forms[] = {"hex", "decimal", "flag", "words", "bytes"};
  const std::string type = match_spec_type(t);
  to.line("namespace texts {").line("static constexpr label_piece ", t.name, "_label[] = {");
  for (const label_piece &p : t.label) {
    const field &f = *t.find_field(p.field);
    const label_form form = f.type == storage::bytes16 ? label_form::bytes : p.form;
    std::string values;
    for (const std::uint32_t value : p.values) values += (values.empty() ? "" : ", ") + hex(value);
    to.line("    {\"", p.text, "\", ", offset_of(type, f.name), ", ",
            offset_of(type, f.match == match_kind::ternary ? companion_name(f) : ""), ", ",
            to_string(storage_size(f.type)), ", label_form::", forms[static_cast<int>(form)], ", ", to_string(p.width),
            ", ", to_string(p.values.size()), ", ", hex(t.cut_of(p)), ", {", values, "}},");
  }
  to.line("};");
  to.line("constinit const counter_label_row label_", t.name, " = {&table_", t.name, ", ", t.name, "_label};");
  to.line("}  // namespace texts").line();
}

void profile_texts(generated_file &to, const profile &p)
{
  to.line("namespace texts {").line("namespace {");
  action_list(to, p.name, p.actions);
  to.line("}  // namespace");
  to.line("constinit const profile_text profile_", p.name, " = {\"", p.name, "\", ", hex(p.action_data_table), ", ",
          p.name, "_actions, ", to_string(p.actions.size()), ", &", export_prefix, p.name,
          "_get_member_from_plcmt_data};");
  to.line("}  // namespace texts").line();
}

void action_texts(generated_file &to, const row_constants &constants, const action &a)
{
  to.line("namespace texts {");
  if (!a.params.empty()) {
    to.line("constexpr text_row ", a.name, "_rows[] = {");
    for (const parameter &p : a.params)
      text_row_line(to, constants, member_name(p), hex(p.bits == 32 ? 0xffffffffu : (1u << p.bits) - 1),
                    offset_of(action_spec_type(a), member_name(p)), storage_size(p.type), p.bits, false);
    to.line("};");
  }
  to.line("constinit const action_text action_", a.name, " = {\"", export_prefix, a.name, "\",");
  literals(to, action_schema(a));
  to.line("    ", a.params.empty() ? "nullptr" : a.name + "_rows", ", ", to_string(a.params.size()), "};");
  to.line("}  // namespace texts");
}

void emit_text_tables(const model &m, const std::filesystem::path &folder)
{
  generated_file head;
  begin_source(head, "Text rows of all tables, actions and profiles.");
  head.line("#pragma once").line().line("#include \"counter_labels.h\"").line();
  head.line("namespace tarvex::pd::texts {").line();
  for (const action &a : m.actions) head.line("extern const action_text action_", a.name, ";");
  for (const profile &p : m.profiles) head.line("extern const profile_text profile_", p.name, ";");
  for (const table &t : m.tables) head.line("extern const table_text table_", t.name, ";");
  for (const table &t : m.tables)
    if (t.labelled()) head.line("extern const counter_label_row label_", t.name, ";");
  head.line().line("}  // namespace tarvex::pd::texts");
  head.write(folder / "text_tables.h");

  generated_file to;
  begin_source(to, "Text rows by handle and by enumeration value.");
  to.line("#include \"text_tables.h\"").line();
  to.line("namespace tarvex::pd {").line();
  row_constants(m).define(to);
  to.line("namespace {").line();
  to.line("constexpr const table_text *tables_by_handle[] = {");
  std::uint32_t next = m.tables.front().handle;
  for (const table &t : m.tables) {
    for (; next < t.handle; ++next) to.line("    nullptr,");
    to.line("    &texts::table_", t.name, ",");
    ++next;
  }
  to.line("};").line().line("constexpr const action_text *actions_by_value[] = {");
  for (const action &a : m.actions) to.line("    &texts::action_", a.name, ",");
  to.line("};").line();
  std::vector<std::string> profiles, labels;
  for (const profile &p : m.profiles) profiles.push_back("&texts::profile_" + p.name);
  if (!profiles.empty()) to.arguments("constexpr const profile_text *all_profiles[] = {", profiles, "};").line();
  for (const table &t : m.tables)
    if (t.labelled()) labels.push_back("&texts::label_" + t.name);
  if (!labels.empty()) to.arguments("constexpr const counter_label_row *all_labels[] = {", labels, "};").line();
  to.line("}  // namespace").line();
  to.line("constinit const std::uint32_t first_table_handle = ", hex(m.tables.front().handle), ";");
  to.line("constinit const std::span<const table_text *const> table_texts = tables_by_handle;");
  to.line("constinit const std::span<const action_text *const> action_texts = actions_by_value;");
  to.line("constinit const std::span<const profile_text *const> profile_texts",
          profiles.empty() ? ";" : " = all_profiles;");
  to.line("constinit const std::span<const counter_label_row *const> counter_labels",
          labels.empty() ? ";" : " = all_labels;");
  to.line().line("}  // namespace tarvex::pd");
  to.write(folder / "text_tables.cpp");
}

}  // namespace catalogue
