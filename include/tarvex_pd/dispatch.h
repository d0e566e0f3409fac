/*
 * For tools that hold only a number: any table or action profile by its handle. Where a function reads or decodes
 * an entry, a reply of the driver that contradicts the pipeline, such as an action of another table, stops the
 * process. Placement data that the driver refuses is told in a line by the functions that print.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#ifndef TARVEX_PD_DISPATCH_H
#define TARVEX_PD_DISPATCH_H

#include "tarvex_pd/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif

/**
 * Begins a walk over the entries of any table.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param tbl_hdl  handle of a table
 * @param entry_hdl  where the driver writes the handle; 0xffffffff for an unknown table
 * @return 0, or the driver's status; 0 for an unknown table
 */
pd_status_t p4_pd_tarvex_switch_entry_hdl_first(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                pd_entry_hdl_t *entry_hdl);

/**
 * Goes on with a walk over the entries of any table.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param tbl_hdl  handle of a table
 * @param entry_hdl  the entry to start after
 * @param n  handles asked for
 * @param next_entry_hdls  where the driver writes the handles; room for n. The first is 0xffffffff for an unknown
 *   table
 * @return 0, or the driver's status; 0 for an unknown table
 */
pd_status_t p4_pd_tarvex_switch_entry_hdl_next(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                               pd_entry_hdl_t entry_hdl, uint32_t n, pd_entry_hdl_t *next_entry_hdls);

/**
 * Finds the handle of the default entry of any table.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param tbl_hdl  handle of a table
 * @param entry_hdl  where the driver writes the handle; 0xffffffff for an unknown table
 * @return 0, or the driver's status; 0 for an unknown table
 */
pd_status_t p4_pd_tarvex_switch_entry_hdl_default(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t tbl_hdl,
                                                  pd_entry_hdl_t *entry_hdl);

/**
 * Goes on with a walk over the members of any action profile; the walk begins with the profile's own function.
 *
 * @param sess_hdl  session with the driver
 * @param dev_tgt  device and pipe, from pd_dev_tgt()
 * @param adt_hdl  handle of a profile's action data table
 * @param mbr_hdl  the member to start after
 * @param n  handles asked for
 * @param next_mbr_hdls  where the driver writes the handles; room for n. The first is 0xffffffff for an unknown
 *   profile
 * @return 0, or the driver's status; 0xffffffff for an unknown profile
 */
pd_status_t p4_pd_tarvex_switch_member_hdl_next(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, uint32_t adt_hdl,
                                                pd_mbr_hdl_t mbr_hdl, uint32_t n, pd_mbr_hdl_t *next_mbr_hdls);

/**
 * Reads an entry of any table and writes it as a literal in step with the schema.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param tbl_hdl  handle of a table
 * @param entry_hdl  the entry
 * @param read_from_hw  not 0: the driver reads the hardware; low 8 bits
 * @param buf  receives the text and its NUL, at most PD_ENTRY_TEXT_SIZE bytes
 * @return characters written, without the NUL; 0 with the buffer untouched for an unknown table and for an entry that
 *   cannot be read
 */
uint32_t p4_pd_tarvex_switch_entry_value(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t tbl_hdl,
                                         pd_entry_hdl_t entry_hdl, pd_flag8_t read_from_hw, char *buf);

/**
 * Writes the shape of any table or profile as a literal.
 *
 * @param handle  handle of a table, or of a profile's action data table
 * @param buf  receives the text and its NUL, at most PD_SCHEMA_TEXT_SIZE bytes
 * @return characters written, without the NUL; an unknown handle gives "()" and 2
 */
int32_t p4_pd_tarvex_switch_cli_schema(uint32_t handle, char *buf);

/**
 * Prints the entry of any table that placement data describes.
 *
 * @param fd  descriptor, open for writing
 * @param indent  columns ahead of each line
 * @param tbl_hdl  handle of a table
 * @param plcmt_data  placement data; only the driver reads it
 * @return 0, or the driver's status; an unknown table is told in a line, whose 27 characters are the result
 */
pd_status_t p4_pd_tarvex_switch_plcmt_data_print(int32_t fd, int32_t indent, uint32_t tbl_hdl, const void *plcmt_data);

/**
 * Prints the member of any profile that placement data describes.
 *
 * @param fd  descriptor, open for writing
 * @param indent  columns ahead of each line
 * @param adt_hdl  handle of a profile's action data table
 * @param plcmt_data  placement data; only the driver reads it
 * @return 0, or the driver's status; an unknown profile is told in a line, whose 27 characters are the result
 */
pd_status_t p4_pd_tarvex_switch_adt_plcmt_data_print(int32_t fd, int32_t indent, uint32_t adt_hdl,
                                                     const void *plcmt_data);

/**
 * Writes the entry of any table that placement data describes as a literal.
 *
 * @param tbl_hdl  handle of a table
 * @param plcmt_data  placement data; only the driver reads it
 * @param buf  receives the text and its NUL, at most PD_ENTRY_TEXT_SIZE bytes
 * @return characters written, without the NUL; 0 with the buffer untouched for an unknown table and for data that the
 *   driver refuses
 */
uint32_t p4_pd_tarvex_switch_plcmt_data_value(uint32_t tbl_hdl, const void *plcmt_data, char *buf);

/**
 * Writes the member of any profile that placement data describes as a literal.
 *
 * @param adt_hdl  handle of a profile's action data table
 * @param plcmt_data  placement data; only the driver reads it
 * @param buf  receives the text and its NUL, at most PD_ACTION_TEXT_SIZE bytes
 * @return characters written, without the NUL; 0 with the buffer untouched for an unknown profile and for data that
 *   the driver refuses
 */
uint32_t p4_pd_tarvex_switch_adt_plcmt_data_value(uint32_t adt_hdl, const void *plcmt_data, char *buf);

/**
 * Holds placement data against the entry that the hardware has.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param tbl_hdl  handle of a table
 * @param entry_hdl  the entry
 * @param plcmt_data  placement data; only the driver reads it
 * @return 1 for equal, 0 for different; 0 too for an unknown table, for data that the driver refuses and for an entry
 *   that cannot be read
 */
uint8_t p4_pd_tarvex_switch_plcmt_data_eq_to_hw(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t tbl_hdl,
                                                pd_entry_hdl_t entry_hdl, const void *plcmt_data);

/**
 * Reads an entry from the hardware and writes a label for its counter.
 *
 * @param sess_hdl  session with the driver
 * @param dev_id  the device, its low 8 bits
 * @param tbl_hdl  handle of a table
 * @param entry_hdl  the entry
 * @param buf  receives the text and its NUL, at most PD_LABEL_TEXT_SIZE bytes
 * @return characters written, without the NUL; 0 with the buffer untouched for a table without a counter to each
 *   entry, and for an entry that cannot be read or has no key
 */
uint32_t p4_pd_tarvex_switch_stringify_counter_matchspec(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t tbl_hdl,
                                                         pd_entry_hdl_t entry_hdl, char *buf);

#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#ifdef __cplusplus
}
#endif

#endif
