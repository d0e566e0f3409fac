// The families of exported functions: which functions exist for which rows, their arguments, what their comments say
// and how each calls the library's template. Header, exported functions, symbol map and call table all derive from this
// list.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model.h"

namespace catalogue {

/// An argument of an exported function.
struct argument {
  std::string_view kind;
  std::string type;  // with its blank, or its star: "uint32_t ", "const char *"
  std::string name;
  std::string doc;

  std::string declaration() const { return type + name; }
};

using tarvex::result_kind;

struct exported_function {
  std::string name;
  std::string_view family;  // of families()
  result_kind result = result_kind::status;
  std::vector<argument> arguments;
  std::string brief;
  std::string details;              // a further paragraph, empty for none
  std::string returns;              // empty for none
  bool seldom = false;              // not on the way of writes and reads: built for size
  std::string call;                 // expression that the exported function returns
  std::string plain;                // prototype of the function in tarvex::pd that one of no row forwards to
  const table *of_table = nullptr;  // of a profile's function: the profile's indirect table
  const profile *of_profile = nullptr;
  const resource *of_resource = nullptr;
  const hash_calculation *of_hash = nullptr;
  const digest *of_digest = nullptr;
  const value_set *of_value_set = nullptr;
  const action_use *use = nullptr;
  const action *of_action = nullptr;
};

/// Names of all families; family_id has them as enumerators.
std::span<const std::string_view> families();
/// Throws std::logic_error where there is none of the name.
std::string_view family_named(std::string_view name);

/// All exported functions, in the order in which headers show them.
std::vector<exported_function> list_functions(const model &m);

/// The functions that a group's header and source hold.
std::vector<const exported_function *> functions_of_group(const std::vector<exported_function> &all, std::size_t group);
std::vector<const exported_function *> functions_of_actions(const std::vector<exported_function> &all);
std::vector<const exported_function *> functions_of_resources(const std::vector<exported_function> &all);
std::vector<const exported_function *> functions_of_hashes(const std::vector<exported_function> &all);
std::vector<const exported_function *> functions_of_digests(const std::vector<exported_function> &all);
std::vector<const exported_function *> functions_of_value_sets(const std::vector<exported_function> &all);
/// Functions that exist once, whatever the rows.
std::vector<const exported_function *> functions_of_no_row(const std::vector<exported_function> &all);

/// The exported data objects.
std::vector<std::string> list_data_objects();

// The files of families, in the order of list_functions.
void add_fixed_functions(std::vector<exported_function> &to);
void add_action_families(std::vector<exported_function> &to, const action &a);
void add_entry_write_families(std::vector<exported_function> &to, const model &m, const table &t);
void add_default_entry_families(std::vector<exported_function> &to, const model &m, const table &t);
void add_read_back_families(std::vector<exported_function> &to, const model &m, const table &t);
void add_indirect_entry_families(std::vector<exported_function> &to, const model &m, const table &t);
void add_profile_families(std::vector<exported_function> &to, const model &m, const profile &p);
void add_table_text_families(std::vector<exported_function> &to, const table &t);
void add_action_text_families(std::vector<exported_function> &to, const action &a);
void add_profile_text_families(std::vector<exported_function> &to, const model &m, const profile &p);
void add_resource_families(std::vector<exported_function> &to, const model &m, const resource &r);
void add_hash_families(std::vector<exported_function> &to, const hash_calculation &h);
void add_digest_families(std::vector<exported_function> &to, const digest &d);
void add_value_set_families(std::vector<exported_function> &to, const value_set &v);
void add_table_families(std::vector<exported_function> &to, const table &t);
void add_idle_time_families(std::vector<exported_function> &to, const table &t);

/// What exported functions begin with, as "p4_pd_acme_" for the pipeline acme; empty until list_functions takes it from
/// the model.
extern std::string export_prefix;
/// The same for macros and enumerators, in capitals.
std::string macro_prefix();

std::string match_spec_type(const table &t);
std::string action_spec_type(const action &a);

/// Names of the descriptors that stand for rows.
std::string table_descriptor(const table &t);
std::string use_descriptor(const std::string &owner, const action_use &u);
std::string profile_descriptor(const std::string &profile);
std::string action_descriptor(const action &a);
std::string resource_descriptor(const resource &r);
std::string table_text_descriptor(const table &t);
std::string action_text_descriptor(const action &a);
std::string profile_text_descriptor(const profile &p);
std::string label_descriptor(const table &t);
std::string hash_descriptor(const hash_calculation &h);

}  // namespace catalogue
