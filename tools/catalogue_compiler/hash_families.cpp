// Families over hash calculations, by name.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

namespace {

constexpr const char *plain_status = "0, or the driver's status";
constexpr const char *get_status =
    "PD_STATUS_INVALID_ARG if the driver names nothing that is the calculation's, as it does when it fails; else the "
    "driver's status, 0 as a rule";

/// Input, algorithm and seed.
void add_settings(std::vector<exported_function> &to, const hash_calculation &h)
{
  const auto add = [&](std::string_view family, const std::string &operation, const std::string &brief,
                       const char *returns, const slot &value) {
    to.push_back(function_builder(family, h, export_prefix + "hash_calc_" + h.name + "_" + operation)
                     .brief(brief)
                     .result(result_kind::status, returns)
                     .calls_with_row(family, {{"sess_hdl"}, {"dev_id"}, value}));
  };
  const std::string of = " of the hash calculation " + h.name;
  const slot number{"hash_number", {}, "0, the only one; the driver gets handle 0 for any other"};
  add("hash_input_set", "input_set", "Sets the input" + of + ": its whole field list.", plain_status, number);
  add("hash_input_get", "input_get", "Reads the input" + of + ", whichever of its fields are selected.", get_status,
      {"hash_number_out"});
  add("hash_algorithm_set", "algorithm_set", "Sets the algorithm" + of + ".", plain_status, number);
  add("hash_algorithm_get", "algorithm_get", "Reads the algorithm" + of + ".", get_status, {"hash_number_out"});
  add("hash_seed_set", "seed_set", "Sets the seed" + of + ".", plain_status, {"seed"});
  add("hash_seed_get", "seed_get", "Reads the seed" + of + ".", plain_status, {"seed_out"});
}

/// Selection of single input fields.
void add_field_attributes(std::vector<exported_function> &to, const hash_calculation &h)
{
  const std::string stem = export_prefix + "hash_calc_" + h.name + "_input_field_attribute_";
  to.push_back(
      function_builder("hash_field_count_get", h, stem + "count_get")
          .brief("Counts the input fields of the hash calculation " + h.name + ". Makes no driver call.")
          .result(result_kind::status, "0, or PD_STATUS_INVALID_ARG with a count of 0 for another input than 0")
          .calls_with_row("hash_field_count_get",
                          {{"sess_hdl"}, {"dev_id"}, {"hash_number"}, {"hash_attr_count_out"}}));
  to.push_back(function_builder("hash_fields_set", h, stem + "set")
                   .brief("Selects input fields of the hash calculation " + h.name + ".")
                   .details("A field that no record names is not selected; one that any of its records selects is.")
                   .result(result_kind::status,
                           "0, the driver's status, or PD_STATUS_INVALID_ARG for no record at all, an input other than "
                           "0, a list that does not name the last field or names one beyond it, or an input of the "
                           "driver that is not the calculation's")
                   .calls_with_row("hash_fields_set",
                                   {{"sess_hdl"}, {"dev_id"}, {"hash_number"}, {"hash_attr_count"}, {"hash_attrs"}}));
  to.push_back(function_builder("hash_fields_get", h, stem + "get")
                   .brief("Tells which input fields of the hash calculation " + h.name + " are selected.")
                   .result(result_kind::status,
                           "0, the driver's status, or PD_STATUS_INVALID_ARG if the driver fails or has another "
                           "calculation's input, for an input other than 0, and for too little room: then what "
                           "fitted is there")
                   .calls_with_row("hash_fields_get", {{"sess_hdl"},
                                                       {"dev_id"},
                                                       {"hash_number"},
                                                       {"hash_attr_max"},
                                                       {"hash_attrs_out"},
                                                       {"hash_attr_count_out"}}));
}

void add_field_numbers(std::vector<exported_function> &to, const hash_calculation &h)
{
  to.push_back(
      function_builder("hash_common_field", h, export_prefix + h.name + "_cmn_field_enum")
          .brief("The common number of an input field of the hash calculation " + h.name + ".")
          .details("The calculation has " + std::to_string(h.fields) +
                   " fields, from 0 on; a number beyond them stops the process.")
          .result(result_kind::number, "the common number")
          .calls_with_row("hash_common_field", {{{}, "__func__"}, {"hash_field", {}, "the calculation's own number"}}));
  to.push_back(function_builder("hash_own_field", h, export_prefix + h.name + "_p4_field_enum")
                   .brief("The own number of an input field of the hash calculation " + h.name + ".")
                   .result(result_kind::number,
                           "the calculation's own number, or 0xffffffff for a common number that it does not have")
                   .calls_with_row("hash_own_field", {{"hash_field", {}, "a common number"}}));
}

}  // namespace

void add_hash_families(std::vector<exported_function> &to, const hash_calculation &h)
{
  add_settings(to, h);
  add_field_attributes(to, h);
  add_field_numbers(to, h);
}

}  // namespace catalogue
