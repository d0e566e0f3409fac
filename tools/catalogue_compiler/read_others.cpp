// Actions with their parameters, profiles, resources and totals.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_values.h"
#include "readers.h"

namespace catalogue {

namespace {

constexpr word<bool> directness_words[] = {{"direct", true}, {"indirect", false}};

std::string_view kind_name(resource_kind kind)
{
  switch (kind) {
    case resource_kind::counter: return "counter";
    case resource_kind::meter: return "meter";
    case resource_kind::wred: return "wred";
    default: return "register";
  }
}

parameter read_parameter(const toml::table &node, row &owner)
{
  row r(node, owner, "parameter");
  parameter p;
  p.name = r.text("name");
  p.type = read_storage(r);
  p.bits = r.number("bits");
  p.data = read_byte_range(r, "data", false);
  p.display = read_display(r);
  p.room = r.extra_number("room");
  static_cast<origin &>(p) = r.finish();
  return p;
}

}  // namespace

action read_action(const toml::table &node, row &file)
{
  row r(node, file, "action");
  action a;
  a.name = r.text("name");
  r.each("params", [&](const toml::table &inner) { a.params.push_back(read_parameter(inner, r)); });
  a.record_bytes = r.extra_number("record_bytes");
  static_cast<origin &>(a) = r.finish();
  return a;
}

profile read_profile(const toml::table &node, row &file)
{
  row r(node, file, "profile");
  profile p;
  p.name = r.text("name");
  p.action_data_table = r.number("action_data_table");
  p.selector_table = r.number("selector_table");
  p.table = r.text("table");
  p.actions = read_action_uses(r, false);
  static_cast<origin &>(p) = r.finish();
  return p;
}

resource read_resource(const toml::table &node, row &file, resource_kind kind)
{
  row r(node, file, kind_name(kind));
  resource made;
  made.name = r.text("name");
  made.handle = r.number("handle");
  made.kind = kind;
  // A register always belongs to its table.
  made.direct = kind == resource_kind::register_ || r.choice<bool>("kind", directness_words);
  made.table = made.direct ? r.text("table") : r.extra_text("table");
  static_cast<origin &>(made) = r.finish();
  return made;
}

stated_totals read_totals(const toml::table &node, row &file)
{
  row r(node, file, "totals", "");
  stated_totals stated;
  for (const total &t : all_totals()) stated.numbers.push_back(r.number(t.key));
  static_cast<origin &>(stated) = r.finish();
  return stated;
}

}  // namespace catalogue
