// Families of the text face: schema, value and print text, placement data, labels, equality, widths.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

namespace {

constexpr const char *text_length = "characters written, without the NUL";
constexpr const char *last_line = "characters of the last line, or a negative number if the descriptor did not take it";
constexpr const char *constant_text = "a constant string of the library";
constexpr const char *truth_of_equality = "1 for equal, 0 for different";

constexpr const char *stops =
    "A reply of the driver that contradicts the pipeline, such as an action of another table, stops the process.";

constexpr slot schema_buffer{"text_buffer", {}, "receives the text and its NUL, at most PD_SCHEMA_TEXT_SIZE bytes"};
constexpr slot entry_buffer{"text_buffer", {}, "receives the text and its NUL, at most PD_ENTRY_TEXT_SIZE bytes"};
constexpr slot key_buffer{"text_buffer", {}, "receives the text and its NUL, at most PD_KEY_TEXT_SIZE bytes"};
constexpr slot action_buffer{"text_buffer", {}, "receives the text and its NUL, at most PD_ACTION_TEXT_SIZE bytes"};
constexpr slot label_buffer{"text_buffer", {}, "receives the text and its NUL, at most PD_LABEL_TEXT_SIZE bytes"};

/// Functions of a table and of an action that work on its text rows.
function_builder of_table_text(std::string_view family, const table &t, const std::string &operation)
{
  return function_builder(family, t, operation).row(table_text_descriptor(t));
}

function_builder of_action_text(std::string_view family, const action &a, const std::string &operation)
{
  return function_builder(family, export_prefix + a.name + "_" + operation)
      .action_row(a)
      .row(action_text_descriptor(a));
}

std::string decode_failure(const std::string &what) { return "After a failure no output is written. " + what; }

void add_key_texts(std::vector<exported_function> &to, const table &t)
{
  to.push_back(of_table_text("match_spec_schema", t, "match_spec_schema")
                   .brief("The key fields of " + t.name + " as a literal.")
                   .result(result_kind::text, constant_text)
                   .gives(table_text_descriptor(t) + ".key_schema.data()"));
  to.push_back(of_table_text("match_spec_value", t, "match_spec_value")
                   .brief("Writes a key as a literal in step with the schema, values in hexadecimal.")
                   .result(result_kind::number, text_length)
                   .calls_with_row("match_spec_value", {{"match_spec"}, key_buffer}));
  to.push_back(of_table_text("match_spec_print", t, "match_spec_print")
                   .brief("Prints a key, one line for each field.")
                   .result(result_kind::count, last_line)
                   .calls_with_row("match_spec_print", {{"fd"}, {"indent"}, {"match_spec"}}));
  to.push_back(
      of_table_text("match_specs_are_equal", t, "match_specs_are_equal")
          .brief("Compares two keys in the bits that the pipeline matches on.")
          .result(result_kind::truth, truth_of_equality)
          .calls_with_row("match_specs_are_equal", {{"match_spec", {}, "a key"}, {"match_spec", {}, "another"}}));
  for (const field &f : t.fields) {
    // A validity bit is named after its header.
    to.push_back(function_builder("field_width", t, (f.header.empty() ? f.name : f.header) + "_width")
                     .brief("Width of the key field " + f.name + ".")
                     .result(result_kind::number, "bits")
                     .gives(std::to_string(f.bits)));
  }
}

void add_placement(std::vector<exported_function> &to, const table &t)
{
  const slot key = when(t.keyed(), "match_spec_out", "nullptr");
  const slot priority = when(t.priority(), "priority_out", "nullptr");
  if (t.indirect()) {
    to.push_back(
        function_builder("get_indirect_entry_from_plcmt_data", t, "get_entry_from_plcmt_data")
            .seldom()
            .brief("Decodes an entry from placement data.")
            .details(decode_failure("Data that points at neither a member nor a group leaves both flags as "
                                    "they are."))
            .calls("get_indirect_entry_from_placement", {{"plcmt_data"},
                                                         key,
                                                         priority,
                                                         {"mbr_hdl_out", {}, "receives the member, if it is one"},
                                                         {"grp_hdl_out", {}, "receives the group, if it is one"},
                                                         {"is_member_out"},
                                                         {"is_group_out"},
                                                         {"no_key_out"}}));
  } else {
    to.push_back(function_builder("get_entry_from_plcmt_data", t, "get_entry_from_plcmt_data")
                     .seldom()
                     .brief("Decodes an entry from placement data.")
                     .details(decode_failure("An action of the driver's reply that the table does not have stops the "
                                             "process."))
                     .result(result_kind::status, "0, the driver's status, or PD_STATUS_NO_MEMORY")
                     .calls("get_entry_from_placement",
                            {{{}, "__func__"},
                             {"plcmt_data"},
                             key,
                             priority,
                             {"member_action_out", {}, "receives the action and, if it has any, its parameters"},
                             {"no_key_out"}}));
  }
  to.push_back(of_table_text("plcmt_data_print", t, "plcmt_data_print")
                   .brief("Prints the entry that placement data describes.")
                   .details("Data that cannot be decoded is told in a line. " + std::string(stops))
                   .calls_with_row("plcmt_data_print", {{"fd"}, {"indent"}, {"plcmt_data"}}));
  to.push_back(of_table_text("plcmt_data_value", t, "plcmt_data_value")
                   .brief("Writes the entry that placement data describes as a literal.")
                   .details(stops)
                   .result(result_kind::number, std::string(text_length) + "; 0 with the buffer untouched if the data "
                                                                           "cannot be decoded")
                   .calls_with_row("plcmt_data_value", {{"plcmt_data"}, entry_buffer}));
  to.push_back(of_table_text("plcmt_data_eq_to_hw", t, "plcmt_data_eq_to_hw")
                   .brief("Holds placement data against the entry that the hardware has.")
                   .details("Priorities may differ, and any group is equal to any other. " + std::string(stops))
                   .result(result_kind::truth,
                           "1 for equal, 0 for different; 0 too for data that the driver refuses and for an "
                           "entry that cannot be read")
                   .calls_with_row("plcmt_data_eq_to_hw", {{"sess_hdl"},
                                                           {"dev_id"},
                                                           {"table_handle", {}, "handle of the table; not looked at"},
                                                           {"entry_hdl"},
                                                           {"plcmt_data"}}));
}

void add_labels(std::vector<exported_function> &to, const table &t)
{
  if (!t.labelled()) return;
  to.push_back(function_builder("match_spec_stringify_for_counter", t, "match_spec_stringify_for_counter")
                   .brief("Writes a label for an entry's counter from its key.")
                   .result(result_kind::number, text_length)
                   .row(label_descriptor(t))
                   .calls_with_row("counter_label", {{"match_spec"}, label_buffer}));
  to.push_back(function_builder("stringify_counter_match_spec", t, "stringify_counter_match_spec")
                   .row(label_descriptor(t))
                   .brief("Reads an entry from the hardware and writes a label for its counter.")
                   .details(stops)
                   .result(result_kind::number, std::string(text_length) + "; 0 with the buffer untouched if the entry "
                                                                           "cannot be read or has no key")
                   .calls_with_row("entry_counter_label", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}, label_buffer}));
}

}  // namespace

void add_table_text_families(std::vector<exported_function> &to, const table &t)
{
  to.push_back(of_table_text("table_schema", t, "schema")
                   .brief("Writes the shape of the table as a literal: its key fields and its actions.")
                   .result(result_kind::count, text_length)
                   .calls_with_row("table_schema", {schema_buffer}));
  to.push_back(
      of_table_text("table_value", t, "value")
          .brief("Reads an entry and writes it as a literal in step with the schema.")
          .details(stops)
          .result(result_kind::number,
                  std::string(text_length) + "; 0 with the buffer untouched if the entry cannot be read")
          .calls_with_row("table_value", {{"sess_hdl"}, {"dev_id"}, {"entry_hdl"}, {"read_from_hw"}, entry_buffer}));
  to.push_back(function_builder("supports_entry_priority", t, "supports_entry_priority")
                   .brief("Whether entries of the table have a priority.")
                   .result(result_kind::number, "1 or 0")
                   .gives(t.priority() ? "1" : "0"));
  if (t.keyed()) add_key_texts(to, t);
  add_placement(to, t);
  add_labels(to, t);
}

void add_action_text_families(std::vector<exported_function> &to, const action &a)
{
  const bool has_params = !a.params.empty();
  const slot spec = when(has_params, "action_spec", "nullptr");
  to.push_back(of_action_text("action_schema", a, "schema")
                   .brief("The parameters of " + a.name + " as a literal.")
                   .result(result_kind::text, constant_text)
                   .gives(action_text_descriptor(a) + ".schema.data()"));
  to.push_back(of_action_text("action_value", a, "value")
                   .brief("Writes the action " + a.name + " as a literal in step with the schema.")
                   .result(result_kind::number, text_length)
                   .calls_with_row("action_value", {spec, action_buffer}));
  if (!has_params) return;
  to.push_back(of_action_text("action_print", a, "print")
                   .brief("Prints the parameters of " + a.name + ", one line for each.")
                   .result(result_kind::count, last_line)
                   .calls_with_row("action_print", {{"fd"}, {"indent"}, {"action_spec"}}));
  to.push_back(of_action_text("action_specs_are_equal", a, "action_specs_are_equal")
                   .brief("Compares two sets of parameters of " + a.name + " in the bits of their widths.")
                   .result(result_kind::truth, truth_of_equality)
                   .calls_with_row("action_specs_are_equal",
                                   {{"action_spec", {}, "parameters"}, {"action_spec", {}, "others"}}));
}

void add_profile_text_families(std::vector<exported_function> &to, const model &m, const profile &p)
{
  to.push_back(function_builder("profile_schema", m, p, "schema")
                   .row(profile_text_descriptor(p))
                   .brief("Writes the actions of the profile as a literal.")
                   .result(result_kind::count, text_length)
                   .calls_with_row("profile_schema", {schema_buffer}));
  to.push_back(function_builder("adt_plcmt_data_print", m, p, "adt_plcmt_data_print")
                   .row(profile_text_descriptor(p))
                   .brief("Prints the member that placement data describes.")
                   .details("Data that cannot be decoded is told in a line. " + std::string(stops))
                   .calls_with_row("adt_plcmt_data_print", {{"fd"}, {"indent"}, {"plcmt_data"}}));
  to.push_back(function_builder("adt_plcmt_data_value", m, p, "plcmt_data_value")
                   .row(profile_text_descriptor(p))
                   .brief("Writes the member that placement data describes as a literal.")
                   .details(stops)
                   .result(result_kind::number, std::string(text_length) + "; 0 with the buffer untouched if the data "
                                                                           "cannot be decoded")
                   .calls_with_row("adt_plcmt_data_value", {{"plcmt_data"}, action_buffer}));
}

}  // namespace catalogue
