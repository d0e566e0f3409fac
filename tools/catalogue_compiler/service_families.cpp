// Families over learning digests and parser value sets. Each is one driver call with the row's handle.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

void add_digest_families(std::vector<exported_function> &to, const digest &d)
{
  to.push_back(function_builder("digest_register", d, "register")
                   .brief("Has the driver deliver the digest " + d.name + ".")
                   .details("The driver calls `cb` itself; every message that it delivers goes back through " +
                            export_prefix + d.name + "_notify_ack.")
                   .calls_with_row("digest_register", {{"sess_hdl"}, {"dev_id"}, {"callback"}, {"cookie"}}));
  to.push_back(function_builder("digest_deregister", d, "deregister")
                   .brief("Ends the delivery of the digest " + d.name + ".")
                   .calls_with_row("digest_deregister", {{"sess_hdl"}, {"dev_id"}}));
  to.push_back(function_builder("digest_notify_ack", d, "notify_ack")
                   .brief("Gives a message back to the driver.")
                   .calls_with_row("digest_notify_ack", {{"sess_hdl"}, {"digest_message"}}));
}

void add_value_set_families(std::vector<exported_function> &to, const value_set &v)
{
  const slot argument{"property_argument", {}, "further argument of the property"};
  const slot value{"parser_value", {}, "value, in host order"},
      mask{"parser_value", {}, "mask, in host order", "parser_value_mask"};
  to.push_back(function_builder("value_set_set_property", v, "set_property")
                   .brief("Sets a property of the value set " + v.name + ".")
                   .calls_with_row("value_set_set_property",
                                   {{"sess_hdl"}, {"whole_dev_id"}, {"property"}, {"property_value"}, argument}));
  to.push_back(function_builder("value_set_get_property", v, "get_property")
                   .brief("Reads a property of the value set " + v.name + ".")
                   .calls_with_row("value_set_get_property",
                                   {{"sess_hdl"}, {"whole_dev_id"}, {"property"}, {"property_value_out"}, argument}));
  to.push_back(
      function_builder("value_set_entry_add", v, "entry_add")
          .brief("Adds an entry to the value set " + v.name + ".")
          .calls_with_row("value_set_entry_add", {{"sess_hdl"}, {"parser_tgt"}, value, mask, {"pvs_entry_hdl_out"}}));
  to.push_back(
      function_builder("value_set_entry_modify", v, "entry_modify")
          .brief("Changes value and mask of an entry of the value set " + v.name + ".")
          .calls_with_row("value_set_entry_modify", {{"sess_hdl"}, {"whole_dev_id"}, {"pvs_entry_hdl"}, value, mask}));
  to.push_back(function_builder("value_set_entry_delete", v, "entry_delete")
                   .brief("Deletes an entry of the value set " + v.name + ".")
                   .calls_with_row("value_set_entry_delete", {{"sess_hdl"}, {"whole_dev_id"}, {"pvs_entry_hdl"}}));
}

}  // namespace catalogue
