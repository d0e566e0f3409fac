// Writes the C declarations, and the rows and definitions for C++.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <fstream>

#include "driver_rows.h"
#include "generated_file.h"

namespace driver_rows {

namespace {

using catalogue::generated_file;

constexpr std::string_view result_types[] = {"pd_status_t ", "ms_state *", "void *", "void "};

std::string result_type(const function &f) { return std::string(result_types[static_cast<std::size_t>(f.result)]); }

std::vector<std::string> declarations(const function &f)
{
  if (f.arguments.empty()) return {"void"};
  std::vector<std::string> all;
  for (const argument &a : f.arguments)
    all.push_back(a.declaration() + (a.note.empty() ? "" : " /* " + a.note + " */"));
  return all;
}

void declare(generated_file &to, const function &f)
{
  to.line("/** ", f.doc, " */");
  const bool is_type = f.effect == call_effect::callback;
  to.arguments((is_type ? "typedef " : "") + result_type(f) + (is_type ? "(*" + f.name + ")(" : f.name + "("),
               declarations(f), ");");
}

/// Calls `emit` with each function that the driver has.
template <typename Emit>
void each_function(const std::vector<group> &groups, Emit emit)
{
  for (const group &g : groups) {
    for (const function &f : g.functions) {
      if (f.effect != call_effect::callback) emit(f);
    }
  }
}

template <class Kind>
std::string enumerator(std::string_view type, Kind kind)
{
  return std::string(type) + "::" + std::string(tarvex::word_of(kind));
}

std::string row_of(const argument &a)
{
  std::string row = "{\"" + a.name + "\", " + enumerator("value_kind", a.kind) + ", " + enumerator("direction", a.way) +
                    ", sizeof(" + a.type + ")";
  if (a.room) row += ", " + std::to_string(*a.room) + ", " + std::to_string(*a.filled);
  return row + "}";
}

constexpr std::string_view generated_from =
    "// Generated from driver.toml; do not edit.\n//\n// SPDX-License-Identifier: Apache-2.0";

}  // namespace

std::string argument::declaration() const
{
  if (is_pointer()) return type + name;
  return type + (way == direction::in ? " " : " *") + name;
}

generated_file header(const std::vector<group> &groups, const std::filesystem::path &frame,
                      catalogue::diagnostics &diag)
{
  generated_file made;
  std::ifstream in(frame);
  if (!in) diag.error({frame.string()}, "cannot be read");
  std::vector<std::string_view> placed;
  std::string line;
  for (std::uint32_t number = 1; std::getline(in, line); ++number) {
    if (!line.starts_with('@')) {
      made.line(line);
      continue;
    }
    const auto of_line = [&](const group &g) { return line == "@" + g.name + "@"; };
    const auto found = std::ranges::find_if(groups, of_line);
    if (found == groups.end()) {
      diag.error({frame.string(), number, 1}, "the rows have no group '" + line + "'");
      continue;
    }
    placed.push_back(found->name);
    for (const function &f : found->functions) declare(made, f);
  }
  for (const group &g : groups) {
    if (std::ranges::count(placed, g.name) != 1) {
      diag.error(g.at, "group '" + g.name + "': " + frame.string() + " must have one line @" + g.name + "@");
    }
  }
  return made;
}

generated_file row_definitions(const std::vector<group> &groups)
{
  generated_file made;
  made.line(generated_from).line("#pragma once\n\n#include \"driver_row.h\"\n\nnamespace tarvex::driver {\n");
  std::vector<std::string> all;
  each_function(groups, [&](const function &f) {
    all.push_back("&" + f.name);
    made.line("template <>\ninline constexpr call_row row_of<&", f.name, "> = {");
    made.line("    \"", f.name, "\", ", enumerator("result_kind", f.result), ", ", enumerator("call_effect", f.effect),
              ", ", std::to_string(f.arguments.size()), ", {{");
    for (const argument &a : f.arguments) made.line("        ", row_of(a), ",");
    made.line("    }}};");
  });
  made.line().arguments("using driver_functions = function_list<", all, ">;");
  made.line("\n}  // namespace tarvex::driver");
  return made;
}

generated_file function_definitions(const std::vector<group> &groups, bool whole_registers)
{
  generated_file made;
  made.line(generated_from).line("extern \"C\" {");
  each_function(groups, [&](const function &f) {
    std::vector<std::string> names;
    for (const argument &a : f.arguments) names.push_back(a.name);
    std::string head = result_type(f) + f.name + "(";
    function defined = f;
    if (whole_registers) {
      for (argument &a : defined.arguments) {
        if (a.kind == value_kind::device) a.type = "uint64_t";
      }
      // Another type than the declared one wants another name in C++.
      head = result_type(f) + "registers_" + f.name + "(";
      made.line().arguments(head, declarations(defined), ") __asm__(\"" + f.name + "\");");
    }
    made.line().arguments(head, declarations(defined), ")");
    made.line("{").arguments("  return driver_call<&" + f.name + ">(", names, ");").line("}");
  });
  made.line("\n}  // extern \"C\"");
  return made;
}

}  // namespace driver_rows
