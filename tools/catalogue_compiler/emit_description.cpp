// Every descriptor as text, one line each, so that a changed byte position shows as a readable difference.
//
// SPDX-License-Identifier: Apache-2.0
#include "emit.h"
#include "spelling.h"

namespace catalogue {

namespace {

using std::to_string;

std::string range(unsigned first, unsigned count)
{
  return to_string(first) + (count > 1 ? "-" + to_string(first + count - 1) : "");
}

void describe(generated_file &to, const field &f)
{
  std::string companion;
  if (f.match == match_kind::ternary) companion = " mask " + range(f.companion_offset, storage_size(f.type));
  if (f.match == match_kind::lpm) companion = " prefix length " + range(f.companion_offset, 2);
  to.line("  field ", f.name, " (", f.short_name, "): ", word_of(match_of(f)), ", ", to_string(f.bits), " bits, key ",
          f.key.partition ? "none, counts " : "", range(f.key.first, f.key.count), ", member ",
          range(f.offset, storage_size(f.type)), companion, ", live ", f.live_all ? "all" : live_mask_text(f),
          ", display ", f.display.empty() ? "none" : f.display);
}

void describe(generated_file &to, const model &m, const action_use &u)
{
  const action &a = m.actions[u.action];
  std::string text = "  action " + a.name + ": " + to_string(u.enum_value) + ", " + hex(u.handle) + ", data " +
                     to_string(a.data_bits) + " bits " + to_string(a.data_bytes) + " bytes";
  if (u.is_default) text += ", may be default";
  for (const resource_use &r : u.resources) text += ", " + identifier(r.form) + " " + hex(r.handle);
  to.line(text);
}

}  // namespace

void emit_description(const model &m, const std::filesystem::path &folder)
{
  generated_file to;
  for (const table &t : m.tables) {
    std::string head = "table " + t.name + ": " + hex(t.handle) + ", " + std::string(word_of(t.kind));
    if (t.keyed())
      head += ", key " + to_string(t.key_bits) + " bits " + to_string(t.key_bytes) + " bytes, structure " +
              to_string(t.record_size) + " bytes";
    if (t.idle_time) head += ", idle time";
    if (t.labelled()) head += ", counter label";
    if (t.indirect()) head += ", profile " + t.profile;
    to.line(head);
    for (const field &f : t.fields) describe(to, f);
    for (const action_use &u : t.actions) describe(to, m, u);
  }
  for (const action &a : m.actions) {
    if (a.params.empty()) continue;
    to.line("parameters ", a.name, ": structure ", to_string(a.record_size), " bytes");
    for (const parameter &p : a.params)
      to.line("  ", p.name, ": ", to_string(p.bits), " bits, data ", range(p.data.first, p.data.count), ", member ",
              range(p.offset, storage_size(p.type)), p.resource_index ? ", resource index" : "", ", display ",
              p.display.empty() ? "none" : p.display);
  }
  for (const profile &p : m.profiles) {
    to.line("profile ", p.name, ": data ", hex(p.action_data_table), ", selector ", hex(p.selector_table), ", table ",
            p.table);
    for (const action_use &u : p.actions) describe(to, m, u);
  }
  for (const resource &r : m.resources) {
    to.line(word_of(r.kind), " ", r.name, ": ", hex(r.handle), is_direct(r) ? ", direct" : ", indirect",
            r.table.empty() ? "" : ", table " + r.table);
  }
  for (const snapshot_layout &layout : m.snapshot_layouts) {
    to.line("snapshot ", layout.name, ": ", to_string(layout.fields.size()), " fields in ", to_string(layout.bytes),
            " bytes");
    for (const snapshot_field &f : layout.fields)
      to.line("  field ", f.name, ": ", to_string(f.size), f.size == 1 ? " byte" : " bytes", " at ",
              range(f.offset, f.slot()));
  }
  to.write(folder / "descriptors.txt");
}

}  // namespace catalogue
