// Tables and their key fields.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"
#include "read_values.h"

namespace catalogue {

namespace {

constexpr std::array match_kinds = {match_kind::ternary, match_kind::lpm};

constexpr std::string_view keyed_only[] = {"key_bits",     "key_bytes", "fields",   "record_bytes",
                                           "record_order", "profile",   "idle_time"};

field read_key_field(const toml::table &node, row &owner)
{
  row r(node, owner, "field");
  field f;
  f.name = r.text("name");
  f.short_name = r.text("short");
  f.type = read_storage(r);
  f.bits = r.number("bits");
  read_live_mask(r, f);
  f.match = r.extra_choice("match", match_kind::exact, match_kinds);
  f.key = read_byte_range(r, "key", true);
  f.display = read_display(r);
  f.room = r.extra_number("room");
  f.low_half = r.extra_text("low_half");
  f.header = r.extra_text("header");
  static_cast<origin &>(f) = r.finish();
  return f;
}

}  // namespace

table read_table(const toml::table &node, row &file)
{
  row r(node, file, "table");
  table t;
  t.name = r.text("name");
  t.about = r.extra_text("about");
  t.handle = r.number("handle");
  t.kind = r.choice<table_kind>("kind");
  t.idle_time = r.mark("idle_time");
  r.each_extra("counter_label", [&](const toml::table &inner) { t.label.push_back(read_label_piece(inner, r)); });
  t.profile = r.extra_text("profile");
  if (t.keyed()) {
    t.key_bits = r.number("key_bits");
    t.key_bytes = r.number("key_bytes");
    t.record_bytes = r.extra_number("record_bytes");
    t.record_order = r.extra_texts("record_order");
    r.each("fields", [&](const toml::table &inner) { t.fields.push_back(read_key_field(inner, r)); });
  } else {
    for (const std::string_view key : keyed_only) r.refuse(key, "the table is keyless");
  }
  if (t.indirect()) {
    r.refuse("actions", "they stand with profile '" + t.profile + "'");
  } else {
    t.actions = read_action_uses(r, true);
  }
  static_cast<origin &>(t) = r.finish();
  return t;
}

}  // namespace catalogue
