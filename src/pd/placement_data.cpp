// SPDX-License-Identifier: Apache-2.0
#include "placement_data.h"

#include <cstring>

namespace tarvex::pd {

pd_status_t placed_entry::decode(const void *plcmt_data, std::uint16_t key_bits, std::uint16_t key_bytes)
{
  key_ = {};
  action_ = {};
  act_hdl_ = 0;
  std::memset(value_, 0, sizeof value_);
  std::memset(mask_, 0, sizeof mask_);
  std::memset(data_, 0, sizeof data_);
  if (key_bits != 0) {
    key_.key_bits = key_bits;
    key_.key_bytes = key_bytes;
    key_.key_value = value_;
    key_.key_mask = mask_;
  }
  action_.act_data.data_bytes = read_data_bytes;
  action_.act_data.data = data_;
  const pd_status_t status = pipe_mgr_plcmt_mat_data_get_entry(plcmt_data, &key_, &action_, &act_hdl_);
  // A reply without a mask or without data is read as zeros: only a null key has a meaning.
  if (key_.key_mask == nullptr) key_.key_mask = mask_;
  if (action_.act_data.data == nullptr) action_.act_data.data = data_;
  return status;
}

}  // namespace tarvex::pd
