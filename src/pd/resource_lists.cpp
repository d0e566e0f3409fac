// SPDX-License-Identifier: Apache-2.0
#include "resource_lists.h"

namespace tarvex::pd {

bool resource_list::build_from(const drv_action_spec_t &spec)
{
  // A driver that claims more than the record has room for is believed no further than the record goes.
  const std::uint32_t count = spec.res_count < DRV_ACTION_MAX_RES ? spec.res_count : DRV_ACTION_MAX_RES;
  list_ = static_cast<pd_res_spec_t *>(bf_sys_calloc(count, sizeof *list_));
  if (list_ == nullptr) return false;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (spec.res[i].res_tag != DRV_RES_ATTACHED) continue;
    list_[count_].res_hdl = spec.res[i].res_hdl;
    list_[count_].res_index = spec.res[i].res_index;
    ++count_;
  }
  return true;
}

}  // namespace tarvex::pd
