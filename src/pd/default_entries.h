// The default entry of a table: the one that applies when no key matches, and the only one of a keyless table.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "entry_write.h"

namespace tarvex::pd {

template <const table_row &T, const action_use_row &U>
[[gnu::always_inline]] inline pd_status_t set_default_action(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                             const void *action_spec, const pd_meter_spec_t *meter_spec,
                                                             pd_entry_hdl_t *entry_hdl)
{
  action_record<*U.action> action;
  if (!build_entry_action<U, entry_operation::set_default>(action, action_spec, meter_spec))
    return PD_STATUS_INVALID_ARG;
  return pipe_mgr_mat_default_entry_set(sess_hdl, whole_target(dev_tgt), T.handle, U.handle, &action.spec, 0,
                                        entry_hdl);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t reset_default_entry(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt)
{
  return pipe_mgr_mat_tbl_default_entry_reset(sess_hdl, whole_target(dev_tgt), T.handle, 0);
}

template <const table_row &T>
[[gnu::always_inline]] inline pd_status_t get_default_entry_handle(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                                   pd_entry_hdl_t *entry_hdl)
{
  return pipe_mgr_table_get_default_entry_handle(sess_hdl, whole_target(dev_tgt), T.handle, entry_hdl);
}

}  // namespace tarvex::pd
