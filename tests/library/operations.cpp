// The interface, line by line: what exists, what it takes, what it asks of the driver.
//
// SPDX-License-Identifier: Apache-2.0
#include "reference.h"

#include <utility>

namespace tarvex::test {

using enum argument_kind;
using enum calls::family_id;
using enum derived;

namespace {

constexpr bool ignored = true;

// An entry of an indirect table: the state gives the action, and resources that go nowhere.
std::vector<driver_call> with_member(driver_call write)
{
  return {{"p4_pd_ms_get_mbr_act", {state, device, mbr_hdl, local}},
          {"p4_pd_ms_mbr_get_res", {state, device, mbr_hdl, local, local}, ignored},
          std::move(write)};
}

std::vector<driver_call> with_group(driver_call write)
{
  return {{"p4_pd_ms_get_grp_act", {state, device, grp_hdl, local}},
          {"p4_pd_ms_grp_get_res", {state, device, grp_hdl, local, local}, ignored},
          std::move(write)};
}

const driver_call indirect_add = {
    "pipe_mgr_mat_ent_add", {sess_hdl, dev_tgt, table, match_spec, answered, action_record, zero, zero, entry_hdl_out}};
const driver_call indirect_modify = {"pipe_mgr_mat_ent_set_action",
                                     {sess_hdl, dev_id, table, entry_hdl, answered, action_record, zero}};
const driver_call indirect_modify_by_key = {"pipe_mgr_mat_ent_set_action_by_match_spec",
                                            {sess_hdl, dev_tgt, table, match_spec, answered, action_record, zero}};
const driver_call indirect_default = {"pipe_mgr_mat_default_entry_set",
                                      {sess_hdl, dev_tgt, table, answered, action_record, zero, entry_hdl_out}};

}  // namespace

// A function a line, or two, to be read down the columns.
// clang-format off
const std::vector<operation> operations = {
    // entries
    {entry_add, "{table}_table_add_with_{action}", 262,
     {sess_hdl, dev_tgt, match_spec, priority, action_spec, ttl, meter_spec, entry_hdl_out},
     {{"pipe_mgr_mat_ent_add",
       {sess_hdl, dev_tgt, table, match_spec, action, action_record, ttl, zero, entry_hdl_out}}}},
    {entry_modify, "{table}_table_modify_with_{action}", 262, {sess_hdl, dev_id, entry_hdl, action_spec, meter_spec},
     {{"pipe_mgr_mat_ent_set_action", {sess_hdl, dev_id, table, entry_hdl, action, action_record, zero}}}},
    {entry_modify_by_match_spec, "{table}_table_modify_with_{action}_by_match_spec", 262,
     {sess_hdl, dev_tgt, match_spec, priority, action_spec, meter_spec},
     {{"pipe_mgr_mat_ent_set_action_by_match_spec",
       {sess_hdl, dev_tgt, table, match_spec, action, action_record, zero}}}},
    {entry_delete, "{table}_table_delete", 105, {sess_hdl, dev_id, entry_hdl},
     {{"pipe_mgr_mat_ent_del", {sess_hdl, dev_id, table, entry_hdl, zero}}}},
    {entry_delete_by_match_spec, "{table}_table_delete_by_match_spec", 105, {sess_hdl, dev_tgt, match_spec, priority},
     {{"pipe_mgr_mat_ent_del_by_match_spec", {sess_hdl, dev_tgt, table, match_spec, zero}}}},
    {match_spec_to_entry_hdl, "{table}_match_spec_to_entry_hdl", 105,
     {sess_hdl, dev_tgt, match_spec, priority, entry_hdl_out},
     {{"pipe_mgr_match_spec_to_ent_hdl", {sess_hdl, dev_tgt, table, match_spec, entry_hdl_out}}}},
    // default entries
    {set_default_action, "{table}_set_default_action_{action}", 183,
     {sess_hdl, dev_tgt, action_spec, meter_spec, entry_hdl_out},
     {{"pipe_mgr_mat_default_entry_set", {sess_hdl, dev_tgt, table, action, action_record, zero, entry_hdl_out}}}},
    {reset_default_entry, "{table}_table_reset_default_entry", 120, {sess_hdl, dev_tgt},
     {{"pipe_mgr_mat_tbl_default_entry_reset", {sess_hdl, dev_tgt, table, zero}}}},
    {get_default_entry_handle, "{table}_table_get_default_entry_handle", 120, {sess_hdl, dev_tgt, entry_hdl_out},
     {{"pipe_mgr_table_get_default_entry_handle", {sess_hdl, dev_tgt, table, entry_hdl_out}}}},
    // reading
    {get_entry, "{table}_get_entry", 115,
     {sess_hdl, dev_id, entry_hdl, read_from_hw, match_spec_out, priority_out, action_name_out, any_action_spec_out,
      action_enum_out, no_key_out},
     {{"pipe_mgr_get_entry", {sess_hdl, table, dev_id, entry_hdl, empty_key, empty_action, local, read_from_hw}}}},
    {get_indirect_entry, "{table}_get_entry", 5,
     {sess_hdl, dev_id, entry_hdl, read_from_hw, match_spec_out, priority_out, is_member_out, is_group_out, grp_hdl_out,
      mbr_hdl_out, no_key_out},
     {{"pipe_mgr_get_entry", {sess_hdl, table, dev_id, entry_hdl, empty_key, no_action, local, read_from_hw}}}},
    {get_entry_count, "{table}_get_entry_count", 120, {sess_hdl, dev_tgt, entry_count_out},
     {{"pipe_mgr_get_entry_count", {sess_hdl, dev_tgt, table, zero, entry_count_out}}}},
    {get_first_entry_handle, "{table}_get_first_entry_handle", 120, {sess_hdl, dev_tgt, entry_hdl_out},
     {{"pipe_mgr_get_first_entry_handle", {sess_hdl, table, dev_tgt, entry_hdl_out}}}},
    {get_next_entry_handles, "{table}_get_next_entry_handles", 120,
     {sess_hdl, dev_tgt, entry_hdl, handle_count, next_entry_hdls_out},
     {{"pipe_mgr_get_next_entry_handles", {sess_hdl, table, dev_tgt, entry_hdl, handle_count, next_entry_hdls_out}}}},
    {unbuild_key, "unbuild_key_{table}", 105, {drv_match_spec, match_spec_out}, {}},
    {unbuild_mask, "unbuild_mask_{table}", 41, {drv_match_spec, match_spec_out}, {}},
    {unbuild_action_spec, "unbuild_action_spec_{action}", 120, {drv_act_data, res_list, res_count, action_spec_out},
     {}},
    // properties, callbacks, handles
    {set_property, "{table}_set_property", 120, {sess_hdl, dev_id, property, property_value, property_argument},
     {{"pipe_mgr_tbl_set_property", {sess_hdl, dev_id, table, property, property_value, property_argument}}}},
    {get_property, "{table}_get_property", 120, {sess_hdl, dev_id, property, property_value_out, property_argument_out},
     {{"pipe_mgr_tbl_get_property", {sess_hdl, dev_id, table, property, local, local}}}},
    {register_mat_update_cb, "{table}_register_mat_update_cb", 120, {sess_hdl, whole_dev_id, callback, cookie},
     {{"pipe_register_mat_update_cb", {sess_hdl, whole_dev_id, table, callback, cookie}}}},
    {get_mat_table_handle, "{table}_get_mat_table_handle", 120, {table_handle_out}, {}},
    // idle time
    {idle_tmo_enable, "{table}_idle_tmo_enable", 7, {sess_hdl, dev_id, idle_params},
     {{"pipe_mgr_idle_tmo_enable", {sess_hdl, dev_id, table, idle_params}}}},
    {idle_tmo_disable, "{table}_idle_tmo_disable", 7, {sess_hdl, dev_id},
     {{"pipe_mgr_idle_tmo_disable", {sess_hdl, dev_id, table}}}},
    {idle_register_tmo_cb, "{table}_idle_register_tmo_cb", 7, {sess_hdl, dev_id, callback, cookie},
     {{"pipe_mgr_idle_register_tmo_cb", {sess_hdl, dev_id, table, callback, cookie}}}},
    {update_hit_state, "{table}_update_hit_state", 7, {sess_hdl, dev_id, word, word},
     {{"pipe_mgr_idle_time_update_hit_state", {sess_hdl, dev_id, table, word, word}}}},
    {get_hit_state, "{table}_get_hit_state", 7, {sess_hdl, dev_id, entry_hdl, hit_state_out},
     {{"pipe_mgr_idle_time_get_hit_state", {sess_hdl, dev_id, table, entry_hdl, local}}}},
    {set_ttl, "{table}_set_ttl", 7, {sess_hdl, dev_id, entry_hdl, ttl},
     {{"pipe_mgr_mat_ent_set_idle_ttl", {sess_hdl, dev_id, table, entry_hdl, ttl, zero}}}},
    {get_ttl, "{table}_get_ttl", 7, {sess_hdl, dev_id, entry_hdl, ttl_out},
     {{"pipe_mgr_mat_ent_get_idle_ttl", {sess_hdl, dev_id, table, entry_hdl, ttl_out}}}},
    // members
    {add_member, "{profile}_add_member_with_{action}", 8, {sess_hdl, dev_tgt, action_spec, mbr_hdl_out},
     {{"pipe_mgr_adt_ent_add", {sess_hdl, dev_tgt, action_data_table, action, member_record, mbr_hdl_out, zero}},
      {"p4_pd_ms_new_mbr", {sess_hdl, state, device, answered}, ignored},
      {"p4_pd_ms_set_mbr_act", {state, device, answered, action}, ignored}}},
    {modify_member, "{profile}_modify_member_with_{action}", 8, {sess_hdl, dev_id, mbr_hdl, action_spec},
     {{"p4_pd_ms_get_mbr_act", {state, device, mbr_hdl, local}},
      {"pipe_mgr_adt_ent_set", {sess_hdl, dev_id, action_data_table, mbr_hdl, action, member_record, zero}}}},
    {del_member, "{profile}_del_member", 5, {sess_hdl, dev_id, mbr_hdl},
     {{"pipe_mgr_adt_ent_del", {sess_hdl, dev_id, action_data_table, mbr_hdl, zero}},
      {"p4_pd_ms_del_mbr", {sess_hdl, state, device, mbr_hdl}, ignored}}},
    {register_callback, "{profile}_register_callback", 5, {sess_hdl, dev_id, callback, cookie},
     {{"pipe_mgr_sel_tbl_register_cb", {sess_hdl, dev_id, selector_table, callback, cookie}}}},
    // groups
    {create_group, "{profile}_create_group", 5, {sess_hdl, dev_tgt, max_grp_size, grp_hdl_out},
     {{"pipe_mgr_sel_grp_add", {sess_hdl, dev_tgt, selector_table, max_grp_size, grp_hdl_out, zero}},
      {"p4_pd_ms_new_grp", {sess_hdl, state, device, answered}, ignored}}},
    {del_group, "{profile}_del_group", 5, {sess_hdl, dev_id, grp_hdl},
     {{"pipe_mgr_sel_grp_del", {sess_hdl, dev_id, selector_table, grp_hdl, zero}},
      {"p4_pd_ms_del_grp", {sess_hdl, state, device, grp_hdl}}}},
    {add_member_to_group, "{profile}_add_member_to_group", 5, {sess_hdl, dev_id, grp_hdl, mbr_hdl},
     {{"p4_pd_ms_get_mbr_act", {state, device, mbr_hdl, local}},
      {"pipe_mgr_sel_grp_mbr_add", {sess_hdl, dev_id, selector_table, grp_hdl, answered, mbr_hdl, zero}},
      {"p4_pd_ms_add_mbr_to_grp", {sess_hdl, state, device, mbr_hdl, grp_hdl}, ignored},
      {"p4_pd_ms_set_grp_act", {state, device, grp_hdl, answered}, ignored}}},
    {del_member_from_group, "{profile}_del_member_from_group", 5, {sess_hdl, dev_id, grp_hdl, mbr_hdl},
     {{"pipe_mgr_sel_grp_mbr_del", {sess_hdl, dev_id, selector_table, grp_hdl, mbr_hdl, zero}},
      {"p4_pd_ms_del_mbr_from_grp", {sess_hdl, state, device, mbr_hdl, grp_hdl}, ignored}}},
    {group_member_state_set, "{profile}_group_member_state_set", 5, {sess_hdl, dev_id, grp_hdl, mbr_hdl, member_state},
     {{"pipe_mgr_sel_grp_mbr_enable", {sess_hdl, dev_id, selector_table, grp_hdl, mbr_hdl, zero}}}},
    {group_member_state_get, "{profile}_group_member_state_get", 5,
     {sess_hdl, dev_id, grp_hdl, mbr_hdl, member_state_out},
     {{"pipe_mgr_sel_grp_mbr_state_get", {sess_hdl, dev_id, selector_table, grp_hdl, mbr_hdl, local}}}},
    {set_fallback_member, "{profile}_set_dynamic_action_selection_fallback_member", 5, {sess_hdl, dev_tgt, mbr_hdl},
     {{"pipe_mgr_sel_fallback_mbr_set", {sess_hdl, dev_tgt, selector_table, mbr_hdl, zero}}}},
    {reset_fallback_member, "{profile}_reset_dynamic_action_selection_fallback_member", 5, {sess_hdl, dev_tgt},
     {{"pipe_mgr_sel_fallback_mbr_reset", {sess_hdl, dev_tgt, selector_table, zero}}}},
    {sel_track_updates, "{profile}_sel_track_updates", 5, {dev_id, callback, cookie},
     {{"pipe_mgr_sel_tbl_register_cb", {zero, dev_id, selector_table, callback, cookie}}}},
    // entries of indirect tables
    {add_indirect_entry, "{table}_add_entry", 5, {sess_hdl, dev_tgt, match_spec, priority, mbr_hdl, entry_hdl_out},
     with_member(indirect_add)},
    {add_indirect_entry, "{table}_add_entry_with_selector", 5,
     {sess_hdl, dev_tgt, match_spec, priority, grp_hdl, entry_hdl_out},
     with_group(indirect_add)},
    {modify_indirect_entry, "{table}_modify_entry", 5, {sess_hdl, dev_id, entry_hdl, mbr_hdl},
     with_member(indirect_modify)},
    {modify_indirect_entry, "{table}_modify_entry_with_selector", 5, {sess_hdl, dev_id, entry_hdl, grp_hdl},
     with_group(indirect_modify)},
    {modify_indirect_entry_by_match_spec, "{table}_modify_entry_by_match_spec", 5,
     {sess_hdl, dev_tgt, match_spec, priority, mbr_hdl},
     with_member(indirect_modify_by_key)},
    {modify_indirect_entry_by_match_spec, "{table}_modify_entry_with_selector_by_match_spec", 5,
     {sess_hdl, dev_tgt, match_spec, priority, grp_hdl},
     with_group(indirect_modify_by_key)},
    {set_indirect_default, "{table}_set_default_entry", 5, {sess_hdl, dev_tgt, mbr_hdl, entry_hdl_out},
     with_member(indirect_default)},
    {set_indirect_default, "{table}_set_default_entry_with_selector", 5, {sess_hdl, dev_tgt, grp_hdl, entry_hdl_out},
     with_group(indirect_default)},
    // reading of profiles
    {get_member, "{profile}_get_member", 5, {sess_hdl, dev_id, mbr_hdl, read_from_hw, member_action_out},
     {{"pipe_mgr_get_action_data_entry", {action_data_table, dev_id, mbr_hdl, empty_data, local, read_from_hw}},
      {"p4_pd_ms_mbr_get_res", {state, device, mbr_hdl, local, local}, ignored}}},
    {get_member_from_plcmt_data, "{profile}_get_member_from_plcmt_data", 5, {plcmt_data, member_action_out},
     {{"pipe_mgr_plcmt_adt_data_get_entry", {plcmt_data, untold_data, local}}}},
    {get_full_member_info_from_plcmt_data, "{profile}_get_full_member_info_from_plcmt_data", 5,
     {dev_id, mbr_hdl, plcmt_data, member_action_out},
     {{"pipe_mgr_plcmt_adt_data_get_entry", {plcmt_data, untold_data, local}},
      {"p4_pd_ms_mbr_get_res", {state, device, mbr_hdl, local, local}, ignored}}},
    {get_first_of_profile, "{profile}_get_first_member", 5, {sess_hdl, dev_tgt, mbr_hdl_out},
     {{"pipe_mgr_get_first_entry_handle", {sess_hdl, action_data_table, dev_tgt, mbr_hdl_out}}}},
    {get_next_of_profile, "{profile}_get_next_members", 5,
     {sess_hdl, dev_tgt, mbr_hdl, handle_count, next_entry_hdls_out},
     {{"pipe_mgr_get_next_entry_handles",
       {sess_hdl, action_data_table, dev_tgt, mbr_hdl, handle_count, next_entry_hdls_out}}}},
    {get_first_of_profile, "{profile}_get_first_group", 5, {sess_hdl, dev_tgt, grp_hdl_out},
     {{"pipe_mgr_get_first_entry_handle", {sess_hdl, selector_table, dev_tgt, grp_hdl_out}}}},
    {get_next_of_profile, "{profile}_get_next_groups", 5,
     {sess_hdl, dev_tgt, grp_hdl, handle_count, next_entry_hdls_out},
     {{"pipe_mgr_get_next_entry_handles",
       {sess_hdl, selector_table, dev_tgt, grp_hdl, handle_count, next_entry_hdls_out}}}},
    {get_first_group_member, "{profile}_get_first_group_member", 5, {sess_hdl, dev_id, grp_hdl, mbr_hdl_out},
     {{"pipe_mgr_get_first_group_member", {sess_hdl, selector_table, dev_id, grp_hdl, mbr_hdl_out}}}},
    {get_next_group_members, "{profile}_get_next_group_members", 5,
     {sess_hdl, dev_id, grp_hdl, mbr_hdl, handle_count, next_entry_hdls_out},
     {{"pipe_mgr_get_next_group_members",
       {sess_hdl, selector_table, dev_id, grp_hdl, mbr_hdl, handle_count, next_entry_hdls_out}}}},
    {get_profile_count, "{profile}_get_act_prof_entry_count", 5, {sess_hdl, dev_tgt, entry_count_out},
     {{"pipe_mgr_get_entry_count", {sess_hdl, dev_tgt, action_data_table, zero, entry_count_out}}}},
    {get_profile_count, "{profile}_get_selector_group_count", 5, {sess_hdl, dev_tgt, entry_count_out},
     {{"pipe_mgr_get_entry_count", {sess_hdl, dev_tgt, selector_table, zero, entry_count_out}}}},
    {register_profile_update_cb, "{profile}_register_adt_update_cb", 5, {sess_hdl, whole_dev_id, callback, cookie},
     {{"pipe_register_adt_update_cb", {sess_hdl, whole_dev_id, action_data_table, callback, cookie}}}},
    {register_profile_update_cb, "{profile}_register_sel_update_cb", 5, {sess_hdl, whole_dev_id, callback, cookie},
     {{"pipe_register_sel_update_cb", {sess_hdl, whole_dev_id, selector_table, callback, cookie}}}},
    {get_profile_table_handle, "{profile}_get_adt_table_handle", 5, {table_handle_out}, {}},
    {get_profile_table_handle, "{profile}_get_sel_table_handle", 5, {table_handle_out}, {}},
};
// clang-format on

}  // namespace tarvex::test
