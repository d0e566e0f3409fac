// A table of the forwarding information base, its entries written and read as routes have them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "catalogue.h"
#include "fib_entries.h"
#include "fields.h"
#include "function_call.h"
#include "records.h"

namespace tarvex::shell {

/// An entry as it stands on the switch. Foreign ones have an action or a value that no route is made into.
struct switch_fib_entry {
  route_load::fib_entry entry;
  bool foreign = false;
  bool other_vrf = false;  // of such an entry only the index is set
};

class fib_table_access {
 public:
  fib_table_access(route_load::fib_table table, const target &where);
  fib_table_access(const fib_table_access &) = delete;
  fib_table_access &operator=(const fib_table_access &) = delete;

  /// Both throw refused_error.
  void add(const route_load::fib_entry &entry) { write(entry, family_id::entry_add, "adding "); }
  void modify(const route_load::fib_entry &entry) { write(entry, family_id::entry_modify_by_match_spec, "modifying "); }

  /// All entries, those of other VRFs than the one that routes are loaded into marked.
  void read(const std::function<void(const switch_fib_entry &)> &visit) const;

 private:
  struct ready_action {
    const use_info *use;
    std::vector<shown_field> parameters;
  };

  void write(const route_load::fib_entry &entry, family_id family, const char *what);
  void fill_key(const route_load::fib_entry &entry);
  const ready_action &action_for(const route_load::fib_entry &entry) const;
  const ready_action *ending_in(std::string_view ending) const;
  /// False for an entry of another VRF.
  bool read_key(const record_memory &key, route_load::fib_entry &entry) const;
  bool read_result(const action_info &action, const record_memory &parameters, route_load::fib_entry &entry) const;

  route_load::fib_table number_;
  const table_info &table_;
  const target &where_;
  std::vector<shown_field> key_fields_;
  std::vector<ready_action> actions_;
  std::map<const exported_function *, std::unique_ptr<function_call>> calls_;
  record_memory key_;
  record_memory parameters_;
  std::uint32_t handle_ = 0;
};

}  // namespace tarvex::shell
