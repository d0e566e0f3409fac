/*
 * Parser value set fabric_port: pairs of value and mask that the parser tests against.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_PARSER_VALUE_SET_H
#define TARVEX_PD_PARSER_VALUE_SET_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/** Where an entry of the value set applies, by value. The driver gives the fields their meaning. */
typedef struct pd_parser_tgt {
  uint32_t device_id;    /**< the device */
  uint32_t tgt_scope;    /**< the driver's */
  uint16_t tgt_index;    /**< the driver's */
  uint8_t tgt_sub_index; /**< the driver's */
} pd_parser_tgt_t;

TARVEX_PD_LAYOUT(sizeof(pd_parser_tgt_t) == 12);
TARVEX_PD_LAYOUT(offsetof(pd_parser_tgt_t, device_id) == 0);
TARVEX_PD_LAYOUT(offsetof(pd_parser_tgt_t, tgt_scope) == 4);
TARVEX_PD_LAYOUT(offsetof(pd_parser_tgt_t, tgt_index) == 8);
TARVEX_PD_LAYOUT(offsetof(pd_parser_tgt_t, tgt_sub_index) == 10);

/**
 * Sets a property of the value set.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device; all 32 bits are handed on
 * @param property  number of the property, as the driver counts them
 * @param value  value of the property
 * @param argument  further argument of the property
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_set_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t property,
                                                             uint32_t value, uint32_t argument);

/**
 * Reads a property of the value set.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device; all 32 bits are handed on
 * @param property  number of the property, as the driver counts them
 * @param value  receives the value, or 0xffffffff if the driver fails
 * @param argument  further argument of the property
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_get_property(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t property,
                                                             uint32_t *value, uint32_t argument);

/**
 * Adds an entry to the value set.
 *
 * @param sess_hdl  session with the driver
 * @param tgt  where the entry applies
 * @param parser_value  value, in host order
 * @param parser_value_mask  mask, in host order
 * @param pvs_entry_hdl  where the driver writes the handle of the entry
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_entry_add(pd_sess_hdl_t sess_hdl, pd_parser_tgt_t tgt,
                                                          uint32_t parser_value, uint32_t parser_value_mask,
                                                          uint32_t *pvs_entry_hdl);

/**
 * Changes value and mask of an entry.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device; all 32 bits are handed on
 * @param pvs_entry_hdl  the entry
 * @param parser_value  value, in host order
 * @param parser_value_mask  mask, in host order
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_entry_modify(pd_sess_hdl_t sess_hdl, uint32_t dev_id,
                                                             uint32_t pvs_entry_hdl, uint32_t parser_value,
                                                             uint32_t parser_value_mask);

/**
 * Deletes an entry.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device; all 32 bits are handed on
 * @param pvs_entry_hdl  the entry
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_pvs_fabric_port_entry_delete(pd_sess_hdl_t sess_hdl, uint32_t dev_id,
                                                             uint32_t pvs_entry_hdl);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
