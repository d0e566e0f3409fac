// Driver functions of the dynamic hash calculations.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "device.h"

namespace tarvex::standin {
namespace {

/// A driver function on a calculation: body(row, setting).
template <class Body>
pd_status_t serve_hash(const char *function, std::uint32_t dev_id, std::uint32_t calc_hdl, Body body)
{
  return serve(function, dev_id, calc_hdl, [&](device &dev) -> pd_status_t {
    const rows::hash_info *const row = find_row(rows::hashes, calc_hdl);
    return row == nullptr ? pd_status_t{STANDIN_NO_OBJECT} : body(*row, dev.services.hashes[calc_hdl]);
  });
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_hash_calc_input_set(pd_sess_hdl_t, uint32_t dev_id, uint32_t calc_hdl, uint32_t input_hdl)
{
  return serve_hash(__func__, dev_id, calc_hdl, [&](const rows::hash_info &row, hash_setting &setting) -> pd_status_t {
    if (input_hdl - row.first_input >= row.input_count()) return STANDIN_BAD_ARGUMENT;
    setting.input = input_hdl;
    return success;
  });
}

pd_status_t pipe_mgr_hash_calc_input_get(pd_sess_hdl_t, uint32_t dev_id, uint32_t calc_hdl, uint32_t *input_hdl)
{
  return serve_hash(__func__, dev_id, calc_hdl,
                    [&](const rows::hash_info &row, const hash_setting &setting) -> pd_status_t {
                      if (input_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
                      *input_hdl = setting.input != 0 ? setting.input : row.first_input;
                      return success;
                    });
}

pd_status_t pipe_mgr_hash_calc_algorithm_set(pd_sess_hdl_t, uint32_t dev_id, uint32_t calc_hdl, uint32_t algorithm_hdl)
{
  return serve_hash(__func__, dev_id, calc_hdl, [&](const rows::hash_info &row, hash_setting &setting) -> pd_status_t {
    if (std::ranges::count(row.algorithms, algorithm_hdl) == 0) return STANDIN_BAD_ARGUMENT;
    setting.algorithm = algorithm_hdl;
    return success;
  });
}

pd_status_t pipe_mgr_hash_calc_algorithm_get(pd_sess_hdl_t, uint32_t dev_id, uint32_t calc_hdl, uint32_t *algorithm_hdl)
{
  return serve_hash(__func__, dev_id, calc_hdl,
                    [&](const rows::hash_info &row, const hash_setting &setting) -> pd_status_t {
                      if (algorithm_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
                      *algorithm_hdl = setting.algorithm != 0 ? setting.algorithm : row.algorithms.front();
                      return success;
                    });
}

pd_status_t pipe_mgr_hash_calc_seed_set(pd_sess_hdl_t, uint32_t dev_id, uint32_t calc_hdl, uint64_t seed)
{
  return serve_hash(__func__, dev_id, calc_hdl, [&](const rows::hash_info &, hash_setting &setting) {
    setting.seed = seed;
    return success;
  });
}

pd_status_t pipe_mgr_hash_calc_seed_get(pd_sess_hdl_t, uint32_t dev_id, uint32_t calc_hdl, uint64_t *seed)
{
  return serve_hash(__func__, dev_id, calc_hdl,
                    [&](const rows::hash_info &, const hash_setting &setting) -> pd_status_t {
                      if (seed == nullptr) return STANDIN_BAD_ARGUMENT;
                      *seed = setting.seed;
                      return success;
                    });
}
