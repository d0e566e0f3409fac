// Families that read entries back, count them and walk them, and the exported key readers.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

namespace {

void add_get_entry(std::vector<exported_function> &to, const table &t)
{
  const slot priority = when(t.priority(), "priority_out", "nullptr");
  const slot key = when(t.keyed(), "match_spec_out", "nullptr");
  const slot no_key = when(t.keyed(), "no_key_out", "nullptr");
  if (t.indirect()) {
    to.push_back(function_builder("get_indirect_entry", t, "get_entry")
                     .brief("Reads an entry: its key, and the member or the group that it points at.")
                     .details("After a failure no output is written. A reply of the driver that names neither a member "
                              "nor a group stops the process.")
                     .calls("get_indirect_entry", {{{}, "__func__"},
                                                   {"sess_hdl"},
                                                   {"dev_id"},
                                                   {"entry_hdl"},
                                                   {"read_from_hw"},
                                                   key,
                                                   priority,
                                                   {"is_member_out"},
                                                   {"is_group_out"},
                                                   {"grp_hdl_out"},
                                                   {"mbr_hdl_out"},
                                                   no_key}));
    return;
  }
  to.push_back(function_builder("get_entry", t, "get_entry")
                   .brief(t.keyed() ? "Reads an entry: its key, its action and the action's parameters."
                                    : "Reads an entry: its action and the action's parameters.")
                   .details("After a failure no output is written. An action of the driver's reply that the table does "
                            "not have stops the process.")
                   .result(result_kind::status,
                           "0, the driver's status, PD_STATUS_UNEXPECTED_REPLY if the driver gives an entry without "
                           "action data, or PD_STATUS_NO_MEMORY")
                   .calls("get_entry", {{{}, "__func__"},
                                        {"sess_hdl"},
                                        {"dev_id"},
                                        {"entry_hdl"},
                                        {"read_from_hw"},
                                        key,
                                        priority,
                                        {"action_name_out"},
                                        {"any_action_spec_out"},
                                        {"action_enum_out"},
                                        no_key}));
}

void add_key_readers(std::vector<exported_function> &to, const table &t)
{
  const auto reader = [&](std::string_view what, std::string_view callee, const std::string &brief) {
    exported_function f = function_builder(what, t, {})
                              .brief(brief)
                              .result(result_kind::none, {})
                              .calls(callee, {{"drv_match_spec"}, {"match_spec_out", {}, "receives what is read"}});
    f.name = std::string(what) + "_" + t.name;
    to.push_back(std::move(f));
  };
  reader("unbuild_key", "unbuild_key", "Turns a key record into the key structure, masks and prefix length cleared.");
  if (t.kind != table_kind::exact)
    reader("unbuild_mask", "unbuild_mask",
           t.kind == table_kind::lpm
               ? "Adds the prefix length to a structure that unbuild_key_" + t.name + " has filled."
               : "Adds the masks to a structure that unbuild_key_" + t.name + " has filled.");
}

}  // namespace

void add_read_back_families(std::vector<exported_function> &to, const model &, const table &t)
{
  add_get_entry(to, t);
  to.push_back(function_builder("get_entry_count", t, "get_entry_count")
                   .brief("Counts the entries.")
                   .calls("get_entry_count", {{"sess_hdl"}, {"dev_tgt"}, {"entry_count_out"}}));
  to.push_back(function_builder("get_first_entry_handle", t, "get_first_entry_handle")
                   .brief("Begins a walk over the entries.")
                   .details("How an end is told is the driver's.")
                   .calls("get_first_entry_handle",
                          {{"sess_hdl"},
                           {"dev_tgt"},
                           {"entry_hdl_out", {}, "where the driver writes the handle of the first entry"}}));
  to.push_back(function_builder("get_next_entry_handles", t, "get_next_entry_handles")
                   .brief("Goes on with a walk over the entries.")
                   .details("How an end is told is the driver's.")
                   .calls("get_next_entry_handles", {{"sess_hdl"},
                                                     {"dev_tgt"},
                                                     {"entry_hdl", {}, "the entry to start after"},
                                                     {"handle_count"},
                                                     {"next_entry_hdls_out"}}));
  if (t.keyed()) add_key_readers(to, t);
}

}  // namespace catalogue
