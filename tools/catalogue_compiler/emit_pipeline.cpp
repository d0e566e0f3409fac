// The pipeline as the stand-in switch knows it.
//
// SPDX-License-Identifier: Apache-2.0
#include <vector>

#include "emit.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

/// Live bits of a whole key, byte by byte; a partition's bytes hold none.
std::vector<std::uint8_t> live_key(const table &t)
{
  std::vector<std::uint8_t> live(t.key_bytes);
  for (const field &f : t.fields)
    if (!f.key.partition)
      for (unsigned b = 0; b < f.key.count; ++b) live[f.key.first + b] = f.live[16 - f.key.count + b];
  return live;
}

std::uint32_t live_partition(const table &t)
{
  for (const field &f : t.fields)
    if (f.key.partition) return static_cast<std::uint32_t>(f.live[14] << 8 | f.live[15]);
  return 0;
}

void actions_array(generated_file &to, const model &m, const std::string &name, const std::vector<action_use> &uses)
{
  if (uses.empty()) return;
  to.line("constexpr pipeline_action ", name, "_actions[] = {");
  for (const action_use &u : uses) {
    const action &a = m.actions[u.action];
    to.line("    {", hex(u.handle), ", \"", u.name, "\", ", to_string(a.data_bits), ", ", to_string(a.data_bytes), ", ",
            u.is_default ? "true" : "false", "},");
  }
  to.line("};");
}

/// Rows of one kind as a span; a pipeline may have none, and an array of none there is not.
void span_of(generated_file &to, const std::string &type, const std::string &name, bool empty)
{
  to.line("const std::span<const ", type, "> pipeline_", name, empty ? "" : " = " + name, ";");
}

}  // namespace

void emit_pipeline_rows(const model &m, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "The pipeline that the stand-in switch has loaded.");
  to.line("#include \"pipeline.h\"").line().line("namespace tarvex::standin {").line().line("namespace {").line();
  for (const profile &p : m.profiles) actions_array(to, m, p.name, p.actions);
  for (const table &t : m.tables) {
    actions_array(to, m, t.name, t.actions);
    if (!t.keyed()) continue;
    std::string bytes;
    for (const std::uint8_t b : live_key(t)) bytes += (bytes.empty() ? "" : ", ") + hex(b);
    to.line("constexpr std::uint8_t ", t.name, "_live[] = {", bytes, "};");
  }
  to.line().line("constexpr pipeline_table tables[] = {");
  for (const table &t : m.tables) {
    const std::string uses = t.indirect() ? t.profile + "_actions" : t.name + "_actions";
    to.line("    {", hex(t.handle), ", \"", t.name, "\", table_kind::", kind_name(t), ", ", to_string(t.key_bits), ", ",
            to_string(t.key_bytes), ", ", t.keyed() ? t.name + "_live" : "nullptr", ", ", hex(live_partition(t)), ", ",
            t.idle_time ? "true" : "false", ", ", t.indirect() ? "\"" + t.profile + "\"" : "nullptr", ", ", uses, "},");
  }
  to.line("};").line();
  if (!m.profiles.empty()) to.line("constexpr pipeline_profile profiles[] = {");
  for (const profile &p : m.profiles)
    to.line("    {\"", p.name, "\", ", hex(p.action_data_table), ", ", hex(p.selector_table), ", ",
            hex(m.find_table(p.table)->handle), ", ", p.name, "_actions},");
  if (!m.profiles.empty()) to.line("};").line();
  if (!m.resources.empty()) to.line("constexpr pipeline_resource resources[] = {");
  for (const resource &r : m.resources)
    to.line("    {", hex(r.handle), ", \"", r.name, "\", resource_kind::", kind_name(r), ", ",
            is_direct(r) ? "true" : "false", ", ", r.table.empty() ? "0" : hex(m.find_table(r.table)->handle), "},");
  if (!m.resources.empty()) to.line("};").line();
  for (const hash_calculation &h : m.hashes) {
    std::string algorithms;
    for (const std::uint32_t a : h.algorithms) algorithms += (algorithms.empty() ? "" : ", ") + hex(a);
    to.line("constexpr std::uint32_t ", h.name, "_algorithms[] = {", algorithms, "};");
  }
  if (!m.hashes.empty()) to.line("constexpr pipeline_hash hashes[] = {");
  for (const hash_calculation &h : m.hashes)
    to.line("    {", hex(h.handle), ", ", hex(h.first_input), ", ", to_string((1u << h.fields) - 1), ", ", h.name,
            "_algorithms},");
  if (!m.hashes.empty()) to.line("};");
  for (const snapshot_layout &layout : m.snapshot_layouts) {
    if (layout.fields.empty()) continue;
    to.line().line("constexpr pipeline_snapshot_field ", layout.name, "_fields[] = {");
    for (const snapshot_field &f : layout.fields) to.line("    ", field_row(f), ",");
    to.line("};");
  }
  to.line().line("}  // namespace").line();
  span_of(to, "pipeline_table", "tables", m.tables.empty());
  span_of(to, "pipeline_profile", "profiles", m.profiles.empty());
  span_of(to, "pipeline_resource", "resources", m.resources.empty());
  span_of(to, "pipeline_hash", "hashes", m.hashes.empty());
  for (const digest &d : m.digests)
    to.line("const pipeline_digest pipeline_learning_digest = {", hex(d.handle), ", ", to_string(d.entry_bytes), "};");
  if (m.digests.empty()) to.line("const pipeline_digest pipeline_learning_digest = {};");
  to.line("const std::uint32_t pipeline_value_set = ", m.value_sets.empty() ? "0" : hex(m.value_sets.front().handle),
          ";");
  for (const snapshot_layout &layout : m.snapshot_layouts)
    span_of(to, "pipeline_snapshot_field", layout.name + "_fields", layout.fields.empty());
  to.line();
  to.line("}  // namespace tarvex::standin");
  to.write(folder / "standin" / "pipeline_rows.cpp");
}

}  // namespace catalogue
