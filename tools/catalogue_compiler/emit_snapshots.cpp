// The fields of snapshots as constant tables of the library: in their order, and by name for the search.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <numeric>

#include "emit.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

/// Places of the fields in ascending order of their names' bytes, as strcmp compares them.
std::vector<std::string> places_by_name(const snapshot_layout &layout)
{
  std::vector<std::size_t> order(layout.fields.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return layout.fields[a].name < layout.fields[b].name; });
  std::vector<std::string> places;
  for (const std::size_t place : order) places.push_back(to_string(place));
  return places;
}

}  // namespace

void emit_snapshot_fields(const model &m, const std::filesystem::path &folder)
{
  generated_file to;
  begin_source(to, "Fields of snapshots.");
  to.line("#include \"snapshot_layouts.h\"").line().line("namespace tarvex::pd {").line("namespace {").line();
  for (const snapshot_layout &layout : m.snapshot_layouts) {
    if (layout.fields.empty()) continue;
    to.line("constexpr snapshot_field ", layout.name, "_fields[] = {");
    for (const snapshot_field &f : layout.fields) to.line("    ", field_row(f), ",");
    to.line("};");
    to.arguments("constexpr std::uint16_t " + layout.name + "_by_name[] = {", places_by_name(layout), "};").line();
  }
  to.line("}  // namespace").line();
  to.line("constinit const snapshot_layout snapshot_layouts[snapshot_layout_count] = {");
  for (const snapshot_layout &layout : m.snapshot_layouts)
    to.line("    {", layout.fields.empty() ? "{}, {}" : layout.name + "_fields, " + layout.name + "_by_name", "},");
  to.line("};").line().line("}  // namespace tarvex::pd");
  to.write(folder / "pd" / "snapshot_fields.cpp");
}

}  // namespace catalogue
