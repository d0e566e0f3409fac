// SPDX-License-Identifier: Apache-2.0
#include "table_properties.h"

namespace tarvex::pd {

pd_status_t read_property(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t property, std::uint32_t *value,
                          std::uint32_t *argument, std::uint32_t tbl_hdl)
{
  std::uint32_t found_value = 0;
  std::uint32_t found_argument = 0;
  const pd_status_t status =
      pipe_mgr_tbl_get_property(sess_hdl, low_byte(dev_id), tbl_hdl, property, &found_value, &found_argument);
  *value = status == BF_SUCCESS ? found_value : 0xffff'ffffu;
  *argument = status == BF_SUCCESS ? found_argument : 0xffff'ffffu;
  return status;
}

}  // namespace tarvex::pd
