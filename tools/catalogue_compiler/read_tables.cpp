// Tables, their key fields and the actions they use.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_values.h"
#include "readers.h"

namespace catalogue {

namespace {

constexpr word<table_kind> table_kinds[] = {{"exact", table_kind::exact},
                                            {"ternary", table_kind::ternary},
                                            {"lpm", table_kind::lpm},
                                            {"keyless", table_kind::keyless}};

constexpr word<match_kind> match_kinds[] = {
    {"exact", match_kind::exact}, {"ternary", match_kind::ternary}, {"lpm", match_kind::lpm}};

constexpr word<resource_form> resource_forms[] = {{"direct counter", resource_form::direct_counter},
                                                  {"direct meter", resource_form::direct_meter},
                                                  {"direct register", resource_form::direct_register},
                                                  {"indexed", resource_form::indexed},
                                                  {"detached", resource_form::detached}};

constexpr std::string_view keyed_only[] = {"key_bits",     "key_bytes", "fields", "record_bytes",
                                           "record_order", "profile",   "idle_time"};

field read_field(const toml::table &node, row &owner)
{
  row r(node, owner, "field");
  field f;
  f.name = r.text("name");
  f.short_name = r.text("short");
  f.type = read_storage(r);
  f.bits = r.number("bits");
  read_live_mask(r, f);
  f.match = r.choice<match_kind>("match", match_kinds);
  f.key = read_byte_range(r, "key", true);
  f.display = read_display(r);
  f.room = r.extra_number("room");
  static_cast<origin &>(f) = r.finish();
  return f;
}

resource_use read_resource_use(const toml::table &node, row &owner)
{
  row r(node, owner, "resource", "");
  resource_use u;
  u.form = r.choice<resource_form>("form", resource_forms);
  u.handle = r.number("handle");
  if (u.form == resource_form::indexed) u.param = r.text("param");
  static_cast<origin &>(u) = r.finish();
  return u;
}

action_use read_action_use(const toml::table &node, row &owner, bool of_table)
{
  row r(node, owner, "action");
  action_use u;
  u.name = r.text("name");
  u.enum_value = r.number("enum");
  u.handle = r.number("handle");
  if (of_table) u.is_default = r.flag("default");
  u.data_bits = r.number("data_bits");
  u.data_bytes = r.number("data_bytes");
  if (of_table) {
    r.each("resources", [&](const toml::table &inner) { u.resources.push_back(read_resource_use(inner, r)); });
  }
  static_cast<origin &>(u) = r.finish();
  return u;
}

}  // namespace

std::vector<action_use> read_action_uses(row &owner, bool of_table)
{
  std::vector<action_use> uses;
  owner.each("actions", [&](const toml::table &inner) { uses.push_back(read_action_use(inner, owner, of_table)); });
  return uses;
}

table read_table(const toml::table &node, row &file)
{
  row r(node, file, "table");
  table t;
  t.name = r.text("name");
  t.handle = r.number("handle");
  t.kind = r.choice<table_kind>("kind", table_kinds);
  t.idle_time = r.mark("idle_time");
  t.counter_label = r.mark("counter_label");
  t.profile = r.extra_text("profile");
  if (t.keyed()) {
    t.key_bits = r.number("key_bits");
    t.key_bytes = r.number("key_bytes");
    t.record_bytes = r.extra_number("record_bytes");
    t.record_order = r.extra_texts("record_order");
    r.each("fields", [&](const toml::table &inner) { t.fields.push_back(read_field(inner, r)); });
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
