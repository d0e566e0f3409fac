// Which input fields of a hash calculation are selected. The pipeline holds a field list for each non-empty subset of a
// calculation's fields; selecting fields means choosing the list that has exactly those.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hash_calculations.h"
#include "tarvex_pd/hash_access.h"

namespace tarvex::pd {

/// Fields that a caller's records name, by own number modulo 32, and those of them that any record selects.
struct field_choice {
  std::uint32_t named = 0;
  std::uint32_t selected = 0;

  void name(std::uint32_t field, bool select)
  {
    const std::uint32_t bit = 1u << (field % 32);
    named |= bit;
    if (select) selected |= bit;
  }
};

pd_status_t hash_field_count_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input,
                                 std::uint32_t *count);
pd_status_t hash_fields_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input,
                            std::uint32_t count, const hash_calc_attr_t *attrs);
pd_status_t hash_fields_choose(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input,
                               const field_choice &choice);
pd_status_t hash_fields_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input,
                            std::uint32_t max, hash_calc_attr_t *attrs, std::uint32_t *count);

/// The common number of a calculation's own field number; a number beyond its fields stops the process.
std::uint32_t hash_common_field(const hash_row &calc, const char *function, std::uint32_t field);
/// The calculation's own number of a common field number, 0xffffffff for one that it does not have.
std::uint32_t hash_own_field(const hash_row &calc, std::uint32_t common);

}  // namespace tarvex::pd
