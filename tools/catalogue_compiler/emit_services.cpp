// Learning digests and parser value sets: rows and exported functions.
//
// SPDX-License-Identifier: Apache-2.0
#include "emit.h"
#include "spelling.h"

namespace catalogue {

using std::to_string;

void emit_services(const model &m, const functions &all, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Learning digests and parser value sets: descriptors and exported functions.");
  to.line("#include \"tarvex_pd/learning_digest.h\"").line("#include \"tarvex_pd/parser_value_set.h\"").line();
  to.line("#include \"services.h\"").line();
  to.line("namespace tarvex::pd {").line();
  for (const digest &d : m.digests) {
    to.line("static constexpr digest_field_row ", d.name, "_fields[] = {");
    for (const digest_field &f : d.fields)
      to.line("    {\"", f.name, "\", ", to_string(f.offset), ", ", to_string(f.bytes), "},");
    to.line("};");
  }
  if (!m.digests.empty()) {
    to.line("static constexpr digest_row all_digests[] = {");
    for (const digest &d : m.digests)
      to.line("    {\"", d.name, "\", ", to_string(d.entry_bytes), ", ", d.name, "_fields},");
    to.line("};");
  }
  to.line("const std::span<const digest_row> digests", m.digests.empty() ? "" : " = all_digests", ";").line();
  to.line("}  // namespace tarvex::pd").line().line("using namespace tarvex::pd;").line();
  emit_exports(to, functions_of_digests(all));
  emit_exports(to, functions_of_value_sets(all));
  to.write(folder / "pd" / "exports_services.cpp");
}

}  // namespace catalogue
