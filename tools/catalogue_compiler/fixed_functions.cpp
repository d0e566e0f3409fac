// Functions that exist once, whatever the rows. Templates of headers declare them; each forwards to a function of the
// same name in tarvex::pd.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

void add_fixed_functions(std::vector<exported_function> &to)
{
  std::string_view family = "lifecycle";
  const auto fixed = [&](const std::string &name, result_kind result, std::initializer_list<slot> slots) {
    to.push_back(function_builder(family, export_prefix + name).result(result, {}).forwards_to(name, slots));
  };
  // What stops the process names the exported function; the driver gets the addresses of exported ones.
  const slot function{{}, "__func__", "const char *function"};
  const std::string remove = export_prefix + "dev_remove", log = export_prefix + "dev_log",
                    restore = export_prefix + "dev_restore";
  fixed("init", result_kind::status,
        {function,
         {{}, remove, "device_removal on_remove"},
         {{}, log, "device_log on_log"},
         {{}, restore, "device_log on_restore"}});
  fixed("cleanup", result_kind::status, {});
  fixed("device_state_cleanup", result_kind::none, {});
  fixed("dev_remove", result_kind::status, {{"whole_dev_id"}});
  fixed("dev_log", result_kind::status, {{"whole_dev_id"}, {"log"}});
  fixed("dev_restore", result_kind::status, {{"whole_dev_id"}, {"log"}});
  fixed("restore_virtual_dev_state", result_kind::status, {{"word"}, {"word"}, {"word"}, {"word"}, {"word"}});
  fixed("action_enum_to_string", result_kind::text, {{"action_enum"}});
  fixed("action_string_to_enum", result_kind::number, {{"action_name"}});

  constexpr result_kind status = result_kind::status;
  family = "learning_digest";
  fixed("set_learning_timeout", status, {{"sess_hdl"}, {"dev_id"}, {"timeout"}});
  fixed("get_digest_entry_size", result_kind::number, {{"digest_name"}});
  fixed("get_digest_entry_field", result_kind::pointer,
        {{"digest_entry"}, {"digest_name"}, {"digest_field_name"}, {"digest_field_size_out"}});

  family = "meter_access";
  for (const std::string unit : {"bytes", "packets"}) {
    fixed(unit + "_meter_set", status,
          {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"cell_index"}, {"meter_value"}, {"has_pre_color"}});
    fixed(unit + "_meter_read", status,
          {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"cell_index"}, {"meter_value_out"}});
  }
  fixed("wred_set", status, {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"cell_index"}, {"wred_value"}});

  family = "register_access";
  fixed("register_read_direct", status,
        {{"sess_hdl"}, {"whole_dev_id"}, {"index_handle"}, {"entry_hdl"}, {"read_flags"}, {"stful_query"}});
  fixed("register_write_direct", status,
        {{"sess_hdl"}, {"dev_id"}, {"index_handle"}, {"entry_hdl"}, {"register_word"}});
  fixed("register_read_indirect", status,
        {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"cell_index"}, {"read_flags"}, {"stful_query"}});
  fixed("register_write_indirect", status,
        {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"cell_index"}, {"stful_spec"}});
  for (const std::string sort : {"direct", "indirect"})
    fixed("register_hw_sync_" + sort, status, {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"callback"}, {"cookie"}});
  fixed("register_reset_all_indirect", status, {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}});
  fixed("register_range_reset_indirect", status,
        {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"first_index"}, {"range_count"}});
  fixed("register_write_all_indirect", status, {{"sess_hdl"}, {"dev_tgt"}, {"index_handle"}, {"stful_spec"}});

  family = "dispatch";
  constexpr result_kind number = result_kind::number;
  const slot table{"table_handle"}, placed{"plcmt_data"}, text{"text_buffer"};
  fixed("entry_hdl_first", status, {{"sess_hdl"}, {"dev_tgt"}, table, {"entry_hdl_out"}});
  fixed("entry_hdl_next", status,
        {{"sess_hdl"}, {"dev_tgt"}, table, {"entry_hdl"}, {"handle_count"}, {"next_entry_hdls_out"}});
  fixed("entry_hdl_default", status, {{"sess_hdl"}, {"dev_tgt"}, table, {"entry_hdl_out"}});
  fixed("member_hdl_next", status,
        {{"sess_hdl"}, {"dev_tgt"}, table, {"mbr_hdl"}, {"handle_count"}, {"next_mbr_hdls_out"}});
  fixed("entry_value", number, {{"sess_hdl"}, {"dev_id"}, table, {"entry_hdl"}, {"read_from_hw"}, text});
  fixed("cli_schema", result_kind::count, {table, text});
  fixed("plcmt_data_print", status, {{"fd"}, {"indent"}, table, placed});
  fixed("adt_plcmt_data_print", status, {{"fd"}, {"indent"}, table, placed});
  fixed("plcmt_data_value", number, {table, placed, text});
  fixed("adt_plcmt_data_value", number, {table, placed, text});
  fixed("plcmt_data_eq_to_hw", result_kind::truth, {{"sess_hdl"}, {"dev_id"}, table, {"entry_hdl"}, placed});
  fixed("stringify_counter_matchspec", number, {{"sess_hdl"}, {"dev_id"}, table, {"entry_hdl"}, text});

  family = "snapshot";
  const slot snapshot{"snapshot_hdl"}, context{"snapshot_context"};
  fixed("snapshot_create", status, {{"dev_tgt"}, {"stage"}, {"stage"}, {"snapshot_direction"}, {"snapshot_hdl_out"}});
  fixed("snapshot_delete", status, {snapshot});
  fixed("snapshot_capture_trigger_set", status, {snapshot, {"trigger_record"}, {"trigger_record"}});
  fixed("snapshot_capture_data_get", status, {snapshot, {"pipe"}, {"capture_area_out"}, {"capture_count_out"}});
  fixed("snapshot_trig_spec_size", number, {});
  fixed("snapshot_capture_data_size", number, {});
  fixed("snapshot_capture_trigger_add", number,
        {snapshot, {"trigger_record_out"}, {"trigger_record_out"}, {"snapshot_field_name"}, {"snapshot_field_words"}});
  fixed("snapshot_capture_trigger_list", number, {context, snapshot, {"snapshot_list_callback"}, {"cookie"}});
  fixed("snapshot_capture_trigger_show", number,
        {context, snapshot, {"trigger_record"}, {"trigger_record"}, {"snapshot_show_callback"}});
  fixed("snapshot_capture_field_show", number, {context, snapshot, {"capture_fields"}, {"snapshot_show_callback"}});
  fixed("snapshot_capture_data_single_get", number,
        {{"capture_index"},
         {"is_egress"},
         {"capture_area"},
         {"first_byte_out"},
         {"capture_ctrl_out"},
         {"capture_fields_out"}});

  family = "hash_access";
  fixed("hash_calc_input_set", status, {{"sess_hdl"}, {"dev_id"}, {"calc_name"}});
  fixed("hash_calc_input_field_attribute_count_get", status,
        {{"sess_hdl"}, {"dev_id"}, {"calc_name"}, {"hash_attr_count_out"}});
  fixed("hash_calc_input_field_attribute_set", status,
        {{"sess_hdl"}, {"dev_id"}, {"calc_name"}, {"hash_attr_count"}, {"hash_attrs"}});
  fixed("hash_calc_input_field_attribute_get", status,
        {function,
         {"sess_hdl"},
         {"dev_id"},
         {"calc_name"},
         {"hash_attr_max"},
         {"hash_attrs_out"},
         {"hash_attr_count_out"}});
}

}  // namespace catalogue
