// Exported functions: each is one call. Those of no row forward to a plain function of the library.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>

#include "emit.h"
#include "spelling.h"

namespace catalogue {

namespace {

/// Constants of the templates' headers that C++ code reads by names without the prefix.
constexpr std::string_view header_constants[] = {"ACTION_COUNT",
                                                 "SNAPSHOT_EGRESS_BIT",
                                                 "SNAPSHOT_FIELD_BYTES",
                                                 "SNAPSHOT_EGRESS_FIELD_BYTES",
                                                 "SNAPSHOT_CTRL_BYTES",
                                                 "SNAPSHOT_CAPTURES",
                                                 "SNAPSHOT_INGRESS",
                                                 "SNAPSHOT_EGRESS",
                                                 "SNAPSHOT_CAPTURE_AREA_BYTES"};

std::string lower_case(std::string_view text)
{
  std::string made(text);
  std::transform(made.begin(), made.end(), made.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return made;
}

void constants(generated_file &to)
{
  for (const std::string_view name : header_constants)
    to.line("inline constexpr std::uint32_t ", lower_case(name), " = ", macro_prefix(), name, ";");
}

void includes(generated_file &to)
{
  for (const std::string_view name : fixed_headers()) to.line("#include \"tarvex_pd/", name, ".h\"");
}

}  // namespace

void emit_exports(generated_file &to, const std::vector<const exported_function *> &of)
{
  for (const exported_function *f : of) {
    to.line(f->seldom ? "[[gnu::cold]] " : "", c_result(f->result), f->name, "(", argument_list(*f), ")");
    to.line("{").line("  ", f->result == result_kind::none ? "" : "return ", f->call, ";").line("}");
  }
}

void emit_forwarders(const functions &all, const std::filesystem::path &folder)
{
  const std::vector<const exported_function *> of = functions_of_no_row(all);
  generated_file head;
  begin_source(head, "What exported functions of no row forward to, and constants of the exported interface.");
  head.line("#pragma once").line().line("#include <cstdint>").line("#include <span>").line();
  includes(head);
  head.line().line("namespace tarvex::pd {").line();
  constants(head);
  head.line().line("/// Exported names of the actions, by enumeration value.");
  head.line("extern const std::span<const char *const> action_names;").line();
  head.line("using device_removal = pd_status_t (*)(std::uint32_t dev_id);");
  head.line("using device_log = pd_status_t (*)(std::uint32_t dev_id, struct cJSON *log);").line();
  for (const exported_function *f : of) head.line(f->plain, ";");
  head.line().line("}  // namespace tarvex::pd");
  head.write(folder / "pd" / "plain_functions.h");

  generated_file to;
  begin_source(to, "Exported functions of no row.");
  to.line("#include \"plain_functions.h\"").line();
  emit_exports(to, of);
  to.write(folder / "pd" / "exports_fixed.cpp");

  generated_file calls;
  begin_source(calls, "The exported functions of no row by names that are the same for every pipeline.");
  calls.line("#pragma once").line().line("#include <cstdint>").line();
  includes(calls);
  calls.line().line("namespace tarvex::calls::pd {").line();
  constants(calls);
  calls.line();
  for (const exported_function *f : of)
    calls.line("inline constexpr auto &", f->name.substr(export_prefix.size()), " = ::", f->name, ";");
  calls.line("inline constexpr auto &action_name_strings = ::", export_prefix, "action_name_strings;");
  calls.line().line("}  // namespace tarvex::calls::pd");
  calls.write(folder / "call_table" / "pd_calls.h");
}

}  // namespace catalogue
