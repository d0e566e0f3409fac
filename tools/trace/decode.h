// Key and action bytes as the fields and parameters that they are.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "catalogue_names.h"
#include "value_writer.h"

namespace tarvex::trace {

/// Whether a key record has the bytes of the table's key, each mask of a prefix being one.
bool is_key_of(const rows::table_info &table, const drv_match_spec_t &key);
/// Writes the fields, one member each, of a key that is the table's.
void write_fields(value_writer &to, const rows::table_info &table, const drv_match_spec_t &key);

bool is_data_of(const rows::action_info &action, const drv_act_data_t &data);
/// Writes the parameters; those that are indices of resources stand in the list.
void write_parameters(value_writer &to, const rows::action_info &action, const drv_act_data_t &data,
                      std::span<const drv_res_spec_t> resources);

}  // namespace tarvex::trace
