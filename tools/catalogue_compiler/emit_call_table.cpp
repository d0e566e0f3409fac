// The call table: every exported function with the kinds of its arguments.
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

std::string use_pointer(const exported_function &f)
{
  if (f.use == nullptr) return "nullptr";
  const std::vector<action_use> &of = f.of_profile != nullptr ? f.of_profile->actions : f.of_table->actions;
  const std::string &owner = f.of_profile != nullptr ? f.of_profile->name : f.of_table->name;
  return "&" + owner + "_actions[" + to_string(f.use - of.data()) + "]";
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
    to.line("    {\"", f.name, "\", reinterpret_cast<address>(&::", f.name, "), family_id::", f.family, ", ",
            enumerator("result_kind", f.result), ", ", kinds.empty() ? "{}" : "arguments_" + to_string(lists[kinds]),
            ", ", row_pointer("tables", f.of_table, m.tables), ", ", row_pointer("profiles", f.of_profile, m.profiles),
            ", ", use_pointer(f), ", ", row_pointer("actions", f.of_action, m.actions), ", ",
            row_pointer("resources", f.of_resource, m.resources), ", ", row_pointer("hashes", f.of_hash, m.hashes),
            "},");
  }
  to.line("};");
}

/// An enumeration of the compiler's own list.
template <class Names>
void enumeration(generated_file &to, const std::string &about, const std::string &name, const Names &names)
{
  to.line("/// ", about).line("enum class ", name, " : std::uint8_t {");
  for (const std::string_view each : names) to.line("  ", each, ",");
  to.line("};");
}

void emit_kinds(const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Families of exported functions and kinds of their arguments.");
  to.line("#pragma once").line().line("#include <cstdint>").line().line("namespace tarvex::calls {").line();
  enumeration(to, "What an exported function does; each exists for many rows.", "family_id", families());
  to.line();
  std::vector<std::string_view> kinds;
  for (const argument_kind_row &row : argument_kinds()) kinds.push_back(row.kind);
  enumeration(to, "Kinds of arguments; \"_out\" receives, the others are read.", "argument_kind", kinds);
  to.line().line("inline constexpr std::size_t family_count = ", to_string(families().size()), ";");
  to.line().line("}  // namespace tarvex::calls");
  to.write(folder / "function_kinds.h");
}

}  // namespace

void emit_call_table(const model &m, const functions &all, const std::filesystem::path &folder)
{
  emit_kinds(folder / "call_table");
  generated_file to;
  begin_source(to, "Exported functions at run time.");
  to.line("#include \"call_table.h\"").line("#include \"row_arrays.h\"");
  to.line("#include \"tarvex_pd/tarvex_pd.h\"").line().line("namespace tarvex::calls {").line();
  to.line("namespace {").line();
  to.line("using namespace rows::arrays;").line();
  argument_rows(to);
  function_rows(to, m, all);
  to.line().line("}  // namespace").line();
  to.line("const std::span<const argument_row> arguments = all_arguments;");
  to.line("const std::span<const exported_function> functions = all_functions;");
  to.line().line("}  // namespace tarvex::calls");
  to.write(folder / "call_table" / "call_table.cpp");
}

}  // namespace catalogue
