// Families that write entries and default entries.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "family_builder.h"

namespace catalogue {

namespace {

bool has_direct_meter(const action_use &u)
{
  return std::any_of(u.resources.begin(), u.resources.end(),
                     [](const resource_use &r) { return r.form == resource_form::direct_meter; });
}

constexpr std::string_view required_meter = "value of the entry's meter; must not be null";
constexpr std::string_view modified_meter = "value of the entry's meter; null leaves the meter as it is";
constexpr std::string_view default_meter = "value of the entry's meter; null sets the default without a meter";

/// What an add, modify or default of one use of an action takes for the action.
struct action_slots {
  slot spec;
  slot meter;
  std::string returns = "0, or the driver's status";

  action_slots(const model &m, const action_use &u, std::string_view meter_doc)
      : spec(when(!m.actions[u.action].params.empty(), "action_spec", "nullptr")),
        meter(has_direct_meter(u) ? slot{"meter_spec", {}, meter_doc} : slot{{}, "nullptr"})
  {
    if (!has_direct_meter(u)) return;
    returns =
        "0, the driver's status, or PD_STATUS_INVALID_ARG without a driver call for a meter_type that is not "
        "PD_METER_TYPE_COLOR_UNAWARE";
    if (meter_doc == required_meter) returns += " and for a null spec";
  }
};

}  // namespace

void add_entry_write_families(std::vector<exported_function> &to, const model &m, const table &t)
{
  if (!t.keyed()) return;
  const slot priority = when(t.priority(), "priority", "0");
  const slot ttl = when(t.idle_time, "ttl", "0");
  for (const action_use &u : t.actions) {
    const action_slots added(m, u, required_meter);
    to.push_back(function_builder("entry_add", t, "table_add_with_" + u.name)
                     .use(m, u)
                     .brief("Adds an entry with the action " + u.name + ".")
                     .result(result_kind::status, added.returns)
                     .calls("entry_add", {{"sess_hdl"},
                                          {"dev_tgt"},
                                          {"match_spec"},
                                          priority,
                                          added.spec,
                                          ttl,
                                          added.meter,
                                          {"entry_hdl_out"}}));
    const action_slots modified(m, u, modified_meter);
    to.push_back(function_builder("entry_modify", t, "table_modify_with_" + u.name)
                     .use(m, u)
                     .brief("Gives an entry the action " + u.name + ".")
                     .result(result_kind::status, modified.returns)
                     .calls("entry_modify", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}, modified.spec, modified.meter}));
    to.push_back(function_builder("entry_modify_by_match_spec", t, "table_modify_with_" + u.name + "_by_match_spec")
                     .use(m, u)
                     .brief("Gives the entry with a key the action " + u.name + ".")
                     .result(result_kind::status, modified.returns)
                     .calls("entry_modify_by_match_spec",
                            {{"sess_hdl"}, {"dev_tgt"}, {"match_spec"}, priority, modified.spec, modified.meter}));
  }
  to.push_back(function_builder("entry_delete", t, "table_delete")
                   .brief("Deletes an entry.")
                   .calls("entry_delete", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}}));
  to.push_back(function_builder("entry_delete_by_match_spec", t, "table_delete_by_match_spec")
                   .brief("Deletes the entry with a key.")
                   .calls("entry_delete_by_match_spec", {{"sess_hdl"}, {"dev_tgt"}, {"match_spec"}, priority}));
  to.push_back(
      function_builder("match_spec_to_entry_hdl", t, "match_spec_to_entry_hdl")
          .brief("Finds the handle of the entry with a key.")
          .calls("match_spec_to_entry_hdl", {{"sess_hdl"}, {"dev_tgt"}, {"match_spec"}, priority, {"entry_hdl_out"}}));
}

void add_default_entry_families(std::vector<exported_function> &to, const model &m, const table &t)
{
  for (const action_use &u : t.actions) {
    if (!u.is_default) continue;
    const action_slots set(m, u, default_meter);
    to.push_back(function_builder("set_default_action", t, "set_default_action_" + u.name)
                     .use(m, u)
                     .brief("Sets the default entry, with the action " + u.name + ".")
                     .result(result_kind::status, set.returns)
                     .calls("set_default_action", {{"sess_hdl"}, {"dev_tgt"}, set.spec, set.meter, {"entry_hdl_out"}}));
  }
  to.push_back(function_builder("reset_default_entry", t, "table_reset_default_entry")
                   .brief("Removes the default entry that was set.")
                   .calls("reset_default_entry", {{"sess_hdl"}, {"dev_tgt"}}));
  to.push_back(function_builder("get_default_entry_handle", t, "table_get_default_entry_handle")
                   .brief("Finds the handle of the default entry.")
                   .calls("get_default_entry_handle", {{"sess_hdl"}, {"dev_tgt"}, {"entry_hdl_out"}}));
}

}  // namespace catalogue
