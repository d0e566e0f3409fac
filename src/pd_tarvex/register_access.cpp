// Any register by handle: records go straight through, allocation and conversion are the caller's.
//
// SPDX-License-Identifier: Apache-2.0
#include "plain_functions.h"

#include <cstring>

#include "call_conventions.h"
#include "counters.h"

namespace tarvex::pd {

pd_status_t register_read_direct(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t tbl_hdl, pd_entry_hdl_t entry_hdl,
                                 uint32_t flags, drv_stful_query_t *query)
{
  return pipe_stful_direct_ent_query(sess_hdl, dev_id, tbl_hdl, entry_hdl, query, flags & from_hardware_flag);
}

/// A register is written as a resource of its entry.
pd_status_t register_write_direct(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t hdl, pd_entry_hdl_t entry_hdl,
                                  const uint64_t *value)
{
  drv_res_spec_t resource;
  std::memset(&resource, 0, sizeof resource);
  resource.res_hdl = hdl;
  resource.res_value.register_value = *value;
  resource.res_tag = DRV_RES_ATTACHED;
  return pipe_mgr_mat_ent_set_resource(sess_hdl, low_byte(dev_id), hdl, entry_hdl, &resource, 1, 0);
}

pd_status_t register_read_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t index,
                                   uint32_t flags, drv_stful_query_t *query)
{
  return pipe_stful_ent_query(sess_hdl, whole_target(dev_tgt), reg_hdl, index, query, flags & from_hardware_flag);
}

pd_status_t register_write_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, uint32_t index,
                                    drv_stful_spec_t *value)
{
  return pipe_stful_ent_set(sess_hdl, whole_target(dev_tgt), reg_hdl, index, value, 0);
}

pd_status_t register_hw_sync_direct(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl, pd_callback_t cb,
                                    void *cookie)
{
  return pipe_stful_direct_database_sync(sess_hdl, whole_target(dev_tgt), tbl_hdl, cb, cookie);
}

pd_status_t register_hw_sync_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl, pd_callback_t cb,
                                      void *cookie)
{
  return pipe_stful_database_sync(sess_hdl, whole_target(dev_tgt), reg_hdl, cb, cookie);
}

pd_status_t register_reset_all_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl)
{
  return pipe_stful_table_reset(sess_hdl, whole_target(dev_tgt), reg_hdl, nullptr);
}

pd_status_t register_range_reset_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                          uint32_t first_index, uint32_t count)
{
  return pipe_stful_table_reset_range(sess_hdl, whole_target(dev_tgt), reg_hdl, first_index, count, nullptr);
}

pd_status_t register_write_all_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                        drv_stful_spec_t *value)
{
  return pipe_stful_table_reset(sess_hdl, whole_target(dev_tgt), reg_hdl, value);
}

}  // namespace tarvex::pd
