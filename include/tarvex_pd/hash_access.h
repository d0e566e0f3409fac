/*
 * Hash calculations by name, with a numbering of input fields that is common to all of them.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_HASH_ACCESS_H
#define TARVEX_PD_HASH_ACCESS_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/** Attribute of one input field of a hash calculation; arrays of it are the caller's. */
typedef struct hash_calc_attr {
  uint32_t field;     /**< number of the field */
  uint32_t attr_type; /**< only 0 selects the field; a read does not write it */
  uint64_t value;     /**< 0 with attr_type 0: the field goes into the hash; anything else: it does not */
} hash_calc_attr_t;

TARVEX_PD_LAYOUT(sizeof(hash_calc_attr_t) == 16);
TARVEX_PD_LAYOUT(offsetof(hash_calc_attr_t, field) == 0);
TARVEX_PD_LAYOUT(offsetof(hash_calc_attr_t, attr_type) == 4);
TARVEX_PD_LAYOUT(offsetof(hash_calc_attr_t, value) == 8);

/**
 * Makes a calculation take all its input fields.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param calc_name  name of the calculation, exactly; may be null
 * @return 0, the driver's status, or PD_STATUS_INVALID_ARG for an unknown calculation
 */
pd_status_t p4_pd_tarvex_switch_hash_calc_input_set(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, const char *calc_name);

/**
 * Counts the input fields of a calculation. Makes no driver call.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param calc_name  name of the calculation, exactly; may be null
 * @param count  receives the count; stays as it was for an unknown calculation
 * @return 0, or PD_STATUS_INVALID_ARG for an unknown calculation
 */
pd_status_t p4_pd_tarvex_switch_hash_calc_input_field_attribute_count_get(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                                          const char *calc_name, uint32_t *count);

/**
 * Selects the input fields of a calculation, by their common numbers. A field that is not named is not selected.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param calc_name  name of the calculation, exactly; may be null
 * @param count  number of records
 * @param attrs  one record for each field, by common number; of the value the low 32 bits count, attr_type is not read
 * @return 0, the driver's status, or PD_STATUS_INVALID_ARG for an unknown calculation, a common number that the
 *   calculation does not have, no record at all, a list that does not name the calculation's last field, or an input
 *   of the driver that is not the calculation's
 */
pd_status_t p4_pd_tarvex_switch_hash_calc_input_field_attribute_set(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                                    const char *calc_name, uint32_t count,
                                                                    const hash_calc_attr_t *attrs);

/**
 * Tells which input fields of a calculation are selected, by their common numbers.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param calc_name  name of the calculation, exactly; may be null
 * @param max  records that there is room for
 * @param attrs  receives field and value of each, in the calculation's own order
 * @param count  receives the number of records; stays as it was for an unknown calculation
 * @return 0, the driver's status, or PD_STATUS_INVALID_ARG for an unknown calculation, an input of the driver that is
 *   not the calculation's, or too little room (what fitted is there)
 */
pd_status_t p4_pd_tarvex_switch_hash_calc_input_field_attribute_get(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                                                    const char *calc_name, uint32_t max,
                                                                    hash_calc_attr_t *attrs, uint32_t *count);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
