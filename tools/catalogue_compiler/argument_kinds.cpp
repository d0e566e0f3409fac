// SPDX-License-Identifier: Apache-2.0
#include "argument_kinds.h"

#include <stdexcept>
#include <string>

namespace catalogue {

namespace {

constexpr argument_kind_row kind_rows[] = {
    // Who and where.
    {"sess_hdl", "pd_sess_hdl_t ", "sess_hdl", "session with the driver"},
    {"dev_tgt", "pd_dev_tgt_t ", "dev_tgt", "device and pipe, from pd_dev_tgt()"},
    {"dev_id", "pd_dev_id_t ", "dev_id", "the device, its low 8 bits"},
    {"whole_dev_id", "uint32_t ", "dev_id", "the device; all 32 bits are handed on"},
    // Entries on the way to the driver.
    {"entry_hdl", "pd_entry_hdl_t ", "entry_hdl", "the entry"},
    {"match_spec", "const {key} *", "match_spec", "key of the entry; read during the call only"},
    {"priority", "uint32_t ", "priority", "priority of the entry, the smaller wins"},
    {"action_spec", "const {params} *", "action_spec", "parameters of the action; read during the call only"},
    {"ttl", "uint32_t ", "ttl", "time to live without a hit, in the driver's unit"},
    {"meter_spec", "const pd_meter_spec_t *", "stormControlMeter_spec", "value of the entry's meter"},
    {"entry_hdl_out", "pd_entry_hdl_t *", "entry_hdl", "where the driver writes the handle of the entry"},
    // Entries on the way back.
    {"read_from_hw", "pd_flag8_t ", "read_from_hw", "not 0: the driver reads the hardware; low 8 bits"},
    {"match_spec_out", "{key} *", "match_spec", "receives the key, unless the entry has none"},
    {"priority_out", "uint32_t *", "priority", "receives the priority, with or without a key"},
    {"action_name_out", "char *", "action_name",
     "receives the action's name with its prefix and NUL, at most {PREFIX}ACTION_NAME_SIZE bytes; may be null"},
    {"any_action_spec_out", "void *", "action_spec",
     "receives the parameters of the action that the entry has, in that action's structure: give room for the largest "
     "of the table; that of plcmt_action_t does for all. Not written for an action without parameters"},
    {"action_enum_out", "uint32_t *", "action_enum", "receives the action's enumeration value; may be null"},
    {"no_key_out", "uint8_t *", "no_key", "receives 1 if the entry has no key, as a default entry, else 0"},
    {"is_member_out", "uint8_t *", "is_member", "receives 1 if the entry points at a member, else 0"},
    {"is_group_out", "uint8_t *", "is_group", "receives 1 if the entry points at a group, else 0"},
    {"grp_hdl_out", "pd_grp_hdl_t *", "grp_hdl", "receives the group; written only with is_group"},
    {"mbr_hdl_out", "pd_mbr_hdl_t *", "mbr_hdl", "receives the member; written only with is_member"},
    {"entry_count_out", "uint32_t *", "count", "where the driver writes the count, in the driver's width"},
    {"handle_count", "uint32_t ", "n", "handles asked for"},
    {"next_entry_hdls_out", "pd_entry_hdl_t *", "next_entry_hdls", "where the driver writes the handles; room for n"},
    {"next_mbr_hdls_out", "pd_mbr_hdl_t *", "next_mbr_hdls", "where the driver writes the handles; room for n"},
    {"next_grp_hdls_out", "pd_grp_hdl_t *", "next_grp_hdls", "where the driver writes the handles; room for n"},
    // Members and groups.
    {"mbr_hdl", "pd_mbr_hdl_t ", "mbr_hdl", "the member"},
    {"grp_hdl", "pd_grp_hdl_t ", "grp_hdl", "the group"},
    {"max_grp_size", "uint32_t ", "max_grp_size", "members that the group will have at most"},
    {"member_state", "uint32_t ", "state", "P4_PD_GRP_MBR_STATE_ACTIVE or P4_PD_GRP_MBR_STATE_INACTIVE"},
    {"member_state_out", "uint32_t *", "state",
     "receives the state; stays as it was if the driver names neither of the two"},
    {"plcmt_data", "const void *", "plcmt_data", "placement data; only the driver reads it"},
    {"member_action_out", "plcmt_action_t *", "action",
     "receives the member's action and, if the action has any, its parameters"},
    // Counters, meters, WRED and registers.
    {"cell_index", "uint32_t ", "index", "index of the cell"},
    {"read_flags", "uint32_t ", "flags", "bit 0: read from the hardware; no other bit has a meaning"},
    {"counter_value", "pd_counter_value_t ", "value", "counts of packets and of bytes, by value"},
    {"counter_value_out", "pd_counter_value_t *", "value",
     "receives the counts of packets and of bytes; stays as it was after a failure"},
    {"meter_value", "const pd_meter_spec_t *", "meter_spec",
     "rates and bursts in bytes, in the driver's scale; read during the call only"},
    {"meter_value_out", "pd_meter_spec_t *", "meter_spec",
     "receives rates and bursts, the low 32 bits of each; stays as it was after a failure"},
    {"wred_value", "const pd_wred_spec_t *", "wred_spec", "value, handed on bit for bit; read during the call only"},
    {"wred_value_out", "pd_wred_spec_t *", "wred_spec", "receives the value; stays as it was after a failure"},
    {"register_value", "const uint8_t *", "value", "one byte: 0, or anything else for 1; read during the call only"},
    {"register_values_out", "uint8_t *", "values",
     "receives one byte for each value: the first of every row, then the second of every row, and so on. Give room for "
     "rows times values a row, which the driver decides, of each index"},
    {"register_value_count_out", "uint32_t *", "value_count", "receives the number of values written"},
    {"first_index", "uint32_t ", "first_index", "index of the first cell"},
    {"range_count", "uint32_t ", "count", "number of cells"},
    {"signed_range_count", "int32_t ", "count", "number of cells; 0 or fewer reads nothing"},
    {"range_count_read_out", "uint32_t *", "count_read",
     "receives the number of cells that the driver says it has read"},
    {"index_handle", "uint32_t ", "hdl", "handle of the resource"},
    {"has_pre_color", "pd_flag8_t ", "has_pre_color", "not 0: the meter has a pre-colour input; low 8 bits"},
    {"stful_query", "drv_stful_query_t *", "query", "counts and rows of the caller's; the driver fills them"},
    {"stful_spec", "drv_stful_spec_t *", "value", "the value in its first byte"},
    {"register_word", "const uint64_t *", "value", "value of 64 bits"},
    // Hash calculations.
    {"hash_number", "uint32_t ", "number", "0, the only one"},
    {"hash_number_out", "uint32_t *", "number", "receives 0, the only one; stays as it was with PD_STATUS_INVALID_ARG"},
    {"seed", "uint64_t ", "seed", "all 64 bits are handed on"},
    {"seed_out", "uint64_t *", "seed", "where the driver writes the seed"},
    {"hash_attr_count", "uint32_t ", "count", "number of records"},
    {"hash_attrs", "const hash_calc_attr_t *", "attrs",
     "one record for each field, by the calculation's own number; read during the call only"},
    {"hash_attr_max", "uint32_t ", "max", "records that there is room for"},
    {"hash_attrs_out", "hash_calc_attr_t *", "attrs",
     "receives field and value of each field; attr_type is not written"},
    {"hash_attr_count_out", "uint32_t *", "count", "receives the number of fields or records"},
    {"hash_field", "uint32_t ", "field", "number of a field"},
    {"calc_name", "const char *", "calc_name", "name of the calculation"},
    // Text.
    {"text_buffer", "char *", "buf", "receives the text and its NUL; the caller gives the room"},
    {"fd", "int32_t ", "fd", "descriptor, open for writing"},
    {"indent", "int32_t ", "indent", "columns ahead of each line"},
    {"table_handle", "uint32_t ", "tbl_hdl", "handle of a table, or of a profile's action data table"},
    // Snapshots.
    {"stage", "pd_stage_t ", "stage", "stage of the pipeline, its low 8 bits"},
    {"snapshot_direction", "uint32_t ", "direction", "ingress or egress, as the driver numbers them"},
    {"snapshot_hdl", "pd_snapshot_hdl_t ", "hdl", "the snapshot"},
    {"snapshot_hdl_out", "pd_snapshot_hdl_t *", "hdl", "where the driver writes the handle"},
    {"trigger_record", "const snap_trig_spec_t *", "record", "values or masks; read during the call only"},
    {"trigger_record_out", "snap_trig_spec_t *", "record", "values or masks; the field's are written"},
    {"pipe", "pd_pipe_t ", "pipe", "the pipe, its low 16 bits"},
    {"capture_area_out", "void *", "capture", "receives the capture records"},
    {"capture_count_out", "uint32_t *", "num_captures", "receives the number of records"},
    {"snapshot_field_name", "const char *", "name", "name of the field, exactly; may be null"},
    {"snapshot_field_words", "const uint32_t *", "value", "one word, or 16 for a field of 16 bytes"},
    {"snapshot_context", "uint32_t ", "ctx", "handed to each call"},
    {"snapshot_list_callback", "pd_snapshot_list_cb_t ", "callback", "called during this call only"},
    {"snapshot_show_callback", "pd_snapshot_show_cb_t ", "callback", "called during this call only"},
    {"capture_fields", "const uint8_t *", "fields", "field data of a capture; read during the call only"},
    {"capture_index", "int32_t ", "index", "number of the record"},
    {"is_egress", "uint32_t ", "is_egress", "not 0: of an egress snapshot"},
    {"capture_area", "const void *", "capture", "area that holds the records; read during the call only"},
    {"first_byte_out", "uint32_t *", "first_byte", "receives byte 0 of the record"},
    {"capture_ctrl_out", "uint8_t *", "ctrl", "receives the control data"},
    {"capture_fields_out", "uint8_t *", "fields", "receives the field data"},
    // Digest and value set.
    {"digest_message", "void *", "digest_msg", "message that the driver handed to the callback"},
    {"timeout", "uint32_t ", "timeout", "in the driver's unit"},
    {"digest_name", "const char *", "digest_name", "name of the digest"},
    {"digest_entry", "void *", "entry", "an entry of the digest"},
    {"digest_field_name", "const char *", "field_name", "name of the field"},
    {"digest_field_size_out", "uint32_t *", "size", "receives the field's bytes"},
    {"parser_tgt", "pd_parser_tgt_t ", "tgt", "where the entry applies, by value"},
    {"parser_value", "uint32_t ", "parser_value", "value, or mask"},
    {"pvs_entry_hdl", "uint32_t ", "pvs_entry_hdl", "entry of the value set"},
    {"pvs_entry_hdl_out", "uint32_t *", "pvs_entry_hdl", "receives the entry of the value set"},
    // Driver records.
    {"drv_match_spec", "const drv_match_spec_t *", "drv_match_spec", "record that the driver has filled"},
    {"drv_act_data", "const drv_act_data_t *", "act_data", "action data that the driver has filled"},
    {"res_list", "const pd_res_spec_t *", "resources",
     "resources attached to the entry; may be null with a count of 0"},
    {"res_count", "uint32_t ", "res_count", "elements of the list"},
    {"action_spec_out", "{params} *", "action_spec", "receives the parameters; room in the structure is cleared"},
    // Properties, callbacks and handles.
    {"property", "uint32_t ", "property", "number of the property, as the driver counts them"},
    {"property_value", "uint32_t ", "value", "value of the property"},
    {"property_argument", "uint32_t ", "argument", "argument of the property"},
    {"property_value_out", "uint32_t *", "value", "receives the value, or 0xffffffff if the driver fails"},
    {"property_argument_out", "uint32_t *", "argument", "receives the argument, or 0xffffffff if the driver fails"},
    {"callback", "pd_callback_t ", "cb", "function that the driver keeps and calls; its signature is the driver's"},
    {"cookie", "void *", "cookie", "handed to the callback; the caller's"},
    {"table_handle_out", "uint32_t *", "tbl_hdl", "receives the handle; may be null"},
    // Idle time.
    {"idle_params", "pd_idle_params_t ", "params",
     "settings of the idle time, by value; their meaning is the driver's"},
    {"word", "uintptr_t ", "word", "handed on as it is"},
    {"hit_state_out", "uint32_t *", "hit_state", "receives the hit state; written whatever the status"},
    {"ttl_out", "uint32_t *", "ttl", "where the driver writes the ttl, in its unit"},
    // Start, stop, device events and names.
    {"log", "struct cJSON *", "log", "a JSON object that stays the driver's; may be null"},
    {"action_enum", "uint32_t ", "action", "enumeration value"},
    {"action_name", "const char *", "name", "name with its prefix; may be null"},
};

}  // namespace

std::span<const argument_kind_row> argument_kinds() { return kind_rows; }

const argument_kind_row &argument_kind(std::string_view kind)
{
  for (const argument_kind_row &row : kind_rows)
    if (row.kind == kind) return row;
  throw std::logic_error("no argument kind '" + std::string(kind) + "'");
}

}  // namespace catalogue
