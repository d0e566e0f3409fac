// The call table and the rows at run time.
//
// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <string>

#include "argument_kinds.h"
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
  to.line("constexpr action_info all_actions[] = {");
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
      to.line("    {", hex(r.handle), ", resource_form::", form_name(r.form), "},");
    to.line("};");
  }
  to.line("constexpr use_info ", owner, "_actions[] = {");
  for (const action_use &u : uses)
    to.line("    {", hex(u.handle), ", &all_actions[", to_string(u.action), "], ", u.is_default ? "true" : "false",
            ", ", u.resources.empty() ? "{}" : owner + "_" + u.name + "_resources", "},");
  to.line("};");
}

void profile_rows(generated_file &to, const model &m)
{
  for (const profile &p : m.profiles) use_rows(to, p.name, p.actions);
  if (m.profiles.empty()) return;
  to.line("constexpr profile_info all_profiles[] = {");
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
            ", ", to_string(f.key.first), ", ", to_string(f.key.count), ", match_kind::", match_name(f), ", {", live,
            "}, ", low_half_of(f, t.fields), "},");
  }
  to.line("};");
}

void table_rows(generated_file &to, const model &m)
{
  for (const table &t : m.tables) {
    use_rows(to, t.name, t.actions);
    field_rows(to, t);
  }
  to.line("constexpr table_info all_tables[] = {");
  for (const table &t : m.tables) {
    const std::string profile =
        t.indirect() ? "&all_profiles[" + to_string(m.find_profile(t.profile) - m.profiles.data()) + "]" : "nullptr";
    to.line("    {\"", t.name, "\", \"", t.about, "\", ", hex(t.handle), ", table_kind::", kind_name(t), ", ",
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
  if (m.hashes.empty()) return;
  to.line("constexpr hash_info all_hashes[] = {");
  for (const hash_calculation &h : m.hashes)
    to.line("    {\"", h.name, "\", ", hex(h.handle), ", ", hex(h.first_input), ", ", h.name, "_common, ", h.name,
            "_algorithms},");
  to.line("};");
}

void resource_rows(generated_file &to, const model &m)
{
  if (m.resources.empty()) return;
  to.line("constexpr resource_info all_resources[] = {");
  for (const resource &r : m.resources) {
    to.line("    {\"", r.name, "\", ", hex(r.handle), ", resource_kind::", kind_name(r), ", ",
            is_direct(r) ? "true" : "false", ", ", r.table.empty() ? "0" : hex(m.find_table(r.table)->handle), "},");
  }
  to.line("};");
}

std::string_view result_name(result_kind kind)
{
  static constexpr std::string_view names[] = {"status", "none", "number", "text", "pointer", "count", "truth"};
  return names[static_cast<int>(kind)];
}

std::string use_pointer(const exported_function &f)
{
  if (f.use == nullptr) return "nullptr";
  const std::vector<action_use> &of = f.of_profile != nullptr ? f.of_profile->actions : f.of_table->actions;
  const std::string &owner = f.of_profile != nullptr ? f.of_profile->name : f.of_table->name;
  return "&" + owner + "_actions[" + to_string(f.use - of.data()) + "]";
}

void service_rows(generated_file &to, const model &m)
{
  for (const digest &d : m.digests) {
    to.line("constexpr digest_field_info ", d.name, "_fields[] = {");
    for (const digest_field &f : d.fields)
      to.line("    {\"", f.name, "\", \"", f.short_name, "\", \"", f.word, "\", ", to_string(f.bits), ", ",
              to_string(f.offset), ", ", to_string(f.bytes), ", ", low_half_of(f, d.fields), "},");
    to.line("};");
  }
  for (const digest &d : m.digests)
    to.line("constexpr digest_info all_digests[] = {{\"", d.name, "\", ", hex(d.handle), ", ", to_string(d.entry_bytes),
            ", ", d.name, "_fields}};");
  for (const value_set &v : m.value_sets)
    to.line("constexpr value_set_info all_value_sets[] = {{\"", v.name, "\", ", hex(v.handle), "}};");
}

template <class Row>
std::string row_pointer(const std::string &name, const Row *row, const std::vector<Row> &rows)
{
  return row == nullptr ? "nullptr" : "&all_" + name + "[" + to_string(row - rows.data()) + "]";
}

void argument_rows(generated_file &to)
{
  to.line("constexpr argument_row all_arguments[] = {");
  for (const argument_kind_row &row : argument_kinds()) {
    const bool of_a_row = row.type.find('{') != std::string_view::npos;  // a structure of each table or action
    to.line("    passed_as<", of_a_row ? "void *" : row.type, ">(argument_kind::", row.kind, "),");
  }
  to.line("};");
}

void function_rows(generated_file &to, const model &m, const functions &all)
{
  // Functions with the same kinds of arguments share one list of them.
  std::map<std::string, std::size_t> lists;
  const auto kinds_of = [](const exported_function &f) {
    std::string kinds;
    for (const argument &a : f.arguments) kinds += (kinds.empty() ? "k::" : ", k::") + std::string(a.kind);
    return kinds;
  };
  to.line("using k = argument_kind;");
  for (const exported_function &f : all) {
    const std::string kinds = kinds_of(f);
    if (kinds.empty() || !lists.try_emplace(kinds, lists.size()).second) continue;
    to.line("constexpr argument_kind arguments_", to_string(lists[kinds]), "[] = {", kinds, "};");
  }
  to.line("const exported_function all_functions[] = {");
  for (const exported_function &f : all) {
    const std::string kinds = kinds_of(f);
    to.line(
        "    {\"", f.name, "\", reinterpret_cast<address>(&::", f.name, "), family_id::", f.family,
        ", result_kind::", result_name(f.result), ", ", kinds.empty() ? "{}" : "arguments_" + to_string(lists[kinds]),
        ", ", row_pointer("tables", f.of_table, m.tables), ", ", row_pointer("profiles", f.of_profile, m.profiles),
        ", ", use_pointer(f), ", ", row_pointer("actions", f.of_action, m.actions), ", ",
        row_pointer("resources", f.of_resource, m.resources), ", ", row_pointer("hashes", f.of_hash, m.hashes), "},");
  }
  to.line("};");
}

}  // namespace

void emit_call_table(const model &m, const functions &all, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Exported functions and rows at run time.");
  to.line("#include \"call_table.h\"").line().line("#include <cstddef>").line();
  to.line("#include \"tarvex_pd/tarvex_pd.h\"").line().line("namespace tarvex::calls {").line();
  to.line("namespace {").line();
  action_rows(to, m);
  profile_rows(to, m);
  table_rows(to, m);
  resource_rows(to, m);
  hash_rows(to, m);
  service_rows(to, m);
  argument_rows(to);
  function_rows(to, m, all);
  to.line().line("}  // namespace").line();
  const pipeline &p = m.pipeline;
  to.line("const pipeline_info pipeline = {\"", p.name, "\", \"", p.profile, "\", \"", p.library, "\", \"", p.client,
          "\", \"", p.sources, "\", \"", export_prefix, "\"};");
  const auto is_empty = [&](std::string_view name) {
    return (name == "profiles" && m.profiles.empty()) || (name == "resources" && m.resources.empty()) ||
           (name == "hashes" && m.hashes.empty());
  };
  for (const char *what :
       {"argument_row:arguments", "exported_function:functions", "table_info:tables", "action_info:actions",
        "profile_info:profiles", "resource_info:resources", "hash_info:hashes"}) {
    const std::string_view both = what;
    const std::size_t colon = both.find(':');
    const std::string_view name = both.substr(colon + 1);
    to.line("const std::span<const ", both.substr(0, colon), "> ", name, is_empty(name) ? "" : " = all_",
            is_empty(name) ? "" : name, ";");
  }
  to.line("const std::span<const digest_info> digests", m.digests.empty() ? "" : " = all_digests", ";");
  to.line("const std::span<const value_set_info> value_sets", m.value_sets.empty() ? "" : " = all_value_sets", ";");
  to.line().line("}  // namespace tarvex::calls");
  to.write(folder / "call_table" / "call_table.cpp");
}

}  // namespace catalogue
