// The parser value set: each operation is one driver call with the set's handle. The device goes through untouched.
//
// SPDX-License-Identifier: Apache-2.0
#include "tarvex_pd/parser_value_set.h"

#include <cstdint>

#include "tarvex_platform/driver.h"

namespace {

constexpr std::uint32_t fabric_port_handle = 0x1ff;

}  // namespace

pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_set_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t property,
                                                             uint32_t value, uint32_t argument)
{
  return pipe_mgr_pvs_set_property(sess_hdl, dev_id, fabric_port_handle, property, value, argument);
}

/// The driver writes to a word of its own; the caller's holds 0xffffffff after a failure.
pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_get_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t property,
                                                             uint32_t *value, uint32_t argument)
{
  std::uint32_t found = 0;
  const pd_status_t status =
      pipe_mgr_pvs_get_property(sess_hdl, dev_id, fabric_port_handle, property, &found, argument);
  *value = status == BF_SUCCESS ? found : 0xffff'ffffu;
  return status;
}

pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_entry_add(pd_sess_hdl_t sess_hdl, pd_parser_tgt_t tgt,
                                                          uint32_t parser_value, uint32_t parser_value_mask,
                                                          uint32_t *pvs_entry_hdl)
{
  return pipe_mgr_pvs_entry_add(sess_hdl, tgt.device_id, fabric_port_handle, tgt.tgt_scope, tgt.tgt_index,
                                tgt.tgt_sub_index, parser_value, parser_value_mask, pvs_entry_hdl);
}

pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_entry_modify(pd_sess_hdl_t sess_hdl, uint32_t dev_id,
                                                             uint32_t pvs_entry_hdl, uint32_t parser_value,
                                                             uint32_t parser_value_mask)
{
  return pipe_mgr_pvs_entry_modify(sess_hdl, dev_id, fabric_port_handle, pvs_entry_hdl, parser_value,
                                   parser_value_mask);
}

pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_entry_delete(pd_sess_hdl_t sess_hdl, uint32_t dev_id,
                                                             uint32_t pvs_entry_hdl)
{
  return pipe_mgr_pvs_entry_delete(sess_hdl, dev_id, fabric_port_handle, pvs_entry_hdl);
}
