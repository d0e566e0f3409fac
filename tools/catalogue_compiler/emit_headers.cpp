// The generated public headers: structures with their sizes and offsets asserted, and a documented prototype for each
// exported function.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "emit.h"
#include "schema_texts.h"
#include "spelling.h"

namespace catalogue {

namespace {

std::string include_guard(const std::string &stem)
{
  std::string guard = "TARVEX_PD_" + stem + "_H";
  std::transform(guard.begin(), guard.end(), guard.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return guard;
}

void begin_header(generated_file &to, const std::string &stem, const std::string &about,
                  const std::vector<std::string> &includes)
{
  to.line("/*").paragraph(" * ", " * ", about).line(" *");
  to.line(" * Generated from the catalogue; do not edit.");
  to.line(" *").line(" * SPDX-License-Identifier: Apache-2.0").line(" */");
  to.line("#ifndef ", include_guard(stem)).line("#define ", include_guard(stem)).line();
  for (const std::string &name : includes) to.line("#include \"tarvex_pd/", name, ".h\"");
  to.line();
  to.line("#ifdef __cplusplus").line("extern \"C\" {").line("#endif").line();
  to.line("#if defined(__GNUC__)").line("#pragma GCC visibility push(default)").line("#endif").line();
}

void end_header(generated_file &to, const std::filesystem::path &folder, const std::string &stem)
{
  to.line("#if defined(__GNUC__)").line("#pragma GCC visibility pop").line("#endif").line();
  to.line("#ifdef __cplusplus").line("}").line("#endif").line();
  to.line("#endif");
  to.write(folder / (stem + ".h"));
}

void structure(generated_file &to, const std::string &type, const std::string &about,
               const std::vector<member> &members, unsigned size)
{
  const std::string tag = type.substr(0, type.size() - 2);
  to.paragraph("/** ", " * ", about + " */");
  to.line("typedef struct ", tag, " {");
  for (const member &m : members) {
    const std::string comment = m.comment.empty() ? "" : " /**< " + m.comment + " */";
    to.line("  ", m.type, " ", m.name, ";", comment);
  }
  to.line("} ", type, ";").line();
  to.line("TARVEX_PD_LAYOUT(sizeof(", type, ") == ", std::to_string(size), ");");
  for (const member &m : members)
    to.line("TARVEX_PD_LAYOUT(offsetof(", type, ", ", m.name.substr(0, m.name.find('[')),
            ") == ", std::to_string(m.offset), ");");
  to.line();
}

/// Of each structure, as a mistake shows nowhere else.
const std::string wide_values =
    "Bits of a member beyond its width are cut off, and no status says so; tv_check_structure finds them.";

std::string kind_text(const table &t)
{
  static constexpr const char *kinds[] = {"exact key", "ternary key, entry priority", "longest prefix key", "no key"};
  std::string text = t.name + ", table " + hex(t.handle) + ": " + kinds[static_cast<int>(t.kind)];
  if (t.keyed()) text += " of " + std::to_string(t.key_bits) + " bits in " + std::to_string(t.key_bytes) + " bytes";
  if (t.idle_time) text += ", idle time";
  if (t.indirect()) text += ", action profile " + t.profile;
  return text + "." + (t.about.empty() ? "" : " " + t.about);
}

void emit_text_sizes(const model &m, const std::filesystem::path &folder)
{
  const text_sizes sizes = longest_texts(m);
  generated_file to;
  to.line("/*").line(" * Room for the longest text of each sort, its NUL included.").line(" *");
  to.line(" * Generated from the catalogue; do not edit.").line(" *").line(" * SPDX-License-Identifier: Apache-2.0");
  to.line(" */").line("#ifndef ", include_guard("text_sizes")).line("#define ", include_guard("text_sizes")).line();
  const auto size = [&](const std::string &name, std::size_t value, const std::string &comment) {
    to.line("#define PD_", name, "_TEXT_SIZE ", std::to_string(value), " /**< ", comment, " */");
  };
  size("SCHEMA", sizes.schema, "shape of a table or profile");
  size("ENTRY", sizes.entry, "an entry, read or decoded from placement data");
  size("KEY", sizes.key, "a key");
  size("ACTION", sizes.action, "an action with its parameters");
  size("LABEL", sizes.label, "the label of a counter");
  to.line().line("#endif");
  to.write(folder / "text_sizes.h");
}

void emit_actions(const model &m, const functions &all, const std::filesystem::path &folder)
{
  generated_file to;
  begin_header(to, "actions", "Actions of the pipeline: their enumeration and their parameters.", {"driver_records"});
  to.line("/** Every action by name, whatever tables use it. */").line("typedef enum pd_action_enum {");
  for (std::size_t i = 0; i < m.actions.size(); ++i)
    to.line("  ", macro_prefix(), "ACTION_", m.actions[i].name, " = ", std::to_string(i), ",");
  to.line("  ", macro_prefix(), "ACTION_NONE = ", std::to_string(m.actions.size()), " /**< no action has this name */");
  to.line("} pd_action_enum_t;").line();
  for (const action &a : m.actions)
    if (!a.params.empty())
      structure(to, action_spec_type(a),
                "Parameters of the action " + a.name + ", in host order. " + (a.about.empty() ? "" : a.about + " ") +
                    wide_values,
                param_members(a), a.record_size);
  unsigned largest = 4;
  for (const action &a : m.actions) largest = std::max(largest, a.record_size);
  to.line("/** An action that was decoded: its enumeration value, then its parameters in its own structure. */");
  to.line("typedef struct plcmt_action {").line("  uint32_t action; /**< a pd_action_enum_t */");
  to.line("  uint32_t parameters[", std::to_string((largest + 3) / 4), "]; /**< not written without parameters */");
  to.line("} plcmt_action_t;").line();
  to.line("TARVEX_PD_LAYOUT(offsetof(plcmt_action_t, parameters) == 4);");
  to.line("TARVEX_PD_LAYOUT(sizeof(plcmt_action_t) == ", std::to_string(4 + (largest + 3) / 4 * 4), ");").line();
  for (const exported_function *f : functions_of_actions(all)) prototype(to, *f);
  end_header(to, folder, "actions");
}

void emit_header(const model &m, const functions &all, std::size_t group, const std::filesystem::path &folder)
{
  const catalogue::group &g = m.groups[group];
  generated_file to;
  begin_header(to, g.file, g.title + ".", {"actions", "driver_records", "resource_values", "types"});
  const std::vector<const exported_function *> of = functions_of_group(all, group);
  for (const table &t : m.tables) {
    if (t.group != group) continue;
    to.paragraph("/* ---- ", " * ", kind_text(t) + " ---- */").line();
    if (t.keyed())
      structure(to, match_spec_type(t), "Key of an entry of " + t.name + ", in host order. " + wide_values,
                key_members(t), t.record_size);
    for (const exported_function *f : of)
      if (f->of_table == &t) prototype(to, *f);
  }
  end_header(to, folder, g.file);
}

/// A header of prototypes alone.
void emit_prototypes(const std::vector<const exported_function *> &of, const std::string &stem,
                     const std::string &about, const std::vector<std::string> &includes,
                     const std::filesystem::path &folder)
{
  generated_file to;
  begin_header(to, stem, about, includes);
  for (const exported_function *f : of) prototype(to, *f);
  end_header(to, folder, stem);
}

}  // namespace

void prototype(generated_file &to, const exported_function &f)
{
  to.line("/**").paragraph(" * ", " * ", f.brief);
  if (!f.details.empty()) to.line(" *").paragraph(" * ", " * ", f.details);
  if (!f.arguments.empty()) to.line(" *");
  for (const argument &a : f.arguments) to.paragraph(" * @param ", " *   ", a.name + "  " + a.doc);
  if (!f.returns.empty()) to.paragraph(" * @return ", " *   ", f.returns);
  to.line(" */");
  to.arguments(std::string(c_result(f.result)) + f.name + "(", declarations(f), ");");
  to.line();
}

void emit_public_headers(const model &m, const functions &all, const std::filesystem::path &folder)
{
  emit_text_sizes(m, folder);
  emit_actions(m, all, folder);
  emit_prototypes(functions_of_resources(all), "resources", "Counters, meters, the WRED block and registers, by name.",
                  {"resource_values", "types"}, folder);
  emit_prototypes(functions_of_hashes(all), "hash_calculations", "Hash calculations, by name.",
                  {"hash_access", "types"}, folder);
  std::vector<std::string> includes = {"version", "types", "driver_records", "resource_values"};
  includes.insert(includes.end(), fixed_headers().begin(), fixed_headers().end());
  includes.insert(includes.end(), {"actions", "resources", "hash_calculations"});
  for (std::size_t g = 0; g < m.groups.size(); ++g) {
    if (functions_of_group(all, g).empty()) continue;
    emit_header(m, all, g, folder);
    includes.push_back(m.groups[g].file);
  }

  generated_file umbrella;
  umbrella.line("/*").line(" * The whole control-plane interface.").line(" *");
  umbrella.paragraph(" * ", " * ",
                     "Threads: any number of threads may call at once, but for " + export_prefix +
                         "init and _cleanup, which one thread calls before and after all other use. The library takes "
                         "no lock and keeps no state but what init makes; what may be done to a device at the same "
                         "time is the driver's affair.");
  umbrella.line(" *");
  umbrella.line(" * Generated from the catalogue; do not edit.").line(" *");
  umbrella.line(" * SPDX-License-Identifier: Apache-2.0").line(" */");
  umbrella.line("#ifndef TARVEX_PD_TARVEX_PD_H").line("#define TARVEX_PD_TARVEX_PD_H").line();
  for (const std::string &name : includes) umbrella.line("#include \"tarvex_pd/", name, ".h\"");
  umbrella.line().line("#endif");
  umbrella.write(folder / "tarvex_pd.h");
}

}  // namespace catalogue
