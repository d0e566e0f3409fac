// Every exported function of the library by name, with its address and the kind of each argument, and the catalogue's
// rows as they stand at run time. Whoever goes over all functions (tests, fault walkers, fuzzers, the shell) goes over
// this table, so that nobody lists functions by hand. It holds no logic and is no part of the library.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

namespace tarvex::calls {

enum class match_kind : std::uint8_t { exact, ternary, lpm, partition };
enum class table_kind : std::uint8_t { keyless, exact, ternary, lpm };
enum class resource_form : std::uint8_t { direct_counter, direct_meter, direct_register, indexed, detached };
enum class resource_kind : std::uint8_t { counter, meter, wred, register_ };

struct field_info {
  const char *name;
  const char *short_name;
  const char *display;  // null for none
  std::uint16_t bits;
  std::uint16_t member;  // offset in the caller's structure
  std::uint16_t member_size;
  std::uint16_t companion;  // offset of the mask or of the prefix length
  std::uint16_t key_at;
  std::uint16_t key_size;
  match_kind match;
  std::uint8_t live[16];  // bits that the pipeline matches on, most significant byte first, right-aligned
  std::int16_t low_half;  // of the upper half of a MAC address: place of the lower one among the fields; else -1
};

struct param_info {
  const char *name;
  const char *display;
  std::uint16_t bits;
  std::uint16_t member;
  std::uint16_t member_size;
  std::uint16_t data_at;
  std::uint16_t data_size;
  bool resource_index;
  std::int16_t low_half;  // as a field's
};

struct action_info {
  const char *name;
  const char *about;  // a sentence, or ""
  std::uint16_t enum_value;
  std::uint16_t data_bits;
  std::uint16_t data_bytes;
  std::uint16_t record_size;
  std::span<const param_info> params;
  std::span<const std::uint32_t> index_resources;
};

struct resource_use_info {
  std::uint32_t handle;
  resource_form form;
};

/// An action as a table or a profile has it.
struct use_info {
  std::uint32_t handle;
  const action_info *action;
  bool is_default;
  std::span<const resource_use_info> resources;
};

struct profile_info {
  const char *name;
  std::uint32_t action_data_table;
  std::uint32_t selector_table;
  std::uint32_t table;
  std::span<const use_info> actions;
};

struct table_info {
  const char *name;
  const char *about;  // a sentence, or ""
  std::uint32_t handle;
  table_kind kind;
  std::uint16_t key_bits;
  std::uint16_t key_bytes;
  std::uint16_t record_size;
  bool idle_time;
  bool counter_label;
  const profile_info *profile;         // of an indirect table
  std::span<const field_info> fields;  // key order
  std::span<const use_info> actions;
};

struct resource_info {
  const char *name;
  std::uint32_t handle;
  resource_kind kind;
  bool direct;
  std::uint32_t table;  // 0 where no table has it
};

struct hash_info {
  const char *name;
  std::uint32_t handle;
  std::uint32_t first_input;
  std::span<const std::uint32_t> common;      // common number of each field
  std::span<const std::uint32_t> algorithms;  // handles
};

struct digest_field_info {
  const char *name;
  const char *short_name;
  const char *word;  // by which a command gives it
  std::uint16_t bits;
  std::uint16_t offset;  // in an entry
  std::uint16_t size;
  std::int16_t low_half;
};

struct digest_info {
  const char *name;
  std::uint32_t handle;
  std::uint16_t entry_bytes;
  std::span<const digest_field_info> fields;
};

struct value_set_info {
  const char *name;
  std::uint32_t handle;
};

struct pipeline_info {
  const char *name;
  const char *profile;
  const char *library;      // without "lib" and ".so"
  const char *client;       // name under which the driver knows the library
  const char *sources;      // folder that failed assertions name
  std::string_view prefix;  // what exported functions begin with
};

/// What an exported function does; each is told once, and exists for many rows.
enum class family_id : std::uint8_t {
  lifecycle,
  unbuild_action_spec,
  entry_add,
  entry_modify,
  entry_modify_by_match_spec,
  entry_delete,
  entry_delete_by_match_spec,
  match_spec_to_entry_hdl,
  set_default_action,
  reset_default_entry,
  get_default_entry_handle,
  get_entry,
  get_indirect_entry,
  get_entry_count,
  get_first_entry_handle,
  get_next_entry_handles,
  unbuild_key,
  unbuild_mask,
  set_property,
  get_property,
  register_mat_update_cb,
  get_mat_table_handle,
  idle_tmo_enable,
  idle_tmo_disable,
  idle_register_tmo_cb,
  set_ttl,
  get_ttl,
  update_hit_state,
  get_hit_state,
  add_member,
  modify_member,
  del_member,
  register_callback,
  create_group,
  del_group,
  add_member_to_group,
  del_member_from_group,
  group_member_state_set,
  group_member_state_get,
  set_fallback_member,
  reset_fallback_member,
  sel_track_updates,
  get_member,
  get_member_from_plcmt_data,
  get_full_member_info_from_plcmt_data,
  get_first_of_profile,
  get_next_of_profile,
  get_profile_count,
  register_profile_update_cb,
  get_profile_table_handle,
  get_first_group_member,
  get_next_group_members,
  add_indirect_entry,
  modify_indirect_entry,
  modify_indirect_entry_by_match_spec,
  set_indirect_default,
  digest_register,
  digest_deregister,
  digest_notify_ack,
  learning_digest,
  value_set_set_property,
  value_set_get_property,
  value_set_entry_add,
  value_set_entry_modify,
  value_set_entry_delete,
  meter_access,
  register_access,
  hash_access,
  counter_read,
  counter_write,
  counter_hw_sync,
  meter_set,
  meter_read,
  wred_set,
  wred_read,
  register_read,
  register_range_read,
  register_write,
  register_write_all,
  register_reset_all,
  register_range_reset,
  register_hw_sync,
  hash_input_set,
  hash_input_get,
  hash_algorithm_set,
  hash_algorithm_get,
  hash_seed_set,
  hash_seed_get,
  hash_field_count_get,
  hash_fields_set,
  hash_fields_get,
  hash_common_field,
  hash_own_field,
  match_spec_schema,
  match_spec_value,
  match_spec_print,
  match_specs_are_equal,
  field_width,
  get_entry_from_plcmt_data,
  get_indirect_entry_from_plcmt_data,
  plcmt_data_print,
  plcmt_data_value,
  plcmt_data_eq_to_hw,
  match_spec_stringify_for_counter,
  stringify_counter_match_spec,
  table_schema,
  table_value,
  supports_entry_priority,
  action_schema,
  action_value,
  action_print,
  action_specs_are_equal,
  profile_schema,
  adt_plcmt_data_print,
  adt_plcmt_data_value,
  dispatch,
  snapshot,
};

enum class result_kind : std::uint8_t { status, none, number, text, pointer, count, truth };

/// Kinds of arguments; "_out" receives, the others are read.
enum class argument_kind : std::uint8_t {
  sess_hdl,
  dev_tgt,
  dev_id,        // cut to 8 bits
  whole_dev_id,  // 32 bits
  entry_hdl,
  match_spec,
  priority,
  action_spec,
  ttl,
  meter_spec,
  entry_hdl_out,
  read_from_hw,  // cut to 8 bits
  match_spec_out,
  priority_out,
  action_name_out,
  any_action_spec_out,
  action_enum_out,
  no_key_out,
  is_member_out,
  is_group_out,
  grp_hdl_out,
  mbr_hdl_out,
  entry_count_out,
  handle_count,
  next_entry_hdls_out,
  next_mbr_hdls_out,
  next_grp_hdls_out,
  drv_match_spec,
  drv_act_data,
  res_list,
  res_count,
  action_spec_out,
  property,
  property_value,
  property_argument,
  property_value_out,
  property_argument_out,
  callback,
  cookie,
  table_handle_out,
  idle_params,  // by value, 40 bytes
  word,
  hit_state_out,
  ttl_out,
  log,
  action_enum,
  action_name,
  mbr_hdl,
  grp_hdl,
  max_grp_size,
  member_state,
  member_state_out,
  plcmt_data,
  member_action_out,
  cell_index,
  read_flags,
  counter_value,  // by value, 16 bytes
  counter_value_out,
  meter_value,
  meter_value_out,
  wred_value,
  wred_value_out,
  register_value,
  register_values_out,
  register_value_count_out,
  first_index,
  range_count,
  signed_range_count,
  range_count_read_out,
  index_handle,
  has_pre_color,  // cut to 8 bits
  stful_query,
  stful_spec,
  register_word,
  hash_number,
  hash_number_out,
  seed,
  seed_out,
  hash_attr_count,
  hash_attrs,
  hash_attr_max,
  hash_attrs_out,
  hash_attr_count_out,
  hash_field,
  calc_name,
  digest_message,
  timeout,
  digest_name,
  digest_entry,
  digest_field_name,
  digest_field_size_out,
  parser_tgt,  // by value, 12 bytes
  parser_value,
  pvs_entry_hdl,
  pvs_entry_hdl_out,
  text_buffer,
  fd,
  indent,
  table_handle,
  stage,  // cut to 8 bits
  snapshot_direction,
  snapshot_hdl,
  snapshot_hdl_out,
  trigger_record,
  trigger_record_out,
  pipe,  // cut to 16 bits
  capture_area_out,
  capture_count_out,
  snapshot_field_name,
  snapshot_field_words,
  snapshot_context,
  snapshot_list_callback,
  snapshot_show_callback,
  capture_fields,
  capture_index,
  is_egress,
  capture_area,
  first_byte_out,
  capture_ctrl_out,
  capture_fields_out,
};

/// How an argument is passed: in a register, of 32 bits or fewer or of 64, or as a record by value.
enum class argument_form : std::uint8_t { number, word, pointer, record };

struct argument_row {
  argument_kind kind;
  argument_form form;
  std::uint16_t size;  // of the record, by value or pointed at; 0 where the row or the driver decides
};

/// An argument of a C type; {key} and {params} structures are pointers to void here.
template <typename T>
constexpr argument_row passed_as(argument_kind kind)
{
  using pointee = std::remove_pointer_t<T>;
  if constexpr (std::is_pointer_v<T> && !std::is_function_v<pointee>) {
    if constexpr (!std::is_void_v<pointee> && requires { sizeof(pointee); }) {
      return {kind, argument_form::pointer, sizeof(pointee)};
    } else {
      return {kind, argument_form::pointer, 0};
    }
  } else if constexpr (std::is_class_v<T>) {
    return {kind, argument_form::record, sizeof(T)};
  } else {
    return {kind, sizeof(T) > sizeof(std::uint32_t) ? argument_form::word : argument_form::number, sizeof(T)};
  }
}

using address = void (*)();

struct exported_function {
  const char *name;
  address function;
  family_id family;
  result_kind result;
  std::span<const argument_kind> arguments;
  const table_info *table;      // null where the function is of no table; a profile's is its indirect table
  const profile_info *profile;  // of a profile's function
  const use_info *use;
  const action_info *action;
  const resource_info *resource;
  const hash_info *hash;
};

// Generated. Tables in handle order, actions in enumeration order, profiles in the order of their states.
extern const pipeline_info pipeline;
extern const std::span<const argument_row> arguments;
extern const std::span<const exported_function> functions;
extern const std::span<const table_info> tables;
extern const std::span<const action_info> actions;
extern const std::span<const profile_info> profiles;
extern const std::span<const resource_info> resources;
extern const std::span<const hash_info> hashes;
extern const std::span<const digest_info> digests;        // one at most
extern const std::span<const value_set_info> value_sets;  // one at most

}  // namespace tarvex::calls
