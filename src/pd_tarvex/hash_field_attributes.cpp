// SPDX-License-Identifier: Apache-2.0
#include "hash_field_attributes.h"

#include <bit>

#include "text_assertions.h"

namespace tarvex::pd {

namespace {

/// Bit i of the result is bit N-1-i of `bits`: lists are numbered with field N-1 in the lowest place.
std::uint32_t reversed(std::uint32_t bits, unsigned n)
{
  std::uint32_t made = 0;
  for (unsigned i = 0; i < n; ++i) made |= (bits >> i & 1u) << (n - 1 - i);
  return made;
}

std::uint32_t all_fields(const hash_row &calc) { return (1u << calc.field_count) - 1; }

/// Input handle of the list with the selected fields, bit i for field i; 0 for no field, which no list has.
std::uint32_t input_of_fields(const hash_row &calc, std::uint32_t fields)
{
  if (fields == all_fields(calc)) return calc.first_input;
  return fields == 0 ? 0 : calc.first_input + reversed(fields, calc.field_count);
}

/// The selected fields of an input handle of the calculation.
std::uint32_t fields_of_input(const hash_row &calc, std::uint32_t input_hdl)
{
  const std::uint32_t list = input_hdl - calc.first_input;
  return list == 0 ? all_fields(calc) : reversed(list, calc.field_count);
}

}  // namespace

pd_status_t hash_field_count_get(const hash_row &calc, pd_sess_hdl_t, pd_dev_id_t, std::uint32_t input,
                                 std::uint32_t *count)
{
  *count = input == 0 ? calc.field_count : 0;
  return input == 0 ? pd_status_t{BF_SUCCESS} : pd_status_t{PD_STATUS_INVALID_ARG};
}

pd_status_t hash_fields_choose(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input,
                               const field_choice &choice)
{
  std::uint32_t current = 0;
  const pd_status_t status = pipe_mgr_hash_calc_input_get(sess_hdl, low_byte(dev_id), calc.handle, &current);
  if (status != BF_SUCCESS) return status;
  // The last field must be named, and none beyond it.
  if (input != 0 || static_cast<unsigned>(std::bit_width(choice.named)) != calc.field_count)
    return PD_STATUS_INVALID_ARG;
  if (!is_input_of(calc, current)) return PD_STATUS_INVALID_ARG;
  return pipe_mgr_hash_calc_input_set(sess_hdl, low_byte(dev_id), calc.handle, input_of_fields(calc, choice.selected));
}

pd_status_t hash_fields_set(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input,
                            std::uint32_t count, const hash_calc_attr_t *attrs)
{
  field_choice choice;
  for (std::uint32_t i = 0; i < count; ++i) choice.name(attrs[i].field, attrs[i].attr_type == 0 && attrs[i].value == 0);
  return hash_fields_choose(calc, sess_hdl, dev_id, input, choice);
}

pd_status_t hash_fields_get(const hash_row &calc, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t input,
                            std::uint32_t max, hash_calc_attr_t *attrs, std::uint32_t *count)
{
  *count = 0;
  std::uint32_t input_hdl = 0;
  const pd_status_t status = pipe_mgr_hash_calc_input_get(sess_hdl, low_byte(dev_id), calc.handle, &input_hdl);
  if (!is_input_of(calc, input_hdl) || input != 0) return PD_STATUS_INVALID_ARG;
  const std::uint32_t fields = fields_of_input(calc, input_hdl);
  for (std::uint32_t i = 0; i < calc.field_count; ++i) {
    if (i == max) return PD_STATUS_INVALID_ARG;
    attrs[i].field = i;
    attrs[i].value = (fields >> i & 1u) != 0 ? 0 : 1;
    *count = i + 1;
  }
  return status;
}

std::uint32_t hash_common_field(const hash_row &calc, const char *function, std::uint32_t field)
{
  if (field >= calc.field_count) stop_in_text("0", function);
  return calc.common[field];
}

std::uint32_t hash_own_field(const hash_row &calc, std::uint32_t common)
{
  for (std::uint32_t i = 0; i < calc.field_count; ++i)
    if (calc.common[i] == common) return i;
  return 0xffff'ffffu;
}

}  // namespace tarvex::pd
