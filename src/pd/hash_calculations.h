// Hash calculations: input, algorithm and seed behind small numbers instead of the driver's handles.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "rows.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

/// True for the handle of the calculation's whole field list and for those of its subsets.
constexpr bool is_input_of(const hash_row &calc, std::uint32_t input_hdl)
{
  return input_hdl >= calc.first_input && input_hdl - calc.first_input < (1u << calc.field_count) - 1;
}

struct named_hash {
  const char *name;
  const hash_row *row;
};

/// All calculations by name. Generated from the catalogue.
extern const std::span<const named_hash> named_hashes;

pd_status_t hash_input_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input);
pd_status_t hash_input_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t *input);
pd_status_t hash_algorithm_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                               std::uint32_t algorithm);
pd_status_t hash_algorithm_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                               std::uint32_t *algorithm);
pd_status_t hash_seed_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint64_t seed);
pd_status_t hash_seed_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint64_t *seed);

}  // namespace tarvex::pd
