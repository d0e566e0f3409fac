// SPDX-License-Identifier: Apache-2.0
#include "hash_calculations.h"

#include "call_conventions.h"

namespace tarvex::pd {

// A number that a calculation does not have goes to the driver as handle 0, for the driver to refuse.

pd_status_t hash_input_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input)
{
  return pipe_mgr_hash_calc_input_set(sess_hdl, low_byte(dev_id), calc.handle, input == 0 ? calc.first_input : 0);
}

/// A driver that fails leaves the handle at 0, which is no calculation's.
pd_status_t hash_input_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t *input)
{
  std::uint32_t input_hdl = 0;
  const pd_status_t status = pipe_mgr_hash_calc_input_get(sess_hdl, low_byte(dev_id), calc.handle, &input_hdl);
  if (!is_input_of(calc, input_hdl)) return PD_STATUS_INVALID_ARG;
  *input = 0;
  return status;
}

pd_status_t hash_algorithm_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                               std::uint32_t algorithm)
{
  return pipe_mgr_hash_calc_algorithm_set(sess_hdl, low_byte(dev_id), calc.handle,
                                          algorithm < calc.algorithms.size() ? calc.algorithms[algorithm] : 0);
}

pd_status_t hash_algorithm_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                               std::uint32_t *algorithm)
{
  std::uint32_t algorithm_hdl = 0;
  const pd_status_t status = pipe_mgr_hash_calc_algorithm_get(sess_hdl, low_byte(dev_id), calc.handle, &algorithm_hdl);
  for (std::uint32_t i = 0; i < calc.algorithms.size(); ++i)
    if (calc.algorithms[i] == algorithm_hdl) {
      *algorithm = i;
      return status;
    }
  return PD_STATUS_INVALID_ARG;
}

pd_status_t hash_seed_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint64_t seed)
{
  return pipe_mgr_hash_calc_seed_set(sess_hdl, low_byte(dev_id), calc.handle, seed);
}

pd_status_t hash_seed_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint64_t *seed)
{
  return pipe_mgr_hash_calc_seed_get(sess_hdl, low_byte(dev_id), calc.handle, seed);
}

}  // namespace tarvex::pd
