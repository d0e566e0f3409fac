// Parser value sets: each operation is one driver call with the set's handle. The device goes through untouched.
//
// SPDX-License-Identifier: Apache-2.0
#include "services.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

pd_status_t value_set_set_property(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t property,
                                   uint32_t value, uint32_t argument)
{
  return pipe_mgr_pvs_set_property(sess_hdl, dev_id, set_hdl, property, value, argument);
}

pd_status_t value_set_get_property(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t property,
                                   uint32_t *value, uint32_t argument)
{
  std::uint32_t found = 0;
  const pd_status_t status = pipe_mgr_pvs_get_property(sess_hdl, dev_id, set_hdl, property, &found, argument);
  *value = status == BF_SUCCESS ? found : 0xffff'ffffu;
  return status;
}

pd_status_t value_set_entry_add(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, pd_parser_tgt_t tgt,
                                uint32_t parser_value, uint32_t parser_value_mask, uint32_t *pvs_entry_hdl)
{
  return pipe_mgr_pvs_entry_add(sess_hdl, tgt.device_id, set_hdl, tgt.tgt_scope, tgt.tgt_index, tgt.tgt_sub_index,
                                parser_value, parser_value_mask, pvs_entry_hdl);
}

pd_status_t value_set_entry_modify(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, uint32_t dev_id,
                                   uint32_t pvs_entry_hdl, uint32_t parser_value, uint32_t parser_value_mask)
{
  return pipe_mgr_pvs_entry_modify(sess_hdl, dev_id, set_hdl, pvs_entry_hdl, parser_value, parser_value_mask);
}

pd_status_t value_set_entry_delete(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, uint32_t dev_id,
                                   uint32_t pvs_entry_hdl)
{
  return pipe_mgr_pvs_entry_delete(sess_hdl, dev_id, set_hdl, pvs_entry_hdl);
}

}  // namespace tarvex::pd
