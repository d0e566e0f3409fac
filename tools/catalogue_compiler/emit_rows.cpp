// The rows at run time.
//
// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "emit.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

std::string quoted_or_null(const std::string &text) { return text.empty() ? "nullptr" : "\"" + text + "\""; }

/// Place of the lower half of a MAC address among its rows; -1 for what is no upper half.
template <class Row>
std::string low_half_of(const Row &high, const std::vector<Row> &rows)
{
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (!high.low_half.empty() && rows[i].name == high.low_half) return to_string(i);
  return "-1";
}

void action_rows(generated_file &to, const model &m)
{
  for (const action &a : m.actions) {
    if (!a.params.empty()) {
      to.line("constexpr param_info ", a.name, "_params[] = {");
      for (const parameter &p : a.params)
        to.line("    {\"", p.name, "\", ", quoted_or_null(p.display), ", ", to_string(p.bits), ", ",
                offset_of(action_spec_type(a), member_name(p)), ", ", to_string(storage_size(p.type)), ", ",
                to_string(p.data.first), ", ", to_string(p.data.count), ", ", p.resource_index ? "true" : "false", ", ",
                low_half_of(p, a.params), "},");
      to.line("};");
    }
    if (!a.index_resources.empty()) {
      std::string handles;
      for (const std::uint32_t h : a.index_resources) handles += (handles.empty() ? "" : ", ") + hex(h);
      to.line("constexpr std::uint32_t ", a.name, "_index_resources[] = {", handles, "};");
    }
  }
  to.line("const action_info all_actions[] = {");
  for (std::size_t i = 0; i < m.actions.size(); ++i) {
    const action &a = m.actions[i];
    to.line("    {\"", a.name, "\", \"", a.about, "\", ", to_string(i), ", ", to_string(a.data_bits), ", ",
            to_string(a.data_bytes), ", ", a.params.empty() ? "0" : "sizeof(" + action_spec_type(a) + ")", ", ",
            a.params.empty() ? "{}" : a.name + "_params", ", ",
            a.index_resources.empty() ? "{}" : a.name + "_index_resources", "},");
  }
  to.line("};");
}

void use_rows(generated_file &to, const std::string &owner, const std::vector<action_use> &uses)
{
  if (uses.empty()) return;
  for (const action_use &u : uses) {
    if (u.resources.empty()) continue;
    to.line("constexpr resource_use_info ", owner, "_", u.name, "_resources[] = {");
    for (const resource_use &r : u.resources)
      to.line("    {", hex(r.handle), ", ", enumerator("resource_form", r.form), "},");
    to.line("};");
  }
  to.line("const use_info ", owner, "_actions[] = {");
  for (const action_use &u : uses)
    to.line("    {", hex(u.handle), ", &all_actions[", to_string(u.action), "], ", u.is_default ? "true" : "false",
            ", ", u.resources.empty() ? "{}" : owner + "_" + u.name + "_resources", "},");
  to.line("};");
}

void profile_rows(generated_file &to, const model &m)
{
  for (const profile &p : m.profiles) use_rows(to, p.name, p.actions);
  to.line("const profile_info all_profiles[] = {");
  for (const profile &p : m.profiles)
    to.line("    {\"", p.name, "\", ", hex(p.action_data_table), ", ", hex(p.selector_table), ", ",
            hex(m.find_table(p.table)->handle), ", ", p.name, "_actions},");
  to.line("};");
}

void field_rows(generated_file &to, const table &t)
{
  if (t.fields.empty()) return;
  to.line("constexpr field_info ", t.name, "_fields[] = {");
  for (const field &f : t.fields) {
    std::string live;
    for (const std::uint8_t b : f.live) live += (live.empty() ? "" : ",") + to_string(b);
    const std::string type = match_spec_type(t);
    to.line("    {\"", f.name, "\", \"", f.short_name, "\", ", quoted_or_null(f.display), ", ", to_string(f.bits), ", ",
            offset_of(type, f.name), ", ", to_string(storage_size(f.type)), ", ", offset_of(type, companion_name(f)),
            ", ", to_string(f.key.first), ", ", to_string(f.key.count), ", ", enumerator("match_kind", match_of(f)),
            ", {", live, "}, ", low_half_of(f, t.fields), "},");
  }
  to.line("};");
}

void table_rows(generated_file &to, const model &m)
{
  for (const table &t : m.tables) {
    use_rows(to, t.name, t.actions);
    field_rows(to, t);
  }
  to.line("const table_info all_tables[] = {");
  for (const table &t : m.tables) {
    const std::string profile =
        t.indirect() ? "&all_profiles[" + to_string(m.find_profile(t.profile) - m.profiles.data()) + "]" : "nullptr";
    to.line("    {\"", t.name, "\", \"", t.about, "\", ", hex(t.handle), ", ", enumerator("table_kind", t.kind), ", ",
            to_string(t.key_bits), ", ", to_string(t.key_bytes), ", ",
            t.keyed() ? "sizeof(" + match_spec_type(t) + ")" : "0", ", ", t.idle_time ? "true" : "false", ", ",
            t.labelled() ? "true" : "false", ", ", profile, ", ", t.fields.empty() ? "{}" : t.name + "_fields", ", ",
            t.actions.empty() ? "{}" : t.name + "_actions", "},");
  }
  to.line("};");
}

void hash_rows(generated_file &to, const model &m)
{
  for (const hash_calculation &h : m.hashes) {
    std::string common;
    for (const std::uint32_t c : h.common) common += (common.empty() ? "" : ", ") + to_string(c);
    to.line("constexpr std::uint32_t ", h.name, "_common[] = {", common, "};");
    std::string algorithms;
    for (const std::uint32_t a : h.algorithms) algorithms += (algorithms.empty() ? "" : ", ") + hex(a);
    to.line("constexpr std::uint32_t ", h.name, "_algorithms[] = {", algorithms, "};");
  }
  to.line("const hash_info all_hashes[] = {");
  for (const hash_calculation &h : m.hashes)
    to.line("    {\"", h.name, "\", ", hex(h.handle), ", ", hex(h.first_input), ", ", h.name, "_common, ", h.name,
            "_algorithms},");
  to.line("};");
}

void resource_rows(generated_file &to, const model &m)
{
  to.line("const resource_info all_resources[] = {");
  for (const resource &r : m.resources) {
    to.line("    {\"", r.name, "\", ", hex(r.handle), ", ", enumerator("resource_kind", r.kind), ", ",
            is_direct(r) ? "true" : "false", ", ", r.table.empty() ? "0" : hex(m.find_table(r.table)->handle), "},");
  }
  to.line("};");
}

void service_rows(generated_file &to, const model &m)
{
  for (const digest &d : m.digests) {
    to.line("constexpr digest_field_info ", d.name, "_fields[] = {");
    for (const digest_field &f : d.fields)
      to.line("    {\"", f.name, "\", \"", f.short_name, "\", \"", f.word, "\", ", to_string(f.bits), ", ",
              to_string(f.offset), ", ", to_string(f.bytes), ", ", low_half_of(f, d.fields), "},");
    to.line("};");
    to.line("constexpr digest_info all_digests[] = {{\"", d.name, "\", ", hex(d.handle), ", ", to_string(d.entry_bytes),
            ", ", d.name, "_fields}};");
  }
  for (const value_set &v : m.value_sets)
    to.line("constexpr value_set_info all_value_sets[] = {{\"", v.name, "\", ", hex(v.handle), "}};");
}

void snapshot_rows(generated_file &to, const model &m)
{
  for (const snapshot_layout &layout : m.snapshot_layouts) {
    if (layout.fields.empty()) continue;
    to.line("constexpr snapshot_field_info ", layout.name, "[] = {");
    for (const snapshot_field &f : layout.fields) to.line("    ", field_row(f), ",");
    to.line("};");
  }
}

/// Declares the arrays that exported functions point into.
void emit_row_arrays(const model &m, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "The arrays of rows.");
  to.line("#pragma once").line().line("#include \"pipeline_rows.h\"").line();
  to.line("namespace tarvex::rows::arrays {").line();
  for (const char *what : {"table", "action", "profile", "resource"})
    to.line("extern const ", what, "_info all_", what, "s[];");
  to.line("extern const hash_info all_hashes[];");
  for (const profile &p : m.profiles) to.line("extern const use_info ", p.name, "_actions[];");
  for (const table &t : m.tables)
    if (!t.actions.empty()) to.line("extern const use_info ", t.name, "_actions[];");
  to.line().line("}  // namespace tarvex::rows::arrays");
  to.write(folder / "row_arrays.h");
}

/// Rows of one kind as a span; a pipeline may have none.
template <class Rows>
void span_of(generated_file &to, const std::string &type, const std::string &name, const Rows &rows,
             const std::string &array)
{
  to.line("const std::span<const ", type, "> ", name,
          rows.empty() ? "" : " = {arrays::" + array + ", " + to_string(rows.size()) + "}", ";");
}

}  // namespace

void emit_rows(const model &m, const std::filesystem::path &folder)
{
  emit_row_arrays(m, folder / "rows");
  generated_file to;
  begin_source(to, "The rows of the pipeline.");
  to.line("#include <cstddef>").line().line("#include \"row_arrays.h\"");
  to.line("#include \"tarvex_pd/tarvex_pd.h\"").line().line("namespace tarvex::rows {").line();
  to.line("namespace arrays {").line();
  if (!m.actions.empty()) action_rows(to, m);
  if (!m.profiles.empty()) profile_rows(to, m);
  if (!m.tables.empty()) table_rows(to, m);
  if (!m.resources.empty()) resource_rows(to, m);
  if (!m.hashes.empty()) hash_rows(to, m);
  service_rows(to, m);
  snapshot_rows(to, m);
  to.line().line("}  // namespace arrays").line();
  const pipeline &p = m.pipeline;
  to.line("const pipeline_info pipeline = {\"", p.name, "\", \"", p.profile, "\", \"", p.library, "\", \"", p.client,
          "\", \"", p.sources, "\", \"", export_prefix, "\"};");
  span_of(to, "table_info", "tables", m.tables, "all_tables");
  span_of(to, "action_info", "actions", m.actions, "all_actions");
  span_of(to, "profile_info", "profiles", m.profiles, "all_profiles");
  span_of(to, "resource_info", "resources", m.resources, "all_resources");
  span_of(to, "hash_info", "hashes", m.hashes, "all_hashes");
  span_of(to, "digest_info", "digests", m.digests, "all_digests");
  span_of(to, "value_set_info", "value_sets", m.value_sets, "all_value_sets");
  for (const snapshot_layout &layout : m.snapshot_layouts)
    span_of(to, "snapshot_field_info", layout.name + "_fields", layout.fields, layout.name);
  to.line().line("}  // namespace tarvex::rows");
  to.write(folder / "rows" / "pipeline_rows.cpp");
}

}  // namespace catalogue
