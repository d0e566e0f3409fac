// SPDX-License-Identifier: Apache-2.0
#include "families.h"

#include <algorithm>
#include <cctype>

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

template <class Wanted>
std::vector<const exported_function *> functions_where(const std::vector<exported_function> &all, Wanted wanted)
{
  std::vector<const exported_function *> of;
  for (const exported_function &f : all)
    if (wanted(f)) of.push_back(&f);
  return of;
}

}  // namespace

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
