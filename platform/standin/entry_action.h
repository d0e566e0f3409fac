// What an action record does to an entry: checked as a whole first, then applied.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "device.h"

namespace tarvex::standin {

enum class action_place : std::uint8_t { entry, default_entry };

/// Whether a table's entry, or its default entry, can take the action.
pd_status_t check_action(device &dev, match_table &table, std::uint32_t act_hdl, const drv_action_spec_t *spec,
                         action_place place);

/// Writes a checked action. Direct resources that are not told of keep their state; indirect ones are let go.
void apply_action(device &dev, match_table &table, entry_view entry, std::uint32_t act_hdl,
                  const drv_action_spec_t &spec);

/// Writes a checked resource.
void apply_resource(entry_view entry, const drv_res_spec_t &spec);
/// Whether an entry of the table can take the resource.
pd_status_t check_resource(device &dev, const match_table &table, const drv_res_spec_t &spec);

/// Lets go of the member or group of an entry that is about to go.
void release_reference(device &dev, match_table &table, entry_view entry);

}  // namespace tarvex::standin
