/*
 * Any register of the switch, by the caller's handle. Records go straight through to the driver and back.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_REGISTER_ACCESS_H
#define TARVEX_PD_REGISTER_ACCESS_H

#include "tarvex_pd/driver_records.h"
#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/**
 * Reads the register of an entry. The device goes through untouched.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device; all 32 bits are handed on
 * @param tbl_hdl  the match table that the register hangs on
 * @param entry_hdl  the entry
 * @param flags  bit 0: read from the hardware; no other bit has a meaning
 * @param query  counts and rows, all of them the caller's; the driver fills them
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_read_direct(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t tbl_hdl,
                                                     pd_entry_hdl_t entry_hdl, uint32_t flags,
                                                     drv_stful_query_t *query);

/**
 * Writes the register of an entry, as a resource of it. This pipeline has no direct register, so no driver has shown
 * which handle it takes: the one given stands both for the match table and for the register.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param hdl  the handle, for both
 * @param entry_hdl  the entry
 * @param value  the value, 64 bits; read during the call only
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_write_direct(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t hdl,
                                                      pd_entry_hdl_t entry_hdl, const uint64_t *value);

/**
 * Reads a cell of an indirect register.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param reg_hdl  the register
 * @param index  index of the cell
 * @param flags  bit 0: read from the hardware; no other bit has a meaning
 * @param query  counts and rows, all of them the caller's; the driver fills them
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_read_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                                       uint32_t index, uint32_t flags, drv_stful_query_t *query);

/**
 * Writes a cell of an indirect register.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param reg_hdl  the register
 * @param index  index of the cell
 * @param value  the value in its first byte; the caller's
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_write_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t reg_hdl,
                                                        uint32_t index, drv_stful_spec_t *value);

/**
 * Synchronises the direct registers of a match table with the hardware. Does not wait for the callback.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param tbl_hdl  the match table that the register hangs on
 * @param cb  function that the driver calls when it is done; its signature is the driver's
 * @param cookie  handed to the callback; the caller's
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_hw_sync_direct(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                        pd_callback_t cb, void *cookie);

/**
 * Synchronises an indirect register with the hardware. Does not wait for the callback.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param reg_hdl  the register
 * @param cb  function that the driver calls when it is done; its signature is the driver's
 * @param cookie  handed to the callback; the caller's
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_hw_sync_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                          uint32_t reg_hdl, pd_callback_t cb, void *cookie);

/**
 * Resets all cells of a register to what the driver resets them to.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param reg_hdl  the register
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_reset_all_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                            uint32_t reg_hdl);

/**
 * Resets a range of cells of a register.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param reg_hdl  the register
 * @param first_index  index of the first cell
 * @param count  number of cells
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_range_reset_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                              uint32_t reg_hdl, uint32_t first_index, uint32_t count);

/**
 * Sets all cells of a register to one value.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param reg_hdl  the register
 * @param value  the value in its first byte; the caller's
 * @return 0, or the driver's status
 */
pd_status_t p4_pd_tarvex_switch_register_write_all_indirect(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt,
                                                            uint32_t reg_hdl, drv_stful_spec_t *value);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
