// Hash calculations by name, with common field numbers.
//
// SPDX-License-Identifier: Apache-2.0
#include "plain_functions.h"

#include <cstring>

#include "hash_field_attributes.h"

namespace tarvex::pd {

namespace {

const hash_row *calculation(const char *name)
{
  if (name == nullptr) return nullptr;
  for (const named_hash &hash : named_hashes)
    if (std::strcmp(name, hash.name) == 0) return hash.row;
  return nullptr;
}

}  // namespace

pd_status_t hash_calc_input_set(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, const char *calc_name)
{
  const hash_row *calc = calculation(calc_name);
  return calc == nullptr ? pd_status_t{PD_STATUS_INVALID_ARG} : hash_input_set(*calc, sess_hdl, dev_id, 0);
}

pd_status_t hash_calc_input_field_attribute_count_get(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, const char *calc_name,
                                                      uint32_t *count)
{
  const hash_row *calc = calculation(calc_name);
  return calc == nullptr ? pd_status_t{PD_STATUS_INVALID_ARG} : hash_field_count_get(*calc, sess_hdl, dev_id, 0, count);
}

pd_status_t hash_calc_input_field_attribute_set(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, const char *calc_name,
                                                uint32_t count, const hash_calc_attr_t *attrs)
{
  const hash_row *calc = calculation(calc_name);
  if (calc == nullptr) return PD_STATUS_INVALID_ARG;
  field_choice choice;
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t field = hash_own_field(*calc, attrs[i].field);
    if (field >= calc->field_count) return PD_STATUS_INVALID_ARG;
    choice.name(field, static_cast<std::uint32_t>(attrs[i].value) == 0);
  }
  return hash_fields_choose(*calc, sess_hdl, dev_id, 0, choice);
}

pd_status_t hash_calc_input_field_attribute_get(const char *function, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                const char *calc_name, uint32_t max, hash_calc_attr_t *attrs,
                                                uint32_t *count)
{
  const hash_row *calc = calculation(calc_name);
  if (calc == nullptr) return PD_STATUS_INVALID_ARG;
  const pd_status_t status = hash_fields_get(*calc, sess_hdl, dev_id, 0, max, attrs, count);
  for (std::uint32_t i = 0; i < *count; ++i) attrs[i].field = hash_common_field(*calc, function, attrs[i].field);
  return status;
}

}  // namespace tarvex::pd
