// Families over whole tables: properties, update callbacks, handles and idle time.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

void add_table_families(std::vector<exported_function> &to, const table &t)
{
  to.push_back(
      function_builder("set_property", t, "set_property")
          .brief("Sets a property of the table.")
          .calls("set_property", {{"sess_hdl"}, {"dev_id"}, {"property"}, {"property_value"}, {"property_argument"}}));
  to.push_back(function_builder("get_property", t, "get_property")
                   .brief("Reads a property of the table.")
                   .calls("get_property",
                          {{"sess_hdl"}, {"dev_id"}, {"property"}, {"property_value_out"}, {"property_argument_out"}}));
  to.push_back(function_builder("register_mat_update_cb", t, "register_mat_update_cb")
                   .brief("Has the driver call back when the table changes.")
                   .calls("register_mat_update_cb", {{"sess_hdl"}, {"whole_dev_id"}, {"callback"}, {"cookie"}}));
  to.push_back(function_builder("get_mat_table_handle", t, "get_mat_table_handle")
                   .brief("Gives the handle by which the driver knows the table.")
                   .result(result_kind::status, "0")
                   .calls("get_mat_table_handle", {{"table_handle_out"}}));
}

void add_idle_time_families(std::vector<exported_function> &to, const table &t)
{
  if (!t.idle_time) return;
  to.push_back(function_builder("idle_tmo_enable", t, "idle_tmo_enable")
                   .brief("Turns the idle time of the table on.")
                   .calls("idle_tmo_enable", {{"sess_hdl"}, {"dev_id"}, {"idle_params"}}));
  to.push_back(function_builder("idle_tmo_disable", t, "idle_tmo_disable")
                   .brief("Turns the idle time of the table off.")
                   .calls("idle_tmo_disable", {{"sess_hdl"}, {"dev_id"}}));
  to.push_back(function_builder("idle_register_tmo_cb", t, "idle_register_tmo_cb")
                   .brief("Has the driver call back for entries that were idle too long.")
                   .calls("idle_register_tmo_cb", {{"sess_hdl"}, {"dev_id"}, {"callback"}, {"cookie"}}));
  to.push_back(function_builder("set_ttl", t, "set_ttl")
                   .brief("Sets the ttl of an entry.")
                   .calls("set_ttl", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}, {"ttl"}}));
  to.push_back(function_builder("get_ttl", t, "get_ttl")
                   .brief("Reads the ttl of an entry.")
                   .calls("get_ttl", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}, {"ttl_out"}}));
  to.push_back(function_builder("update_hit_state", t, "update_hit_state")
                   .brief("Has the driver bring its hit states up to date.")
                   .calls("update_hit_state", {{"sess_hdl"}, {"dev_id"}, {"word"}, {"word"}}));
  to.push_back(function_builder("get_hit_state", t, "get_hit_state")
                   .brief("Reads the hit state of an entry.")
                   .details("The output means something only with a result of 0.")
                   .calls("get_hit_state", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}, {"hit_state_out"}}));
}

}  // namespace catalogue
