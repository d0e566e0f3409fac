// Sources of the shared library: descriptors, exported functions that are one call each, names, symbol map.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "emit.h"
#include "emit_texts.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

/// A constant table, which may be empty, and the span that others find it by.
void span_of(generated_file &to, const std::string &row, const std::string &name, const std::vector<std::string> &rows)
{
  if (!rows.empty()) to.arguments("static constexpr const " + row + " " + name + "_rows[] = {", rows, "};");
  to.line("constinit const std::span<const ", row, "> ", name, rows.empty() ? "" : " = " + name + "_rows", ";").line();
}

std::string array_or_null(bool empty, const std::string &name) { return empty ? "nullptr" : name; }

void action_descriptors(generated_file &to, const action &a)
{
  const std::string &n = a.name;
  if (!a.params.empty()) {
    const std::string type = action_spec_type(a);
    to.line("inline constexpr param_row ", n, "_params[] = {");
    for (const parameter &p : a.params)
      to.line("    {", offset_of(type, member_name(p)), ", ", to_string(storage_size(p.type)), ", ",
              to_string(p.data.first), ", ", to_string(p.data.count), ", ", p.resource_index ? "true" : "false", "},");
    to.line("};");
  }
  if (!a.index_resources.empty()) {
    std::string handles;
    for (const std::uint32_t h : a.index_resources) handles += (handles.empty() ? "" : ", ") + hex(h);
    to.line("inline constexpr std::uint32_t ", n, "_index_resources[] = {", handles, "};");
  }
  const std::string full = "\"" + export_prefix + n + "\"";
  to.line("inline constexpr action_row ", n, " = {", full, ", sizeof ", full, ", ", macro_prefix() + "ACTION_" + n,
          ", ", to_string(a.data_bits), ", ", to_string(a.data_bytes), ", ",
          a.params.empty() ? "0" : "sizeof(" + action_spec_type(a) + ")", ", ",
          array_or_null(a.params.empty(), n + "_params"), ", ", to_string(a.params.size()), ", ",
          array_or_null(a.index_resources.empty(), n + "_index_resources"), ", ", to_string(a.index_resources.size()),
          "};");
}

void use_descriptors(generated_file &to, const std::string &owner, const std::vector<action_use> &uses)
{
  if (uses.empty()) return;
  for (const action_use &u : uses) {
    const std::string n = owner + "_" + u.name;
    if (!u.resources.empty()) {
      std::string list;
      for (const resource_use &r : u.resources)
        list += (list.empty() ? "{" : ", {") + hex(r.handle) + ", " + enumerator("resource_form", r.form) + "}";
      to.line("inline constexpr resource_row ", n, "_resources[] = {", list, "};");
    }
    to.line("inline constexpr action_use_row ", n, " = {", hex(u.handle), ", &actions::", u.name, ", ",
            array_or_null(u.resources.empty(), n + "_resources"), ", ", to_string(u.resources.size()), "};");
  }
  to.line("inline constexpr const action_use_row *", owner, "_all[] = {");
  for (const action_use &u : uses) to.line("    &", owner, "_", u.name, ",");
  to.line("};");
}

void profile_descriptor_row(generated_file &to, const model &m, const profile &p)
{
  to.line("inline constexpr profile_row ", p.name, " = {", hex(p.action_data_table), ", ", hex(p.selector_table), ", ",
          to_string(&p - m.profiles.data()), ", uses::", p.name, "_all, ", to_string(p.actions.size()), "};");
}

void table_descriptors(generated_file &to, const table &t)
{
  const std::string type = match_spec_type(t);
  if (t.keyed()) {
    to.line("inline constexpr field_row ", t.name, "_fields[] = {");
    for (const field &f : t.fields)
      to.line("    {", offset_of(type, f.name), ", ", to_string(storage_size(f.type)), ", ",
              offset_of(type, companion_name(f)), ", ", to_string(f.bits), ", ", to_string(f.key.first), ", ",
              to_string(f.key.count), ", ", enumerator("match_kind", match_of(f)), "},");
    to.line("};");
  }
  to.line("inline constexpr table_row ", t.name, " = {", hex(t.handle), ", ", enumerator("table_kind", t.kind), ", ",
          to_string(t.key_bits), ", ", to_string(t.key_bytes), ", ", t.keyed() ? "sizeof(" + type + ")" : "0", ", ",
          array_or_null(!t.keyed(), t.name + "_fields"), ", ", to_string(t.fields.size()), ", ",
          array_or_null(t.actions.empty(), "uses::" + t.name + "_all"), ", ", to_string(t.actions.size()), "};");
}

void emit_action_rows(const model &m, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Descriptors of all actions.");
  to.line();
  to.line("#pragma once").line().line("#include <cstddef>").line().line("#include \"rows.h\"");
  to.line("#include \"tarvex_pd/actions.h\"").line();
  to.line("namespace tarvex::pd::actions {").line();
  for (const action &a : m.actions) action_descriptors(to, a);
  to.line().line("}  // namespace tarvex::pd::actions");
  to.write(folder / "action_rows.h");
}

void emit_group_exports(const model &m, const functions &all, std::size_t group, const std::filesystem::path &folder)
{
  const catalogue::group &g = m.groups[group];
  const std::vector<const exported_function *> of = functions_of_group(all, group);
  if (of.empty()) return;
  generated_file to;
  begin_source(to, g.title + ": descriptors and exported functions.");
  to.line();
  to.line("#include \"tarvex_pd/", g.file, ".h\"").line().line("#include \"action_rows.h\"");
  to.line("#include \"families.h\"").line("#include \"text_families.h\"").line("#include \"text_tables.h\"").line();
  to.line("namespace tarvex::pd {").line("namespace {").line();
  const auto each_table = [&](const std::string &space, auto write) {
    to.line("namespace ", space, " {");
    for (const table &t : m.tables)
      if (t.group == group) write(t, m.find_profile(t.profile));
    to.line("}  // namespace ", space).line();
  };
  each_table("uses", [&](const table &t, const profile *p) {
    use_descriptors(to, t.name, t.actions);
    if (p != nullptr) use_descriptors(to, p->name, p->actions);
  });
  each_table("tables", [&](const table &t, const profile *) { table_descriptors(to, t); });
  each_table("profiles", [&](const table &, const profile *p) {
    if (p != nullptr) profile_descriptor_row(to, m, *p);
  });
  to.line("}  // namespace").line();
  const row_constants constants(m);
  for (const table &t : m.tables) {
    if (t.group != group) continue;
    if (const profile *p = m.find_profile(t.profile)) profile_texts(to, *p);
    table_texts(to, constants, t);
    label_texts(to, t);
  }
  to.line("}  // namespace tarvex::pd").line().line("using namespace tarvex::pd;").line();
  emit_exports(to, of);
  to.write(folder / ("exports_" + g.file + ".cpp"));
}

void emit_action_exports(const model &m, const functions &all, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Exported functions of actions.");
  to.line();
  to.line("#include \"action_rows.h\"").line("#include \"families.h\"").line("#include \"text_families.h\"");
  to.line("#include \"text_tables.h\"").line();
  to.line("namespace tarvex::pd {").line();
  const row_constants constants(m);
  for (const action &a : m.actions) action_texts(to, constants, a);
  to.line().line("}  // namespace tarvex::pd").line().line("using namespace tarvex::pd;").line();
  emit_exports(to, functions_of_actions(all));
  to.write(folder / "exports_actions.cpp");
}

void emit_resource_exports(const model &m, const functions &all, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Counters, meters, the WRED block and registers: descriptors and exported functions.");
  to.line();
  to.line("#include \"tarvex_pd/resources.h\"").line().line("#include \"resource_families.h\"").line();
  to.line("namespace tarvex::pd {").line("namespace {").line("namespace resources {");
  for (const resource &r : m.resources) {
    const std::string table = r.table.empty() ? "0" : hex(m.find_table(r.table)->handle);
    if (r.kind == resource_kind::counter)
      to.line("constexpr counter_row ", r.name, " = {", r.direct ? table : hex(r.handle), ", ",
              r.direct ? "true" : "false", "};");
    else if (r.kind == resource_kind::register_)
      to.line("constexpr register_row ", r.name, " = {", hex(r.handle), "};");
    else
      to.line("constexpr meter_row ", r.name, " = {", hex(r.handle), ", ", r.direct ? "true" : "false", ", ",
              r.direct ? table : "0", "};");
  }
  to.line("}  // namespace resources").line("}  // namespace").line("}  // namespace tarvex::pd").line();
  to.line("using namespace tarvex::pd;").line();
  emit_exports(to, functions_of_resources(all));
  to.write(folder / "exports_resources.cpp");
}

void emit_hash_exports(const model &m, const functions &all, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Hash calculations: descriptors and exported functions.");
  to.line();
  to.line("#include \"tarvex_pd/hash_calculations.h\"").line();
  to.line("#include \"hash_field_attributes.h\"").line();
  to.line("namespace tarvex::pd {").line().line("namespace hashes {").line("namespace {").line();
  for (const hash_calculation &h : m.hashes) {
    std::string common;
    for (const std::uint32_t c : h.common) common += (common.empty() ? "" : ", ") + to_string(c);
    to.line("constexpr std::uint8_t ", h.name, "_common[] = {", common, "};");
    std::string algorithms;
    for (const std::uint32_t a : h.algorithms) algorithms += (algorithms.empty() ? "" : ", ") + hex(a);
    to.line("constexpr std::uint32_t ", h.name, "_algorithms[] = {", algorithms, "};");
    to.line("constexpr hash_row ", h.name, " = {", hex(h.handle), ", ", hex(h.first_input), ", ", to_string(h.fields),
            ", ", h.name, "_common, ", h.name, "_algorithms};");
  }
  to.line().line("}  // namespace").line("}  // namespace hashes").line();
  std::vector<std::string> rows;
  for (const hash_calculation &h : m.hashes) rows.push_back("{\"" + h.name + "\", &hashes::" + h.name + "}");
  span_of(to, "named_hash", "named_hashes", rows);
  to.line("}  // namespace tarvex::pd").line().line("using namespace tarvex::pd;").line();
  emit_exports(to, functions_of_hashes(all));
  to.write(folder / "exports_hash_calculations.cpp");
}

void emit_names(const model &m, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Names of actions and action profiles.");
  to.line();
  to.line("#include \"profile_states.h\"").line("#include \"restorable_profiles.h\"");
  to.line("#include \"tarvex_pd/actions.h\"");
  to.line("#include \"plain_functions.h\"").line();
  std::size_t longest = 0;
  to.line("const char *const ", export_prefix, "action_name_strings[", macro_prefix(), "ACTION_COUNT] = {");
  for (const action &a : m.actions) {
    to.line("    \"", export_prefix, a.name, "\",");
    longest = std::max(longest, export_prefix.size() + a.name.size());
  }
  to.line("};").line();
  to.line("static_assert(", macro_prefix(), "ACTION_COUNT == ", to_string(m.actions.size()), ");");
  to.line("static_assert(", macro_prefix(), "ACTION_NAME_SIZE == ", to_string(longest + 1), ");").line();
  to.line("namespace tarvex::pd {").line();
  to.line("const std::span<const char *const> action_names = ", export_prefix, "action_name_strings;").line();
  for (const profile &p : m.profiles) {
    std::string handles;
    for (const action_use &u : p.actions) handles += (handles.empty() ? "" : ", ") + hex(u.handle);
    to.line("static constexpr std::uint32_t ", p.name, "_actions[] = {", handles, "};");
  }
  std::vector<std::string> names, rows;
  for (const profile &p : m.profiles) {
    names.push_back("\"" + p.name + "\"");
    rows.push_back("{" + hex(p.action_data_table) + ", " + p.name + "_actions}");
  }
  span_of(to, "char *const", "profile_names", names);
  span_of(to, "restorable_profile", "restorable_profiles", rows);
  to.line("ms_state *profile_states[", to_string(std::max<std::size_t>(m.profiles.size(), 1)), "];").line();
  to.line("}  // namespace tarvex::pd");
  to.write(folder / "names.cpp");
}

/// Constants of the library that name the pipeline.
void emit_pipeline_names(const pipeline &p, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "What the pipeline is called.");
  to.line();
  to.line("#pragma once").line().line("#include <string_view>").line();
  to.line("namespace tarvex::pd {").line();
  to.line("inline constexpr char pipeline_name[] = \"", p.name, "\";");
  to.line("/// What exported names begin with.");
  to.line("inline constexpr std::string_view exported_prefix = \"", export_prefix, "\";");
  to.line("/// The library as the driver knows it.");
  to.line("inline constexpr char client_name[] = \"", p.client, "\";");
  to.line("// What failed assertions name as their file.");
  to.line("inline constexpr char pd_source[] = \"", p.sources, "/pd\";");
  to.line("inline constexpr char pd_tarvex_source[] = \"", p.sources, "/pd_tarvex\";");
  to.line().line("}  // namespace tarvex::pd");
  to.write(folder / "pipeline_names.h");
}

void emit_record_sizes(const model &m, const std::filesystem::path &folder)
{
  unsigned largest = 1;
  for (const table &t : m.tables) largest = std::max(largest, t.record_size);
  generated_file to;
  begin_source(to, "Room for records of any table.");
  to.line("#pragma once").line().line("#include <cstddef>").line().line("namespace tarvex::pd {").line();
  to.line("/// Action data that a read offers the driver, the same for every table.");
  to.line("inline constexpr std::size_t read_data_bytes = ", to_string(read_data_bytes), ";");
  to.line("/// The largest key structure.");
  to.line("inline constexpr std::size_t largest_key_record = ", to_string(largest), ";").line();
  to.line("}  // namespace tarvex::pd");
  to.write(folder / "record_sizes.h");
}

void emit_symbols(const functions &all, const std::filesystem::path &folder)
{
  std::vector<std::string> names = list_data_objects();
  for (const exported_function &f : all) names.push_back(f.name);
  std::sort(names.begin(), names.end());
  generated_file list, map, dynamic;
  map.line("{").line("  global:");
  for (const std::string &name : names) {
    list.line(name);
    map.line("    ", name, ";");
  }
  map.line("  local:").line("    *;").line("};");
  // The library uses the address that the program sees for what a program may hold itself: data objects that it has
  // copied, and functions whose addresses the driver gets.
  dynamic.line("{");
  for (const std::string &name : list_data_objects()) dynamic.line("  ", name, ";");
  for (const char *const event : {"dev_remove", "dev_log", "dev_restore"})
    dynamic.line("  ", export_prefix, event, ";");
  dynamic.line("};");
  dynamic.write(folder / "dynamic_symbols.list");
  list.write(folder / "exported_symbols.txt");
  map.write(folder / "symbols.map");
}

}  // namespace

void emit_library_sources(const model &m, const functions &all, const std::filesystem::path &folder)
{
  const std::filesystem::path pd = folder / "pd";
  emit_action_rows(m, pd);
  for (std::size_t g = 0; g < m.groups.size(); ++g) emit_group_exports(m, all, g, pd);
  emit_action_exports(m, all, pd);
  emit_text_tables(m, pd);
  emit_resource_exports(m, all, pd);
  emit_hash_exports(m, all, pd);
  emit_names(m, pd);
  emit_pipeline_names(m.pipeline, pd);
  emit_record_sizes(m, pd);
  emit_symbols(all, folder);
}

}  // namespace catalogue
