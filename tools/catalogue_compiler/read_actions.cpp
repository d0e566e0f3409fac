// Actions with their parameters, the actions that tables and profiles use, and profiles.
//
// SPDX-License-Identifier: Apache-2.0
#include "read_rows.h"
#include "read_values.h"

namespace catalogue {

namespace {

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
  p.low_half = r.extra_text("low_half");
  static_cast<origin &>(p) = r.finish();
  return p;
}

resource_use read_resource_use(const toml::table &node, row &owner)
{
  row r(node, owner, "resource", "");
  resource_use u;
  u.form = r.choice<resource_form>("form");
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
  if (of_table) u.is_default = r.mark("default");
  u.data_bits = r.number("data_bits");
  u.data_bytes = r.number("data_bytes");
  if (of_table) {
    r.each_extra("resources", [&](const toml::table &inner) { u.resources.push_back(read_resource_use(inner, r)); });
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

action read_action(const toml::table &node, row &file)
{
  row r(node, file, "action");
  action a;
  a.name = r.text("name");
  a.about = r.extra_text("about");
  r.each_extra("params", [&](const toml::table &inner) { a.params.push_back(read_parameter(inner, r)); });
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

}  // namespace catalogue
