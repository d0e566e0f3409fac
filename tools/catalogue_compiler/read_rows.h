// The readers of each kind of row. They take the values as they stand; what the values must be to fit together is
// checked when all files have been read.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model.h"
#include "toml_rows.h"

namespace catalogue {

pipeline read_pipeline(const toml::table &node, row &file);
table read_table(const toml::table &node, row &file);
action read_action(const toml::table &node, row &file);
profile read_profile(const toml::table &node, row &file);
hash_calculation read_hash_calculation(const toml::table &node, row &file);
snapshot_layout read_snapshot_layout(const toml::table &node, row &file);
digest read_digest(const toml::table &node, row &file);
value_set read_value_set(const toml::table &node, row &file);
label_piece read_label_piece(const toml::table &node, row &owner);
resource read_resource(const toml::table &node, row &file, resource_kind kind);

/// Actions as tables and profiles list them; only a table's say more than their handle and sums.
std::vector<action_use> read_action_uses(row &owner, bool of_table);

}  // namespace catalogue
