// SPDX-License-Identifier: Apache-2.0
#include "families.h"

namespace catalogue {

const std::string export_prefix = "p4_pd_tarvex_switch_";

std::string match_spec_type(const table &t) { return export_prefix + t.name + "_match_spec_t"; }
std::string action_spec_type(const action &a) { return export_prefix + a.name + "_action_spec_t"; }

std::string table_descriptor(const table &t) { return "tables::" + t.name; }
std::string profile_descriptor(const std::string &profile) { return "profiles::" + profile; }
std::string use_descriptor(const std::string &owner, const action_use &u) { return "uses::" + owner + "_" + u.name; }
std::string action_descriptor(const action &a) { return "actions::" + a.name; }

std::vector<exported_function> list_functions(const model &m)
{
  std::vector<exported_function> all;
  add_fixed_functions(all);
  for (const action &a : m.actions) add_action_families(all, a);
  for (const table &t : m.tables) {
    if (const profile *p = m.find_profile(t.profile)) add_profile_families(all, m, *p);
    add_entry_write_families(all, m, t);
    add_indirect_entry_families(all, m, t);
    add_default_entry_families(all, m, t);
    add_read_back_families(all, m, t);
    add_table_families(all, t);
    add_idle_time_families(all, t);
  }
  return all;
}

std::vector<const exported_function *> functions_of_group(const std::vector<exported_function> &all, std::size_t group)
{
  std::vector<const exported_function *> of;
  for (const exported_function &f : all)
    if (f.of_table != nullptr && f.of_table->group == group) of.push_back(&f);
  return of;
}

std::vector<const exported_function *> functions_of_actions(const std::vector<exported_function> &all)
{
  std::vector<const exported_function *> of;
  for (const exported_function &f : all)
    if (f.of_table == nullptr && f.of_action != nullptr) of.push_back(&f);
  return of;
}

std::vector<std::string> list_data_objects() { return {"bf_drv_hdl", export_prefix + "action_name_strings"}; }

}  // namespace catalogue
