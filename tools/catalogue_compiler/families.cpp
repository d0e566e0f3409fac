// SPDX-License-Identifier: Apache-2.0
#include "families.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <stdexcept>

namespace catalogue {

std::string export_prefix;

std::string macro_prefix()
{
  std::string prefix = export_prefix;
  std::transform(prefix.begin(), prefix.end(), prefix.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return prefix;
}

std::string match_spec_type(const table &t) { return export_prefix + t.name + "_match_spec_t"; }
std::string action_spec_type(const action &a) { return export_prefix + a.name + "_action_spec_t"; }

std::string table_descriptor(const table &t) { return "tables::" + t.name; }
std::string profile_descriptor(const std::string &profile) { return "profiles::" + profile; }
std::string resource_descriptor(const resource &r) { return "resources::" + r.name; }
std::string hash_descriptor(const hash_calculation &h) { return "hashes::" + h.name; }
std::string table_text_descriptor(const table &t) { return "texts::table_" + t.name; }
std::string action_text_descriptor(const action &a) { return "texts::action_" + a.name; }
std::string profile_text_descriptor(const profile &p) { return "texts::profile_" + p.name; }
std::string label_descriptor(const table &t) { return "texts::label_" + t.name; }
std::string use_descriptor(const std::string &owner, const action_use &u) { return "uses::" + owner + "_" + u.name; }
std::string action_descriptor(const action &a) { return "actions::" + a.name; }

std::vector<exported_function> list_functions(const model &m)
{
  export_prefix = "p4_pd_" + m.pipeline.name + "_";
  std::vector<exported_function> all;
  add_fixed_functions(all);
  for (const action &a : m.actions) {
    add_action_families(all, a);
    add_action_text_families(all, a);
  }
  for (const table &t : m.tables) {
    if (const profile *p = m.find_profile(t.profile)) {
      add_profile_families(all, m, *p);
      add_profile_text_families(all, m, *p);
    }
    add_entry_write_families(all, m, t);
    add_indirect_entry_families(all, m, t);
    add_default_entry_families(all, m, t);
    add_read_back_families(all, m, t);
    add_table_families(all, t);
    add_idle_time_families(all, t);
    add_table_text_families(all, t);
  }
  for (const resource &r : m.resources) add_resource_families(all, m, r);
  for (const hash_calculation &h : m.hashes) add_hash_families(all, h);
  for (const digest &d : m.digests) add_digest_families(all, d);
  for (const value_set &v : m.value_sets) add_value_set_families(all, v);
  return all;
}

namespace {

// In the order in which tests and tools go over them.
constexpr std::string_view family_names[] = {
    "lifecycle",
    "unbuild_action_spec",
    "entry_add",
    "entry_modify",
    "entry_modify_by_match_spec",
    "entry_delete",
    "entry_delete_by_match_spec",
    "match_spec_to_entry_hdl",
    "set_default_action",
    "reset_default_entry",
    "get_default_entry_handle",
    "get_entry",
    "get_indirect_entry",
    "get_entry_count",
    "get_first_entry_handle",
    "get_next_entry_handles",
    "unbuild_key",
    "unbuild_mask",
    "set_property",
    "get_property",
    "register_mat_update_cb",
    "get_mat_table_handle",
    "idle_tmo_enable",
    "idle_tmo_disable",
    "idle_register_tmo_cb",
    "set_ttl",
    "get_ttl",
    "update_hit_state",
    "get_hit_state",
    "add_member",
    "modify_member",
    "del_member",
    "register_callback",
    "create_group",
    "del_group",
    "add_member_to_group",
    "del_member_from_group",
    "group_member_state_set",
    "group_member_state_get",
    "set_fallback_member",
    "reset_fallback_member",
    "sel_track_updates",
    "get_member",
    "get_member_from_plcmt_data",
    "get_full_member_info_from_plcmt_data",
    "get_first_of_profile",
    "get_next_of_profile",
    "get_act_prof_entry_count",
    "get_selector_group_count",
    "register_adt_update_cb",
    "register_sel_update_cb",
    "get_adt_table_handle",
    "get_sel_table_handle",
    "get_first_group_member",
    "get_next_group_members",
    "add_indirect_entry",
    "modify_indirect_entry",
    "modify_indirect_entry_by_match_spec",
    "set_indirect_default",
    "digest_register",
    "digest_deregister",
    "digest_notify_ack",
    "learning_digest",
    "value_set_set_property",
    "value_set_get_property",
    "value_set_entry_add",
    "value_set_entry_modify",
    "value_set_entry_delete",
    "meter_access",
    "register_access",
    "hash_access",
    "counter_read",
    "counter_write",
    "counter_hw_sync",
    "meter_set",
    "meter_read",
    "wred_set",
    "wred_read",
    "register_read",
    "register_range_read",
    "register_write",
    "register_write_all",
    "register_reset_all",
    "register_range_reset",
    "register_hw_sync",
    "hash_input_set",
    "hash_input_get",
    "hash_algorithm_set",
    "hash_algorithm_get",
    "hash_seed_set",
    "hash_seed_get",
    "hash_field_count_get",
    "hash_fields_set",
    "hash_fields_get",
    "hash_common_field",
    "hash_own_field",
    "match_spec_schema",
    "match_spec_value",
    "match_spec_print",
    "match_specs_are_equal",
    "field_width",
    "get_entry_from_plcmt_data",
    "get_indirect_entry_from_plcmt_data",
    "plcmt_data_print",
    "plcmt_data_value",
    "plcmt_data_eq_to_hw",
    "match_spec_stringify_for_counter",
    "stringify_counter_match_spec",
    "table_schema",
    "table_value",
    "supports_entry_priority",
    "action_schema",
    "action_value",
    "action_print",
    "action_specs_are_equal",
    "profile_schema",
    "adt_plcmt_data_print",
    "adt_plcmt_data_value",
    "dispatch",
    "snapshot",
};

template <class Wanted>
std::vector<const exported_function *> functions_where(const std::vector<exported_function> &all, Wanted wanted)
{
  std::vector<const exported_function *> of;
  for (const exported_function &f : all)
    if (wanted(f)) of.push_back(&f);
  return of;
}

}  // namespace

std::span<const std::string_view> families() { return family_names; }

std::string_view family_named(std::string_view name)
{
  const auto found = std::find(std::begin(family_names), std::end(family_names), name);
  if (found == std::end(family_names)) throw std::logic_error("no family '" + std::string(name) + "'");
  return *found;
}

std::vector<const exported_function *> functions_of_group(const std::vector<exported_function> &all, std::size_t group)
{
  return functions_where(all, [&](auto &f) { return f.of_table != nullptr && f.of_table->group == group; });
}

std::vector<const exported_function *> functions_of_actions(const std::vector<exported_function> &all)
{
  return functions_where(all, [](auto &f) { return f.of_table == nullptr && f.of_action != nullptr; });
}

std::vector<const exported_function *> functions_of_resources(const std::vector<exported_function> &all)
{
  return functions_where(all, [](auto &f) { return f.of_resource != nullptr; });
}

std::vector<const exported_function *> functions_of_hashes(const std::vector<exported_function> &all)
{
  return functions_where(all, [](auto &f) { return f.of_hash != nullptr; });
}

std::vector<const exported_function *> functions_of_digests(const std::vector<exported_function> &all)
{
  return functions_where(all, [](auto &f) { return f.of_digest != nullptr; });
}

std::vector<const exported_function *> functions_of_value_sets(const std::vector<exported_function> &all)
{
  return functions_where(all, [](auto &f) { return f.of_value_set != nullptr; });
}

std::vector<const exported_function *> functions_of_no_row(const std::vector<exported_function> &all)
{
  return functions_where(all, [](auto &f) { return !f.plain.empty(); });
}

std::vector<std::string> list_data_objects() { return {"bf_drv_hdl", export_prefix + "action_name_strings"}; }

}  // namespace catalogue
