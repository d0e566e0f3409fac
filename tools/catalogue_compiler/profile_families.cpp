// Families over action profiles: members, groups, read-back, callbacks and handles, and the entries of indirect tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

namespace {

constexpr std::string_view new_member = "where the driver writes the handle of the member";
constexpr std::string_view new_group = "where the driver writes the handle of the group";
constexpr const char *state_status = "0, the driver's status, or that of the member-selector service";

void add_member_families(std::vector<exported_function> &to, const model &m, const profile &p)
{
  for (const action_use &u : p.actions) {
    const slot spec = when(!m.actions[u.action].params.empty(), "action_spec", "nullptr");
    to.push_back(function_builder("add_member", m, p, "add_member_with_" + u.name)
                     .use(m, u)
                     .brief("Adds a member with the action " + u.name + ".")
                     .calls("add_member", {{"sess_hdl"}, {"dev_tgt"}, spec, {"mbr_hdl_out", {}, new_member}}));
    to.push_back(function_builder("modify_member", m, p, "modify_member_with_" + u.name)
                     .use(m, u)
                     .brief("Changes the parameters of a member that has the action " + u.name + ".")
                     .result(result_kind::status,
                             "0, the driver's status, that of the member-selector service for a member that it does "
                             "not know, or PD_STATUS_WRONG_MEMBER_ACTION without a driver call if the member has "
                             "another action")
                     .calls("modify_member", {{"sess_hdl"}, {"dev_id"}, {"mbr_hdl"}, spec}));
  }
  to.push_back(function_builder("del_member", m, p, "del_member")
                   .brief("Deletes a member.")
                   .calls("del_member", {{"sess_hdl"}, {"dev_id"}, {"mbr_hdl"}}));
  to.push_back(function_builder("register_callback", m, p, "register_callback")
                   .brief("Has the driver call back when the profile's selector table changes.")
                   .calls("register_selector_callback", {{"sess_hdl"}, {"dev_id"}, {"callback"}, {"cookie"}}));
}

void add_group_families(std::vector<exported_function> &to, const model &m, const profile &p)
{
  to.push_back(
      function_builder("create_group", m, p, "create_group")
          .brief("Creates an empty selector group.")
          .calls("create_group", {{"sess_hdl"}, {"dev_tgt"}, {"max_grp_size"}, {"grp_hdl_out", {}, new_group}}));
  to.push_back(function_builder("del_group", m, p, "del_group")
                   .brief("Deletes a selector group.")
                   .result(result_kind::status, state_status)
                   .calls("del_group", {{"sess_hdl"}, {"dev_id"}, {"grp_hdl"}}));
  to.push_back(function_builder("add_member_to_group", m, p, "add_member_to_group")
                   .brief("Puts a member into a group, whose action becomes that of the member.")
                   .result(result_kind::status, state_status)
                   .calls("add_member_to_group", {{"sess_hdl"}, {"dev_id"}, {"grp_hdl"}, {"mbr_hdl"}}));
  to.push_back(function_builder("del_member_from_group", m, p, "del_member_from_group")
                   .brief("Takes a member out of a group, which keeps its action.")
                   .calls("del_member_from_group", {{"sess_hdl"}, {"dev_id"}, {"grp_hdl"}, {"mbr_hdl"}}));
  to.push_back(
      function_builder("group_member_state_set", m, p, "group_member_state_set")
          .brief("Switches a member on or off within a group.")
          .result(result_kind::status,
                  "0, the driver's status, or PD_STATUS_INVALID_ARG without a driver call for another state")
          .calls("group_member_state_set", {{"sess_hdl"}, {"dev_id"}, {"grp_hdl"}, {"mbr_hdl"}, {"member_state"}}));
  to.push_back(
      function_builder("group_member_state_get", m, p, "group_member_state_get")
          .brief("Tells whether a member is on or off within a group.")
          .calls("group_member_state_get", {{"sess_hdl"}, {"dev_id"}, {"grp_hdl"}, {"mbr_hdl"}, {"member_state_out"}}));
  to.push_back(function_builder("set_fallback_member", m, p, "set_dynamic_action_selection_fallback_member")
                   .brief("Sets the member that selection falls back to.")
                   .calls("set_fallback_member", {{"sess_hdl"}, {"dev_tgt"}, {"mbr_hdl"}}));
  to.push_back(function_builder("reset_fallback_member", m, p, "reset_dynamic_action_selection_fallback_member")
                   .brief("Takes the fallback member away.")
                   .calls("reset_fallback_member", {{"sess_hdl"}, {"dev_tgt"}}));
  to.push_back(function_builder("sel_track_updates", m, p, "sel_track_updates")
                   .brief("Has the driver call back when the profile's selector table changes, without a session.")
                   .calls("register_selector_callback", {{{}, "0"}, {"dev_id"}, {"callback"}, {"cookie"}}));
}

/// Reads one member, from the driver or from placement data.
void add_member_reads(std::vector<exported_function> &to, const model &m, const profile &p)
{
  constexpr const char *stops =
      "After a failure no output is written. An action of the driver's reply that the profile does not have stops the "
      "process.";
  to.push_back(
      function_builder("get_member", m, p, "get_member")
          .brief("Reads a member.")
          .details(stops)
          .calls("get_member",
                 {{{}, "__func__"}, {"sess_hdl"}, {"dev_id"}, {"mbr_hdl"}, {"read_from_hw"}, {"member_action_out"}}));
  to.push_back(function_builder("get_member_from_plcmt_data", m, p, "get_member_from_plcmt_data")
                   .seldom()
                   .brief("Decodes a member from placement data.")
                   .details(stops)
                   .calls("get_member_from_plcmt_data", {{{}, "__func__"}, {"plcmt_data"}, {"member_action_out"}}));
  to.push_back(function_builder("get_full_member_info_from_plcmt_data", m, p, "get_full_member_info_from_plcmt_data")
                   .seldom()
                   .brief("Decodes a member from placement data, with the resources recorded for it.")
                   .details(std::string(stops) + " Works before " + export_prefix + "init too, without resources.")
                   .calls("get_full_member_info_from_plcmt_data",
                          {{{}, "__func__"}, {"dev_id"}, {"mbr_hdl"}, {"plcmt_data"}, {"member_action_out"}}));
}

/// Counts, walks, callbacks and the handle of one of the profile's two tables.
struct profile_table_words {
  std::string_view table;     // enumerator of profile_table
  std::string thing, things;  // "member", "members"
  std::string_view handle;    // kinds of arguments
  std::string_view handle_out;
  std::string_view next_handles_out;
  std::string count, callback, get_handle;  // operations, and families of their own
};

void add_walks(std::vector<exported_function> &to, const model &m, const profile &p, const profile_table_words &w)
{
  to.push_back(function_builder("get_first_of_profile", m, p, "get_first_" + w.thing)
                   .with(w.table)
                   .brief("Begins a walk over the " + w.things + ".")
                   .calls("get_first_of_profile",
                          {{"sess_hdl"}, {"dev_tgt"}, {w.handle_out, {}, "where the driver writes the first handle"}}));
  to.push_back(function_builder("get_next_of_profile", m, p, "get_next_" + w.things)
                   .with(w.table)
                   .brief("Goes on with a walk over the " + w.things + ".")
                   .calls("get_next_of_profile", {{"sess_hdl"},
                                                  {"dev_tgt"},
                                                  {w.handle, {}, "the one to start after"},
                                                  {"handle_count"},
                                                  {w.next_handles_out}}));
  to.push_back(function_builder(w.count, m, p, w.count)
                   .with(w.table)
                   .brief("Counts the " + w.things + ".")
                   .calls("get_profile_count", {{"sess_hdl"}, {"dev_tgt"}, {"entry_count_out"}}));
  to.push_back(function_builder(w.callback, m, p, w.callback)
                   .with(w.table)
                   .brief("Has the driver call back when the " + w.things + " change.")
                   .calls("register_profile_update_cb", {{"sess_hdl"}, {"whole_dev_id"}, {"callback"}, {"cookie"}}));
  to.push_back(function_builder(w.get_handle, m, p, w.get_handle)
                   .with(w.table)
                   .brief("Gives the handle by which the driver knows the table of the " + w.things + ".")
                   .result(result_kind::status, "0")
                   .calls("get_profile_table_handle", {{"table_handle_out"}}));
}

void add_group_member_walks(std::vector<exported_function> &to, const model &m, const profile &p)
{
  to.push_back(function_builder("get_first_group_member", m, p, "get_first_group_member")
                   .brief("Begins a walk over the members of a group.")
                   .calls("get_first_group_member", {{"sess_hdl"},
                                                     {"dev_id"},
                                                     {"grp_hdl"},
                                                     {"mbr_hdl_out", {}, "where the driver writes the first handle"}}));
  to.push_back(function_builder("get_next_group_members", m, p, "get_next_group_members")
                   .brief("Goes on with a walk over the members of a group.")
                   .calls("get_next_group_members", {{"sess_hdl"},
                                                     {"dev_id"},
                                                     {"grp_hdl"},
                                                     {"mbr_hdl", {}, "the one to start after"},
                                                     {"handle_count"},
                                                     {"next_mbr_hdls_out"}}));
}

/// The writes of an indirect table whose entries point at members, or at groups.
struct pointee_words {
  std::string_view pointee;  // enumerator
  std::string_view handle;   // kind of argument
  std::string thing, selector;
};

void add_indirect_writes(std::vector<exported_function> &to, const table &t, const pointee_words &w)
{
  const slot priority = when(t.priority(), "priority", "0");
  const auto function = [&](std::string_view family, const std::string &operation, const std::string &brief) {
    return function_builder(family, t, operation)
        .with(profile_descriptor(t.profile))
        .with(w.pointee)
        .brief(brief)
        .details("The driver gets the action that the member-selector service knows of the " + w.thing + ".")
        .result(result_kind::status, state_status);
  };
  to.push_back(
      function("add_indirect_entry", "add_entry" + w.selector, "Adds an entry that points at a " + w.thing + ".")
          .calls("add_indirect_entry",
                 {{"sess_hdl"}, {"dev_tgt"}, {"match_spec"}, priority, {w.handle}, {"entry_hdl_out"}}));
  to.push_back(function("modify_indirect_entry", "modify_entry" + w.selector, "Points an entry at a " + w.thing + ".")
                   .calls("modify_indirect_entry", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}, {w.handle}}));
  to.push_back(function("modify_indirect_entry_by_match_spec", "modify_entry" + w.selector + "_by_match_spec",
                        "Points the entry with a key at a " + w.thing + ".")
                   .calls("modify_indirect_entry_by_match_spec",
                          {{"sess_hdl"}, {"dev_tgt"}, {"match_spec"}, priority, {w.handle}}));
  to.push_back(function("set_indirect_default", "set_default_entry" + w.selector,
                        "Sets the default entry, pointing at a " + w.thing + ".")
                   .calls("set_indirect_default", {{"sess_hdl"}, {"dev_tgt"}, {w.handle}, {"entry_hdl_out"}}));
}

}  // namespace

void add_profile_families(std::vector<exported_function> &to, const model &m, const profile &p)
{
  add_member_families(to, m, p);
  add_group_families(to, m, p);
  add_member_reads(to, m, p);
  add_walks(to, m, p,
            {"profile_table::action_data", "member", "members", "mbr_hdl", "mbr_hdl_out", "next_mbr_hdls_out",
             "get_act_prof_entry_count", "register_adt_update_cb", "get_adt_table_handle"});
  add_walks(to, m, p,
            {"profile_table::selector", "group", "groups", "grp_hdl", "grp_hdl_out", "next_grp_hdls_out",
             "get_selector_group_count", "register_sel_update_cb", "get_sel_table_handle"});
  add_group_member_walks(to, m, p);
}

void add_indirect_entry_families(std::vector<exported_function> &to, const model &, const table &t)
{
  if (!t.indirect()) return;
  add_indirect_writes(to, t, {"pointee::member", "mbr_hdl", "member", ""});
  add_indirect_writes(to, t, {"pointee::group", "grp_hdl", "group", "_with_selector"});
}

}  // namespace catalogue
